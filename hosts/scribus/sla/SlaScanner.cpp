#include "hosts/scribus/sla/SlaScanner.h"

#include <QtGlobal>

// An attribute that holds more than this, such as the data of an embedded image, is none that anybody asks
// for.
constexpr size_t cLongestValue = 1024 * 1024;

static bool IsBlank(char character)
{
    return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}

static bool EndsName(char character)
{
    return IsBlank(character) || character == '=' || character == '>' || character == '/';
}

static QString ResolveEntity(const QString& name)
{
    if (name.startsWith(QLatin1Char('#'))) {
        const bool isHexadecimal = name.startsWith(QLatin1String("#x"));
        bool isNumber = false;
        const uint code = name.mid(isHexadecimal ? 2 : 1).toUInt(&isNumber, isHexadecimal ? 16 : 10);
        return isNumber && code <= 0x10FFFF ? QString::fromUcs4(&code, 1) : QString();
    }
    static const struct
    {
        const char* name;
        char character;
    } cNamed[] = {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}};
    for (const auto& entity : cNamed) {
        if (name == QLatin1String(entity.name))
            return QString(QLatin1Char(entity.character));
    }
    return {};
}

void SlaScanner::SkipBlanks()
{
    while (mPosition < mText.size() && IsBlank(mText[mPosition]))
        ++mPosition;
}

bool SlaScanner::SkipPast(std::string_view end)
{
    const size_t found = mText.find(end, mPosition);
    mPosition = found == std::string_view::npos ? mText.size() : found + end.size();
    return found != std::string_view::npos;
}

bool SlaScanner::Next()
{
    mAttributes.clear();
    mIsIntact = false;
    for (;;) {
        mPosition = mText.find('<', mPosition);
        if (mPosition == std::string_view::npos) {
            mPosition = mText.size();
            mIsIntact = true;
            return false;
        }
        bool isSkipped = false;
        if (IsAt("<!--"))
            isSkipped = SkipPast("-->");
        else if (IsAt("<![CDATA["))
            isSkipped = SkipPast("]]>");
        else if (IsAt("<?"))
            isSkipped = SkipPast("?>");
        else if (IsAt("<!") || IsAt("</"))
            isSkipped = SkipPast(">");
        else
            return ReadTag();
        if (!isSkipped)
            return false;
    }
}

bool SlaScanner::ReadTag()
{
    const size_t start = ++mPosition;
    while (mPosition < mText.size() && !EndsName(mText[mPosition]))
        ++mPosition;
    mName = mText.substr(start, mPosition - start);
    if (mName.empty())
        return false;
    for (;;) {
        SkipBlanks();
        if (mPosition >= mText.size())
            return false;
        if (mText[mPosition] == '>' || IsAt("/>")) {
            mPosition += mText[mPosition] == '>' ? 1 : 2;
            return true;
        }
        if (!ReadAttribute())
            return false;
    }
}

bool SlaScanner::ReadAttribute()
{
    Attribute attribute;
    const size_t start = mPosition;
    while (mPosition < mText.size() && !EndsName(mText[mPosition]))
        ++mPosition;
    attribute.name = mText.substr(start, mPosition - start);
    SkipBlanks();
    if (attribute.name.empty() || !IsAt("="))
        return false;
    ++mPosition;
    SkipBlanks();
    if (!IsAt("\"") && !IsAt("'"))
        return false;
    const char quote = mText[mPosition++];
    const size_t end = mText.find(quote, mPosition);
    if (end == std::string_view::npos)
        return false;
    attribute.value = mText.substr(mPosition, end - mPosition);
    mPosition = end + 1;
    mAttributes.push_back(attribute);
    return true;
}

std::vector<std::string_view> SlaScanner::GetAttributeNames() const
{
    std::vector<std::string_view> names;
    for (const Attribute& attribute : mAttributes)
        names.push_back(attribute.name);
    return names;
}

const SlaScanner::Attribute* SlaScanner::Find(std::string_view attribute) const
{
    for (const Attribute& candidate : mAttributes) {
        if (candidate.name == attribute)
            return &candidate;
    }
    return nullptr;
}

QString SlaScanner::GetText(std::string_view attribute) const
{
    const Attribute* found = Find(attribute);
    if (found == nullptr || found->value.size() > cLongestValue)
        return {};
    const QString raw = QString::fromUtf8(found->value.data(), static_cast<int>(found->value.size()));
    QString text;
    int copied = 0;
    for (int start = raw.indexOf(QLatin1Char('&')); start >= 0;
         start = raw.indexOf(QLatin1Char('&'), copied)) {
        const int end = raw.indexOf(QLatin1Char(';'), start);
        if (end < 0)
            break;
        text += raw.midRef(copied, start - copied);
        text += ResolveEntity(raw.mid(start + 1, end - start - 1));
        copied = end + 1;
    }
    return text + raw.midRef(copied);
}

SlaScanner::Place SlaScanner::GetPlace(std::string_view attribute) const
{
    const Attribute* found = Find(attribute);
    if (found == nullptr)
        return {};
    return {found->value.data() - mText.data(), static_cast<qint64>(found->value.size())};
}

void SlaEdit::Replace(const SlaScanner::Place& place, const QString& value)
{
    Q_ASSERT(place.offset >= mCopied);
    QString escaped = value.toHtmlEscaped();
    escaped.replace(QLatin1Char('\''), QLatin1String("&apos;"));
    mResult.append(mText.constData() + mCopied, static_cast<int>(place.offset - mCopied));
    mResult.append(escaped.toUtf8());
    mCopied = place.offset + place.length;
}

QByteArray SlaEdit::Finish()
{
    mResult.append(mText.constData() + mCopied, static_cast<int>(mText.size() - mCopied));
    mCopied = mText.size();
    return mResult;
}
