#include "hosts/scribus/sla/SlaFonts.h"

#include "hosts/scribus/sla/SlaScanner.h"

#include <QMap>
#include <QStringList>

#include <algorithm>

namespace
{
// What a style, or an element of a text, says of fonts. Empty texts say nothing.
struct Says
{
    QString font;
    QString characterStyle;
    QString parent;        // of a paragraph
    QString effectStyle;   // of a bullet, a number or an initial before a paragraph
    bool hasMark = false;  // a bullet or a number

    static Says Read(const SlaScanner& element)
    {
        return {element.GetText("FONT"), element.GetText("CPARENT"), element.GetText("PARENT"),
                element.GetText("ParagraphEffectCharStyle"),
                element.GetNumber("Bullet") != 0 || element.GetNumber("Numeration") != 0};
    }
};

bool IsAmong(std::string_view name, std::initializer_list<std::string_view> names)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

// Goes through a document's styles and texts in their order: styles stand before all texts.
class Reader
{
public:
    void Read(const SlaScanner& element)
    {
        const std::string_view name = element.GetName();
        mNamed.insert(element.GetText("FONT"));
        if (name == "CHARSTYLE")
            TakeStyle(element, element.GetText("CNAME"), mCharacterStyles, mDefaultFont);
        else if (name == "STYLE")
            TakeStyle(element, element.GetText("NAME"), mParagraphStyles, mDefaultFont);
        else if (name == "Note")
            mHasNotes = mHasNotes || !element.GetText("Text").isEmpty();
        else if (element.Has("PTYPE"))
            TakeFrame(element);
        else if (name == "DefaultStyle")
            TakeDefault(element);
        else if (name == "para" || name == "trail")
            EndParagraph(Says::Read(element));
        else if (IsAmong(name, {"ITEXT", "var", "nbhyphen", "nbspace", "MARK"}))
            mRuns.append(Says::Read(element));
    }

    QSet<QString> Finish()
    {
        EndParagraph({});
        if (mHasNotes)
            mUsed += mNamed;
        mUsed.remove(QString());
        return mUsed;
    }

private:
    using Styles = QMap<QString, Says>;

    void TakeStyle(const SlaScanner& element, const QString& name, Styles& styles, QString& defaultFont)
    {
        styles.insert(name, Says::Read(element));
        if (element.GetNumber("DefaultStyle") == 0)
            return;
        const QString font = GetOwnFont(styles[name]);
        defaultFont = font.isEmpty() ? defaultFont : font;
    }

    // A frame's text follows it.
    void TakeFrame(const SlaScanner& element)
    {
        EndParagraph({});
        mTextFont = mDefaultFont;
        constexpr double cFirstField = 2;  // a button; a list is the last
        constexpr double cLastField = 6;
        const double kind = element.GetNumber("ANTYPE");
        mIsField = element.GetNumber("ANNOTATION") != 0 && kind >= cFirstField && kind <= cLastField;
    }

    void TakeDefault(const SlaScanner& element)
    {
        EndParagraph({});
        mTextFont = GetFont(Says::Read(element), mDefaultFont);
        if (mIsField)
            mUsed.insert(mTextFont);
    }

    void EndParagraph(const Says& paragraph)
    {
        const QString font = GetFont(paragraph, mTextFont);
        for (const Says& run : mRuns) {
            const QString own = GetOwnFont(run);
            mUsed.insert(own.isEmpty() ? font : own);
        }
        if (!mRuns.isEmpty())
            UseMarks(paragraph, font);
        mRuns.clear();
    }

    void UseMarks(const Says& paragraph, const QString& font)
    {
        for (const Says& style : GetLine(paragraph)) {
            if (!style.effectStyle.isEmpty())
                mUsed.insert(GetCharacterFont(style.effectStyle));
            else if (style.hasMark)
                mUsed.insert(font);
        }
    }

    // A paragraph, the style that it has, the style of which that is made, and so on.
    QVector<Says> GetLine(const Says& paragraph) const
    {
        QVector<Says> line{paragraph};
        QSet<QString> seen;
        for (QString name = paragraph.parent; mParagraphStyles.contains(name) && !seen.contains(name);
             name = line.last().parent) {
            seen.insert(name);
            line.append(mParagraphStyles.value(name));
        }
        return line;
    }

    QString GetFont(const Says& paragraph, const QString& otherwise) const
    {
        for (const Says& style : GetLine(paragraph)) {
            const QString font = GetOwnFont(style);
            if (!font.isEmpty())
                return font;
        }
        return otherwise;
    }

    QString GetOwnFont(const Says& says) const
    {
        return says.font.isEmpty() ? GetCharacterFont(says.characterStyle) : says.font;
    }

    QString GetCharacterFont(QString name) const
    {
        QSet<QString> seen;
        while (mCharacterStyles.contains(name) && !seen.contains(name)) {
            const Says& style = mCharacterStyles[name];
            if (!style.font.isEmpty())
                return style.font;
            seen.insert(name);
            name = style.characterStyle;
        }
        return {};
    }

    Styles mCharacterStyles;
    Styles mParagraphStyles;
    QString mDefaultFont;
    QString mTextFont;    // of the text that is read, where nothing else is said
    QVector<Says> mRuns;  // of the paragraph that is read: its end tells its style
    QSet<QString> mUsed;
    QSet<QString> mNamed;
    bool mIsField = false;
    bool mHasNotes = false;
};
}  // namespace

QSet<QString> SlaFonts::FindUsed(const QByteArray& text)
{
    Reader reader;
    SlaScanner element({text.constData(), static_cast<size_t>(text.size())});
    while (element.Next())
        reader.Read(element);
    return reader.Finish();
}
