#pragma once

#include <QByteArray>
#include <QString>

#include <string_view>
#include <vector>

// Goes through the start tags of a document's XML, and can give attributes other values while every other
// byte stays as it is. Documents of old versions hold characters that an XML reader refuses, and a document
// that is written anew by one would not be the same; so this looks at tags only, and leaves text between them
// alone.
//
// Linear in the text's length, which it neither owns nor copies. A text that is no XML has no tags.
class SlaScanner
{
public:
    explicit SlaScanner(std::string_view text) : mText(text) {}

    // Goes to the next start tag, or the tag of an element without content. False at the end of the text, or
    // where it is no XML any more.
    [[nodiscard]] bool Next();

    // Whether the text was XML to its end, once Next has given false.
    bool IsIntact() const { return mIsIntact; }

    std::string_view GetName() const { return mName; }

    bool Has(std::string_view attribute) const { return Find(attribute) != nullptr; }

    // The names of the tag's attributes, in their order.
    std::vector<std::string_view> GetAttributeNames() const;

    // The value of an attribute of the tag, its entities resolved; empty where there is none.
    QString GetText(std::string_view attribute) const;
    double GetNumber(std::string_view attribute) const { return GetText(attribute).toDouble(); }

    // Where the attribute's value stands in the text, its quotes not among it; `offset` -1 where there is
    // none.
    struct Place
    {
        qint64 offset = -1;
        qint64 length = 0;
    };
    Place GetPlace(std::string_view attribute) const;

private:
    struct Attribute
    {
        std::string_view name;
        std::string_view value;
    };

    const Attribute* Find(std::string_view attribute) const;
    [[nodiscard]] bool SkipPast(std::string_view end);
    [[nodiscard]] bool ReadTag();
    [[nodiscard]] bool ReadAttribute();
    void SkipBlanks();
    bool IsAt(std::string_view text) const { return mText.substr(mPosition, text.size()) == text; }

    std::string_view mText;
    size_t mPosition = 0;
    bool mIsIntact = false;
    std::string_view mName;
    std::vector<Attribute> mAttributes;
};

// Puts other values of attributes into a text. Places are given in the order of the text.
class SlaEdit
{
public:
    explicit SlaEdit(const QByteArray& text) : mText(text) {}

    void Replace(const SlaScanner::Place& place, const QString& value);

    // The text with all replacements.
    QByteArray Finish();

private:
    const QByteArray& mText;
    QByteArray mResult;
    qint64 mCopied = 0;
};
