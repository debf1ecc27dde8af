#include "foundation/prefs/GBin2TextStream.h"

#include "foundation/core/EscapeCodes.h"

#include <QtEndian>

#include <algorithm>
#include <bitset>
#include <functional>
#include <numeric>

namespace
{
constexpr int cChunk = 256;  // characters that are looked at at a time

// How the characters of the data lie in it.
struct ByteUnits
{
    static constexpr int cWidth = 1;
    static ushort Get(const char* at) { return static_cast<uchar>(*at); }
};

struct LittleEndianUnits
{
    static constexpr int cWidth = 2;
    static ushort Get(const char* at) { return qFromLittleEndian<quint16>(at); }
};

struct BigEndianUnits
{
    static constexpr int cWidth = 2;
    static ushort Get(const char* at) { return qFromBigEndian<quint16>(at); }
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
    InitializeEncoding();
}

GBin2TextStream::GBin2TextStream(std::unique_ptr<GBufferedInputStream> source, const GEncodingRef& encoding)
    : mOwned(std::move(source)), mSource(*mOwned), mGivenEncoding(encoding)
{
    InitializeEncoding();
}

GBin2TextStream::GBin2TextStream(const GBin2TextStream& other, std::unique_ptr<GBufferedInputStream> source)
    : mOwned(std::move(source)),
      mSource(*mOwned),
      mGivenEncoding(other.mGivenEncoding),
      mEncoding(other.mEncoding),
      mByteOrder(other.mByteOrder)
{
}

// Passes over a mark that fits the encoding that was given, or any where none was; it decides about the
// encoding.
void GBin2TextStream::InitializeEncoding()
{
    for (const GEncodingRef& marked :
         {GEncoding::GetUTF16LittleEndian(), GEncoding::GetUTF16BigEndian(), GEncoding::GetUTF8()}) {
        const bool isSought = !mGivenEncoding || mGivenEncoding == marked ||
                              (mGivenEncoding->GetCharWidth() == 2 && marked->GetCharWidth() == 2);
        if (isSought && SkipBytes(marked->Encode(GString(QChar::ByteOrderMark)))) {
            SetEncoding(marked);
            return;
        }
    }
    SetEncoding(mGivenEncoding ? mGivenEncoding : GEncoding::GetPlatform8Bit());
}

// Passes over the bytes if they are what comes next.
bool GBin2TextStream::SkipBytes(const GBuffer& bytes)
{
    const bool isNext = mSource.LookAhead(bytes.size()) >= bytes.size() &&
                        GBuffer::fromRawData(mSource.GetAhead(), bytes.size()) == bytes;
    if (isNext)
        mSource.Skip(bytes.size());
    return isNext;
}

void GBin2TextStream::SetEncoding(const GEncodingRef& encoding)
{
    mEncoding = encoding;
    mByteOrder = encoding->GetByteOrder();
}

// Calls the operation with the units of the data: one decision for a whole text, none for its characters.
template <typename Operation>
auto GBin2TextStream::WithUnits(Operation operation)
{
    switch (mByteOrder) {
        case GEncoding::ByteOrder::cLittleEndian:
            return operation(LittleEndianUnits());
        case GEncoding::ByteOrder::cBigEndian:
            return operation(BigEndianUnits());
        case GEncoding::ByteOrder::cNone:
            break;
    }
    return operation(ByteUnits());
}

template <typename Units>
bool GBin2TextStream::HasUnit()
{
    return mSource.LookAhead(Units::cWidth) >= Units::cWidth;
}

// Collects characters up to the first at which `isEnd` is true, which stays. False when the data ends before.
template <typename Units, typename IsEnd>
bool GBin2TextStream::CollectTill(IsEnd isEnd)
{
    while (mCollected.GetLength() < cLongestText) {
        const int count = std::min(mSource.LookAhead(Units::cWidth) / Units::cWidth, cChunk);
        const char* const chunk = mSource.GetAhead();
        char16_t* const target = mCollected.MakeRoom(static_cast<size_t>(count));
        int length = 0;
        for (; length < count; ++length) {
            const ushort unit = Units::Get(chunk + length * Units::cWidth);
            if (isEnd(unit))
                break;
            target[length] = unit;
        }
        mCollected.Add(static_cast<size_t>(length));
        mSource.Skip(length * Units::cWidth);
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
    mCollected.Clear();
    const bool hasEnd = CollectTill<Units>(isEnd);
    TakeCollected<Units>(text);
    return hasEnd;
}

// Makes the text of what was collected.
template <typename Units>
void GBin2TextStream::TakeCollected(GString& text)
{
    const char16_t* const units = mCollected.GetUnits();
    const int length = mCollected.GetLength();
    char16_t all = 0;
    if (Units::cWidth == 1)
        all = std::accumulate(units, units + length, all, std::bit_or<char16_t>());
    const bool isText = all < 0x80;  // ASCII, or UTF-16
    if (!isText) {
        GBuffer bytes(length, Qt::Uninitialized);
        std::transform(units, units + length, bytes.data(),
                       [](char16_t unit) { return static_cast<char>(unit); });
        text = mEncoding->Decode(bytes);
        mHasLostBytes = mHasLostBytes || mEncoding->Encode(text) != bytes;
    } else if (text.capacity() >= length) {
        text.resize(length);
        std::copy(units, units + length, reinterpret_cast<char16_t*>(text.data()));
    } else {
        text = GString(reinterpret_cast<const QChar*>(units), length);
    }
}

template <typename Units, typename IsSkipped>
int64_t GBin2TextStream::Skip(IsSkipped isSkipped)
{
    int64_t count = 0;
    while (HasUnit<Units>() && isSkipped(Units::Get(mSource.GetAhead()))) {
        mSource.Skip(Units::cWidth);
        ++count;
    }
    return count;
}

int64_t GBin2TextStream::SkipWhitespace(bool withLineEnds)
{
    return WithUnits([this, withLineEnds](auto units) {
        return withLineEnds ? Skip<decltype(units)>(IsWhitespace) : Skip<decltype(units)>(IsInlineWhitespace);
    });
}

int64_t GBin2TextStream::SkipChars(const GString& set)
{
    return WithUnits([this, &set](auto units) { return Skip<decltype(units)>(ASCIISet(set)); });
}

bool GBin2TextStream::ReadString(GString& token)
{
    return WithUnits([this, &token](auto units) {
        Skip<decltype(units)>(IsWhitespace);
        static_cast<void>(Collect<decltype(units)>(token, IsWhitespace));  // the end ends a token, too
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

bool GBin2TextStream::SkipLine()
{
    return WithUnits([this](auto units) {
        Skip<decltype(units)>(IsInlineWhitespace);
        const bool isBlank = Skip<decltype(units)>([](ushort unit) { return !IsLineEnd(unit); }) == 0;
        SkipLineEnd<decltype(units)>();
        return isBlank;
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
    mCollected.Clear();
    bool isClosed = false;
    while (!isClosed && CollectTill<Units>([](ushort unit) { return unit == '"' || unit == '\\'; })) {
        isClosed = Units::Get(mSource.GetAhead()) == '"';
        mSource.Skip(Units::cWidth);
        if (!isClosed)
            CollectEscape<Units>();
    }
    TakeCollected<Units>(text);
    return isClosed;
}

// Collects what the escape behind a `\` stands for. What is no escape follows as any other character.
template <typename Units>
void GBin2TextStream::CollectEscape()
{
    const ushort letter = HasUnit<Units>() ? Units::Get(mSource.GetAhead()) : ushort{0};
    const QLatin1String meaning = EscapeCodes::GetMeaning(letter);
    if (meaning.isEmpty()) {
        mCollected.Add(QLatin1String("\\", 1));
    } else {
        mCollected.Add(meaning);
        mSource.Skip(Units::cWidth);
    }
}

bool GBin2TextStream::Read(int count, GString& text)
{
    return WithUnits([this, count, &text](auto units) {
        using Units = decltype(units);
        int left = count;
        const bool isUTF8 = mEncoding == GEncoding::GetUTF8();
        const auto isPast = [&left, isUTF8](ushort unit) {
            const bool isWithinCharacter = isUTF8 && (unit & 0xC0) == 0x80;
            return left-- <= 0 && !isWithinCharacter;
        };
        static_cast<void>(Collect<Units>(text, isPast));  // fewer, where the data ends before
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
    InitializeEncoding();
}

std::unique_ptr<GInputStream> GBin2TextStream::CreateClone() const
{
    return std::unique_ptr<GInputStream>(new GBin2TextStream(*this, mSource.CreateBufferedClone()));
}
