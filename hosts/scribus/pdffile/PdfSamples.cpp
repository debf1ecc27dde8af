#include "hosts/scribus/pdffile/PdfSamples.h"

#include <algorithm>
#include <cstdint>

constexpr int cMostOfByte = 255;

int PdfSamples::Get(int x, int y, int part) const
{
    const size_t row = size_t(y) * GetRowLength();
    if (bits == 8)
        return static_cast<unsigned char>(bytes[row + size_t(x) * size_t(parts) + size_t(part)]);
    return (static_cast<unsigned char>(bytes[row + size_t(x) / 8]) >> (7 - x % 8)) & 1;
}

namespace
{
struct Span
{
    int begin;
    int end;
};

// The dots of a side of `length` that dot `place` of `newLength` covers; one at least.
Span GetCovered(int place, int newLength, int length)
{
    const int begin = static_cast<int>(int64_t(place) * length / newLength);
    const int end = static_cast<int>(int64_t(place + 1) * length / newLength);
    return {begin, std::max(begin + 1, end)};
}

int GetMean(const PdfSamples& samples, Span across, Span down, int part)
{
    int64_t sum = 0;
    for (int y = down.begin; y < down.end; ++y) {
        for (int x = across.begin; x < across.end; ++x)
            sum += samples.Get(x, y, part);
    }
    const int64_t count = int64_t(across.end - across.begin) * (down.end - down.begin);
    return static_cast<int>((sum + count / 2) / count);
}
}  // namespace

PdfSamples PdfSamples::Shrink(int newWidth, int newHeight, bool averages) const
{
    PdfSamples small{std::clamp(newWidth, 1, width), std::clamp(newHeight, 1, height), parts, bits, {}};
    small.bytes.assign(small.GetLength(), '\0');
    for (int y = 0; y < small.height; ++y) {
        const Span down = GetCovered(y, small.height, height);
        for (int x = 0; x < small.width; ++x) {
            const Span across = GetCovered(x, small.width, width);
            for (int part = 0; part < parts; ++part) {
                const int value =
                    averages ? GetMean(*this, across, down, part)
                             : Get((across.begin + across.end) / 2, (down.begin + down.end) / 2, part);
                const size_t row = size_t(y) * small.GetRowLength();
                if (bits == 8)
                    small.bytes[row + size_t(x) * size_t(parts) + size_t(part)] =
                        static_cast<char>(std::min(value, cMostOfByte));
                else if (value != 0)
                    small.bytes[row + size_t(x) / 8] |= static_cast<char>(0x80 >> (x % 8));
            }
        }
    }
    return small;
}

bool PdfSamples::AreGrays() const
{
    if (parts == 1 || bits != 8 || bytes.size() < GetLength())
        return false;
    for (size_t i = 0; i < GetLength(); i += size_t(parts)) {
        const bool isBlackAlone = bytes[i] == 0 && parts == 4;
        if (bytes[i] != bytes[i + 1] || bytes[i] != bytes[i + 2] || (parts == 4 && !isBlackAlone))
            return false;
    }
    return true;
}

PdfSamples PdfSamples::MakeGray() const
{
    PdfSamples gray{width, height, 1, bits, std::string(size_t(width) * size_t(height), '\0')};
    for (size_t i = 0; i < gray.bytes.size(); ++i) {
        const char last = bytes[(i + 1) * size_t(parts) - 1];
        gray.bytes[i] = parts == 4 ? static_cast<char>(cMostOfByte - static_cast<unsigned char>(last)) : last;
    }
    return gray;
}
