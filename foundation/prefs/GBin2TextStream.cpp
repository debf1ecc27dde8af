#include "foundation/prefs/GBin2TextStream.h"

#include "foundation/core/EscapeCodes.h"

#include <QtEndian>

#include <algorithm>
#include <bitset>
#include <cstring>

namespace
{
constexpr int cChunk = 256;  // characters that are looked at at a time
constexpr int cKeptBytes = 4096;

constexpr char cMarkLittleEndian[] = {'\xFF', '\xFE'};
constexpr char cMarkBigEndian[] = {'\xFE', '\xFF'};
constexpr char cMarkUTF8[] = {'\xEF', '\xBB', '\xBF'};

// Collects 8-bit text: the bytes first, so that a character in several of them is decoded whole wherever the
// chunks ended.
class ByteCollector
{
public:
    ByteCollector(GString& text, GBuffer& bytes, const GEncoding& encoding)
        : mText(text), mBytes(bytes), mEncoding(encoding)
    {
        mBytes.reserve(cChunk);  // also makes the buffer keep its memory when it is emptied
        mBytes.resize(0);
    }
    ~ByteCollector()
    {
        if (mBytes.capacity() > cKeptBytes)
            mBytes = GBuffer();
    }
    ByteCollector(const ByteCollector&) = delete;
    ByteCollector& operator=(const ByteCollector&) = delete;

    using Unit = char;
    static Unit GetUnit(ushort number) { return static_cast<char>(number); }
    GBuffer& GetTarget() { return mBytes; }
    void AppendRun(const char* begin, int count)
    {
        mBytes.append(begin, count);
        mIsASCII = mIsASCII && std::none_of(begin, begin + count, [](char byte) { return byte < 0; });
    }
    void Finish()
    {
        mText = mIsASCII ? GString::fromLatin1(mBytes.constData(), mBytes.size()) : mEncoding.Decode(mBytes);
    }

private:
    GString& mText;
    GBuffer& mBytes;
    const GEncoding& mEncoding;
    bool mIsASCII = true;
};

// Collects UTF-16 of either order, straight into the text.
template <typename Units>
class UnitCollector
{
public:
    UnitCollector(GString& text, GBuffer&, const GEncoding&) : mText(text) { mText.resize(0); }

    using Unit = QChar;
    static Unit GetUnit(ushort number) { return QChar(number); }
    GString& GetTarget() { return mText; }
    void AppendRun(const char* begin, int count)
    {
        const int length = mText.size();
        if (length == 0 && mText.capacity() < count)
            mText = GString(count, Qt::Uninitialized);  // resize would leave room to grow
        else
            mText.resize(length + count);
        Units::Copy(mText.data() + length, begin, count);
    }
    void Finish() {}

private:
    GString& mText;
};

// How the characters of the data lie in it.
struct ByteUnits
{
    using Collector = ByteCollector;
    static constexpr int cWidth = 1;
    static ushort Get(const char* at) { return static_cast<uchar>(*at); }
};

struct LittleEndianUnits
{
    using Collector = UnitCollector<LittleEndianUnits>;
    static constexpr int cWidth = 2;
    static ushort Get(const char* at) { return qFromLittleEndian<quint16>(at); }
    static void Copy(QChar* target, const char* begin, int count)
    {
        for (int index = 0; index < count; ++index)
            target[index] = QChar(Get(begin + index * cWidth));
    }
};

struct BigEndianUnits
{
    using Collector = UnitCollector<BigEndianUnits>;
    static constexpr int cWidth = 2;
    static ushort Get(const char* at) { return qFromBigEndian<quint16>(at); }
    static void Copy(QChar* target, const char* begin, int count)
    {
        for (int index = 0; index < count; ++index)
            target[index] = QChar(Get(begin + index * cWidth));
    }
};

bool IsLineEnd(ushort unit)
{
    return unit == '\n' || unit == '\r';
}

bool IsInlineWhitespace(ushort unit)
{
    return unit == ' ' || unit == '\t';
}

bool IsWhitespace(ushort unit)
{
    return IsInlineWhitespace(unit) || IsLineEnd(unit);
}

class ASCIISet
{
public:
    explicit ASCIISet(const GString& characters)
    {
        for (const QChar character : characters) {
            if (character.unicode() < mHas.size())
                mHas.set(character.unicode());
        }
    }
    bool operator()(ushort unit) const { return unit < mHas.size() && mHas.test(unit); }

private:
    std::bitset<0x80> mHas;
};
}  // namespace

GBin2TextStream::GBin2TextStream(GBufferedInputStream& source, const GEncodingRef& encoding)
    : mSource(source), mGivenEncoding(encoding)
{
    InitializeEncoding(encoding);
}

GBin2TextStream::GBin2TextStream(std::unique_ptr<GBufferedInputStream> source, const GEncodingRef& encoding)
    : mOwned(std::move(source)), mSource(*mOwned), mGivenEncoding(encoding)
{
    InitializeEncoding(encoding);
}

GBin2TextStream::GBin2TextStream(const GBin2TextStream& other, std::unique_ptr<GBufferedInputStream> source)
    : mOwned(std::move(source)),
      mSource(*mOwned),
      mGivenEncoding(other.mGivenEncoding),
      mEncoding(other.mEncoding),
      mLayout(other.mLayout)
{
}

void GBin2TextStream::InitializeEncoding(const GEncodingRef& encoding)
{
    if (!encoding) {
        DetectEncoding();
        return;
    }
    SetEncoding(encoding);
    if (encoding->GetCharWidth() == 2) {
        if (SkipMark(cMarkLittleEndian, 2))
            SetEncoding(GEncoding::GetUTF16LittleEndian());
        else if (SkipMark(cMarkBigEndian, 2))
            SetEncoding(GEncoding::GetUTF16BigEndian());
    } else if (encoding == GEncoding::GetUTF8()) {
        SkipMark(cMarkUTF8, 3);
    }
}

void GBin2TextStream::DetectEncoding()
{
    if (SkipMark(cMarkLittleEndian, 2))
        SetEncoding(GEncoding::GetUTF16LittleEndian());
    else if (SkipMark(cMarkBigEndian, 2))
        SetEncoding(GEncoding::GetUTF16BigEndian());
    else if (SkipMark(cMarkUTF8, 3))
        SetEncoding(GEncoding::GetUTF8());
    else
        SetEncoding(GEncoding::GetPlatform8Bit());
}

bool GBin2TextStream::SkipMark(const char* mark, int count)
{
    const bool isThere = mSource.LookAhead(count) >= count &&
                         std::memcmp(mSource.GetAhead(), mark, static_cast<size_t>(count)) == 0;
    if (isThere)
        mSource.Skip(count);
    return isThere;
}

void GBin2TextStream::SetEncoding(const GEncodingRef& encoding)
{
    mEncoding = encoding;
    switch (encoding->GetByteOrder()) {
        case GEncoding::ByteOrder::cNone:
            mLayout = Layout::cBytes;
            break;
        case GEncoding::ByteOrder::cLittleEndian:
            mLayout = Layout::cLittleEndian;
            break;
        case GEncoding::ByteOrder::cBigEndian:
            mLayout = Layout::cBigEndian;
            break;
    }
}

// Calls the operation with the units of the data's layout: one decision for a whole text, none for its
// characters.
template <typename Operation>
auto GBin2TextStream::WithUnits(Operation operation)
{
    switch (mLayout) {
        case Layout::cLittleEndian:
            return operation(LittleEndianUnits());
        case Layout::cBigEndian:
            return operation(BigEndianUnits());
        case Layout::cBytes:
            break;
    }
    return operation(ByteUnits());
}

template <typename Units>
bool GBin2TextStream::HasUnit()
{
    return mSource.LookAhead(Units::cWidth) >= Units::cWidth;
}

// Appends characters up to the first at which `isEnd` is true, which stays. False when the data ends before.
template <typename Units, typename Collector, typename IsEnd>
static bool CollectTill(GBufferedInputStream& source, Collector& collector, IsEnd isEnd)
{
    while (collector.GetTarget().size() < GBin2TextStream::cLongestText) {
        const int count = std::min(source.LookAhead(Units::cWidth) / Units::cWidth, cChunk);
        const char* const chunk = source.GetAhead();
        int length = 0;
        while (length < count && !isEnd(Units::Get(chunk + length * Units::cWidth)))
            ++length;
        collector.AppendRun(chunk, length);
        source.Skip(length * Units::cWidth);
        if (length < count)
            return true;
        if (count == 0)
            return false;
    }
    return false;
}

template <typename Units, typename IsEnd>
bool GBin2TextStream::Collect(GString& text, IsEnd isEnd)
{
    typename Units::Collector collector(text, mBytes, *mEncoding);
    const bool hasEnd = CollectTill<Units>(mSource, collector, isEnd);
    collector.Finish();
    return hasEnd;
}

template <typename Units, typename IsSkipped>
int GBin2TextStream::Skip(IsSkipped isSkipped)
{
    int count = 0;
    while (HasUnit<Units>() && isSkipped(Units::Get(mSource.GetAhead()))) {
        mSource.Skip(Units::cWidth);
        ++count;
    }
    return count;
}

int GBin2TextStream::SkipWhitespace(bool withLineEnds)
{
    return WithUnits([this, withLineEnds](auto units) {
        return withLineEnds ? Skip<decltype(units)>(IsWhitespace) : Skip<decltype(units)>(IsInlineWhitespace);
    });
}

int GBin2TextStream::SkipChars(const GString& set)
{
    return WithUnits([this, &set](auto units) { return Skip<decltype(units)>(ASCIISet(set)); });
}

bool GBin2TextStream::ReadString(GString& token)
{
    return WithUnits([this, &token](auto units) {
        Skip<decltype(units)>(IsWhitespace);
        Collect<decltype(units)>(token, IsWhitespace);
        return !token.isEmpty();
    });
}

bool GBin2TextStream::ReadLine(GString& line)
{
    return WithUnits([this, &line](auto units) {
        const bool hasEnd = Collect<decltype(units)>(line, IsLineEnd);
        SkipLineEnd<decltype(units)>();
        return hasEnd || !line.isEmpty();
    });
}

void GBin2TextStream::SkipLine()
{
    WithUnits([this](auto units) {
        Skip<decltype(units)>([](ushort unit) { return !IsLineEnd(unit); });
        SkipLineEnd<decltype(units)>();
    });
}

template <typename Units>
void GBin2TextStream::SkipLineEnd()
{
    if (!HasUnit<Units>())
        return;
    const ushort first = Units::Get(mSource.GetAhead());
    if (!IsLineEnd(first))
        return;
    mSource.Skip(Units::cWidth);
    if (first == '\r' && HasUnit<Units>() && Units::Get(mSource.GetAhead()) == '\n')
        mSource.Skip(Units::cWidth);
}

bool GBin2TextStream::ReadTillTerminator(const GString& terminators, GString& text)
{
    return WithUnits([this, &terminators, &text](auto units) {
        return Collect<decltype(units)>(text, ASCIISet(terminators)) || !text.isEmpty();
    });
}

bool GBin2TextStream::ReadQuotedString(GString& text)
{
    return WithUnits([this, &text](auto units) { return ReadQuotedUnits<decltype(units)>(text); });
}

template <typename Units>
bool GBin2TextStream::ReadQuotedUnits(GString& text)
{
    if (!HasUnit<Units>() || Units::Get(mSource.GetAhead()) != '"')
        return false;
    mSource.Skip(Units::cWidth);
    typename Units::Collector collector(text, mBytes, *mEncoding);
    bool isClosed = false;
    bool goesOn = true;
    while (goesOn) {
        goesOn =
            CollectTill<Units>(mSource, collector, [](ushort unit) { return unit == '"' || unit == '\\'; });
        if (!goesOn)
            break;
        isClosed = Units::Get(mSource.GetAhead()) == '"';
        mSource.Skip(Units::cWidth);
        goesOn = !isClosed && ReadEscape<Units>(collector);
    }
    collector.Finish();
    return isClosed;
}

// Appends what the escape behind a `\` stands for; false when the data ends there.
template <typename Units, typename Collector>
bool GBin2TextStream::ReadEscape(Collector& collector)
{
    if (!HasUnit<Units>()) {
        EscapeCodes::Append(collector.GetTarget(), '\\');
        return false;
    }
    const auto letter = Collector::GetUnit(Units::Get(mSource.GetAhead()));
    if (EscapeCodes::AppendMeaning(collector.GetTarget(), letter))
        mSource.Skip(Units::cWidth);
    else
        EscapeCodes::Append(collector.GetTarget(), '\\');  // the letter follows as any other character
    return true;
}

bool GBin2TextStream::Read(int count, GString& text)
{
    return WithUnits([this, count, &text](auto units) {
        using Units = decltype(units);
        int left = count;
        const bool isUTF8 = mEncoding == GEncoding::GetUTF8();
        Collect<Units>(text, [&left, isUTF8](ushort unit) {
            const bool isWithinCharacter = isUTF8 && (unit & 0xC0) == 0x80;
            return left-- <= 0 && !isWithinCharacter;
        });
        return !text.isEmpty();
    });
}

void GBin2TextStream::Unread(const GString& text)
{
    const GBuffer bytes = mEncoding->Encode(text);
    mSource.Unread(bytes.constData(), bytes.size());
}

void GBin2TextStream::SetRollBackPoint()
{
    mSource.SetRollBackPoint();
}

bool GBin2TextStream::RollBack()
{
    return mSource.RollBack();
}

int GBin2TextStream::Read(char* bytes, int count)
{
    return mSource.Read(bytes, count);
}

void GBin2TextStream::Reset()
{
    mSource.Reset();
    InitializeEncoding(mGivenEncoding);
}

std::unique_ptr<GInputStream> GBin2TextStream::CreateClone() const
{
    return std::unique_ptr<GInputStream>(new GBin2TextStream(*this, mSource.CreateBufferedClone()));
}
