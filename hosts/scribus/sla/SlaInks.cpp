#include "hosts/scribus/sla/SlaInks.h"

#include "hosts/scribus/sla/SlaScanner.h"

#include <QMap>
#include <QSet>

#include <algorithm>

namespace
{
struct Swatch
{
    bool isSpot = false;
    bool isProcess = false;
    QStringList inks;  // of the process
};

Swatch ReadSwatch(const SlaScanner& element)
{
    static const struct
    {
        const char* attribute;
        const char* name;
    } cInks[] = {{"C", "Cyan"}, {"M", "Magenta"}, {"Y", "Yellow"}, {"K", "Black"}};
    Swatch swatch;
    swatch.isSpot = element.GetNumber("Spot") != 0;
    swatch.isProcess = element.GetText("SPACE") == QLatin1String("CMYK");
    for (const auto& ink : cInks) {
        if (swatch.isProcess && element.GetNumber(ink.attribute) > 0)
            swatch.inks.append(QLatin1String(ink.name));
    }
    return swatch;
}

// Goes through a document in its order: colours stand before styles, these before all objects.
class Reader
{
public:
    void Read(const SlaScanner& element)
    {
        const std::string_view name = element.GetName();
        if (name == "COLOR")
            mSwatches.insert(element.GetText("NAME"), ReadSwatch(element));
        else if (name == "STYLE" || name == "CHARSTYLE")
            TakeStyle(element, element.GetText(name == "STYLE" ? "NAME" : "CNAME"));
        else if (element.Has("PTYPE") || mIsInObjects)
            TakeObject(element);
    }

    QStringList Finish() const
    {
        QStringList process;
        QStringList spots;
        bool hasOthers = false;
        for (const QString& color : mUsed) {
            const Swatch swatch = mSwatches.value(color);
            if (swatch.isSpot)
                spots.append(color);
            else if (swatch.isProcess)
                process += swatch.inks;
            else
                hasOthers = true;
        }
        QStringList inks;
        for (const char* ink : {"Cyan", "Magenta", "Yellow", "Black"}) {
            if (process.contains(QLatin1String(ink)))
                inks.append(QStringLiteral("%1 - process").arg(QLatin1String(ink)));
        }
        spots.sort();
        for (const QString& spot : spots)
            inks.append(QStringLiteral("%1 - spot").arg(spot));
        if (hasOthers)
            inks.append(QStringLiteral("RGB or Lab colours - no inks of their own"));
        return inks;
    }

private:
    // The swatches and styles that an element names, in whatever attribute.
    QSet<QString> GetNames(const SlaScanner& element) const
    {
        QSet<QString> names;
        for (const std::string_view attribute : element.GetAttributeNames()) {
            const QString value = element.GetText(attribute);
            if (mSwatches.contains(value) || mStyles.contains(value))
                names.insert(value);
        }
        return names;
    }

    void TakeStyle(const SlaScanner& element, const QString& name)
    {
        QSet<QString> names = GetNames(element);
        names.remove(name);
        mStyles[name] += names;
        if (element.GetNumber("DefaultStyle") != 0)
            mDefaults += names;
    }

    void TakeObject(const SlaScanner& element)
    {
        mIsInObjects = true;
        if (element.GetName() == "ITEXT")
            Use(mDefaults);
        Use(GetNames(element));
    }

    void Use(const QSet<QString>& names)
    {
        QStringList open = names.values();
        while (!open.isEmpty()) {
            const QString name = open.takeLast();
            if (mSwatches.contains(name))
                mUsed.insert(name);
            open += mStyles.take(name).values();  // once is enough
        }
    }

    QMap<QString, Swatch> mSwatches;
    QMap<QString, QSet<QString>> mStyles;  // what each style names
    QSet<QString> mDefaults;               // what texts have that say nothing
    QSet<QString> mUsed;
    bool mIsInObjects = false;
};
}  // namespace

QStringList SlaInks::Find(const QByteArray& text)
{
    Reader reader;
    SlaScanner element({text.constData(), static_cast<size_t>(text.size())});
    while (element.Next())
        reader.Read(element);
    return reader.Finish();
}
