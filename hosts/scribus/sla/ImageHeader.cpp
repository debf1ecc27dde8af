#include "hosts/scribus/sla/ImageHeader.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

// Cameras put pictures of their own before the part of a JPEG that tells its size, and a TIFF may have its
// table behind the image.
constexpr qint64 cMostBytes = 256 * 1024 * 1024;

namespace
{
using Colors = ImageHeader::Colors;

// Numbers in the bytes; 0 beyond their end.
class Bytes
{
public:
    Bytes(const QByteArray& bytes, bool isLittle) : mBytes(bytes), mIsLittle(isLittle) {}

    quint32 Get(qint64 offset, int length) const
    {
        quint32 value = 0;
        for (int i = 0; i < length; ++i) {
            const qint64 place = offset + (mIsLittle ? length - 1 - i : i);
            const bool isInside = place >= 0 && place < mBytes.size();
            value = value << 8 | (isInside ? static_cast<quint8>(mBytes[static_cast<int>(place)]) : 0);
        }
        return value;
    }

private:
    const QByteArray& mBytes;
    bool mIsLittle;
};

int GetSide(quint32 number)
{
    constexpr quint32 cLongest = 1000000;
    return number <= cLongest ? static_cast<int>(number) : 0;
}

ImageHeader ParsePng(const QByteArray& bytes)
{
    const Bytes numbers(bytes, false);
    ImageHeader header;
    header.width = GetSide(numbers.Get(16, 4));
    header.height = GetSide(numbers.Get(20, 4));
    const bool isGray = (numbers.Get(25, 1) & 3) == 0;
    header.colors = isGray ? (numbers.Get(24, 1) == 1 ? Colors::Mono : Colors::Gray) : Colors::Rgb;
    return header;
}

ImageHeader ParseJpeg(const QByteArray& bytes)
{
    const Bytes numbers(bytes, false);
    ImageHeader header;
    for (qint64 at = 2; at + 9 < bytes.size() && numbers.Get(at, 1) == 0xFF;
         at += 2 + qMax<qint64>(2, numbers.Get(at + 2, 2))) {
        const quint32 marker = numbers.Get(at + 1, 1);
        const bool isFrame =
            marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
        if (!isFrame)
            continue;
        const quint32 parts = numbers.Get(at + 9, 1);
        header.height = GetSide(numbers.Get(at + 5, 2));
        header.width = GetSide(numbers.Get(at + 7, 2));
        header.colors = parts == 1 ? Colors::Gray : (parts == 4 ? Colors::Cmyk : Colors::Rgb);
        break;
    }
    return header;
}

Colors GetTiffColors(quint32 interpretation, quint32 bits)
{
    switch (interpretation) {
        case 0:
        case 1:
            return bits == 1 ? Colors::Mono : Colors::Gray;
        case 5:
            return Colors::Cmyk;
        case 8:
        case 9:
            return Colors::Lab;
        default:
            return Colors::Rgb;
    }
}

ImageHeader ParseTiff(const QByteArray& bytes)
{
    const Bytes numbers(bytes, bytes.startsWith("II"));
    const qint64 table = numbers.Get(4, 4);
    const int count = static_cast<int>(numbers.Get(table, 2));
    quint32 bits = 1;
    quint32 interpretation = 0;
    ImageHeader header;
    for (int i = 0; i < count; ++i) {
        const qint64 entry = table + 2 + qint64(i) * 12;
        const bool isShort = numbers.Get(entry + 2, 2) == 3;
        const quint32 value = numbers.Get(entry + 8, isShort ? 2 : 4);
        const bool isAlone = numbers.Get(entry + 4, 4) == 1;
        switch (numbers.Get(entry, 2)) {
            case 256:
                header.width = GetSide(value);
                break;
            case 257:
                header.height = GetSide(value);
                break;
            case 258:
                bits = isAlone ? value : 8;  // several parts have one bit each in no image that anybody makes
                break;
            case 262:
                interpretation = value;
                break;
            default:
                break;
        }
    }
    if (header.width > 0)
        header.colors = GetTiffColors(interpretation, bits);
    return header;
}

ImageHeader ParsePsd(const QByteArray& bytes)
{
    const Bytes numbers(bytes, false);
    static constexpr Colors cModes[] = {Colors::Mono, Colors::Gray, Colors::Rgb, Colors::Rgb, Colors::Cmyk};
    const quint32 mode = numbers.Get(24, 2);
    constexpr quint32 cLabMode = 9;
    ImageHeader header;
    header.height = GetSide(numbers.Get(14, 4));
    header.width = GetSide(numbers.Get(18, 4));
    header.colors = mode < 5 ? cModes[mode] : (mode == cLabMode ? Colors::Lab : Colors::Unknown);
    return header;
}
}  // namespace

ImageHeader ImageHeader::Parse(const QByteArray& bytes)
{
    if (bytes.startsWith("\x89PNG\r\n\x1a\n"))
        return ParsePng(bytes);
    if (bytes.startsWith("\xFF\xD8\xFF"))
        return ParseJpeg(bytes);
    if (bytes.startsWith(QByteArray("II*\0", 4)) || bytes.startsWith(QByteArray("MM\0*", 4)))
        return ParseTiff(bytes);
    return bytes.startsWith("8BPS") ? ParsePsd(bytes) : ImageHeader();
}

// The bytes of a file as long as this object lives, from the disk as they are needed.
namespace
{
class MappedFile
{
public:
    explicit MappedFile(const QString& path) : mFile(path)
    {
        const bool isOpen = mFile.open(QIODevice::ReadOnly);
        const qint64 length = isOpen ? qMin(mFile.size(), cMostBytes) : 0;
        const uchar* const begin = length > 0 ? mFile.map(0, length) : nullptr;
        if (begin != nullptr)
            mBytes = QByteArray::fromRawData(reinterpret_cast<const char*>(begin), static_cast<int>(length));
    }

    const QByteArray& GetBytes() const { return mBytes; }

    // Why there are none; empty for a file without content.
    QString GetReason() const { return mFile.error() == QFile::NoError ? QString() : mFile.errorString(); }

    bool IsWhole() const { return mBytes.size() == mFile.size(); }

private:
    QFile mFile;
    QByteArray mBytes;
};

// Whether the parts of a PNG follow each other to the last one.
bool IsWholePng(const QByteArray& bytes)
{
    const Bytes numbers(bytes, false);
    for (qint64 at = 8; at + 12 <= bytes.size(); at += 12 + qint64(numbers.Get(at, 4))) {
        if (bytes.mid(static_cast<int>(at) + 4, 4) == "IEND")
            return true;
    }
    return false;
}

// Whether a file begins as its name says. Of a name that says nothing, anything may be true.
bool IsAsNamed(const QString& path, const QByteArray& bytes)
{
    constexpr int cLongestStart = 1024;  // that may stand before the mark of a PDF
    const QString ending = QFileInfo(path).suffix().toLower();
    const auto isOneOf = [&](std::initializer_list<const char*> endings) {
        return std::any_of(endings.begin(), endings.end(),
                           [&](const char* one) { return ending == QLatin1String(one); });
    };
    if (isOneOf({"pdf"}))
        return bytes.left(cLongestStart).contains("%PDF-");
    if (isOneOf({"eps", "epsf", "epsi", "ps"}))
        return bytes.startsWith("%!") || bytes.startsWith("\xC5\xD0\xD3\xC6");
    const bool isImage = isOneOf({"png", "jpg", "jpeg", "tif", "tiff", "psd"});
    return !isImage || ImageHeader::Parse(bytes).width > 0;
}
}  // namespace

ImageHeader ImageHeader::Read(const QString& path)
{
    return Parse(MappedFile(path).GetBytes());
}

QString ImageHeader::FindFault(const QString& path)
{
    if (!QFileInfo(path).isFile())
        return QStringLiteral("is missing");
    const MappedFile file(path);
    const QByteArray& bytes = file.GetBytes();
    if (!file.GetReason().isEmpty())
        return QStringLiteral("can't be read: %1").arg(file.GetReason());
    const bool isBroken = bytes.startsWith("\x89PNG") && file.IsWhole() && !IsWholePng(bytes);
    return bytes.isEmpty() || isBroken || !IsAsNamed(path, bytes) ? QStringLiteral("is damaged, or no image")
                                                                  : QString();
}

QString ImageHeader::GetColorsText() const
{
    static const char* const cTexts[] = {"unknown", "1-bit", "gray", "RGB", "CMYK", "Lab"};
    return QLatin1String(cTexts[static_cast<int>(colors)]);
}
