#include "hosts/scribus/sla/ImageHeader.h"
#include "tests/support/Test.h"

#include <QImage>
#include <QtEndian>

// A number in so many bytes, the first of them the highest, or the lowest.
static QByteArray Number(quint32 number, int length, bool isLittle = false)
{
    QByteArray bytes;
    for (int i = 0; i < length; ++i)
        bytes.append(static_cast<char>(number >> (8 * (isLittle ? i : length - 1 - i))));
    return bytes;
}

static QByteArray Png(int bits, int kind)
{
    return "\x89PNG\r\n\x1a\n" + Number(13, 4) + "IHDR" + Number(640, 4) + Number(480, 4) + char(bits) +
           char(kind);
}

// A camera's picture of the picture stands before the frame that counts.
static QByteArray Jpeg(int parts, const QByteArray& frame = "\xFF\xC2")
{
    return "\xFF\xD8\xFF\xE1" + Number(2 + 20, 2) + QByteArray("\xFF\xC0\0\x11\x08\0\x09\0\x09\x03", 10) +
           QByteArray(10, 'x') + "\xFF\xC4" + Number(4, 2) + "ab" + frame + Number(17, 2) + '\x08' +
           Number(480, 2) + Number(640, 2) + char(parts) + QByteArray(9, '\0');
}

static QByteArray Tiff(bool isLittle, int interpretation, int bits, int parts)
{
    const auto number = [&](quint32 value, int length) { return Number(value, length, isLittle); };
    const auto entry = [&](int tag, int type, int count, quint32 value) {
        return number(tag, 2) + number(type, 2) + number(count, 4) +
               (type == 3 ? number(value, 2) + number(0, 2) : number(value, 4));
    };
    return QByteArray(isLittle ? "II" : "MM") + number(42, 2) + number(12, 4) + "data" + number(4, 2) +
           entry(256, 4, 1, 640) + entry(257, 3, 1, 480) + entry(258, 3, parts, bits) +
           entry(262, 3, 1, interpretation);
}

static QByteArray Psd(int mode)
{
    return "8BPS" + Number(1, 2) + QByteArray(6, '\0') + Number(3, 2) + Number(480, 4) + Number(640, 4) +
           Number(8, 2) + Number(mode, 2);
}

TEST(ImageHeaderTest, FormsOfFilesTellTheirSizeAndColours)
{
    const std::pair<QByteArray, const char*> cases[] = {
        {Png(1, 0), "1-bit 640 480"},
        {Png(8, 0), "gray 640 480"},
        {Png(16, 4), "gray 640 480"},
        {Png(8, 2), "RGB 640 480"},
        {Png(1, 3), "RGB 640 480"},
        {Png(8, 6), "RGB 640 480"},
        {Png(8, 2).left(20), "gray 640 0"},
        {Jpeg(1), "gray 640 480"},
        {Jpeg(3), "RGB 640 480"},
        {Jpeg(4, "\xFF\xC0"), "CMYK 640 480"},
        {Jpeg(3, "\xFF\xCC"), "unknown 0 0"},
        {Jpeg(3).left(40), "unknown 0 0"},
        {Tiff(true, 5, 8, 4), "CMYK 640 480"},
        {Tiff(false, 5, 8, 4), "CMYK 640 480"},
        {Tiff(true, 1, 1, 1), "1-bit 640 480"},
        {Tiff(false, 0, 8, 1), "gray 640 480"},
        {Tiff(false, 2, 8, 3), "RGB 640 480"},
        {Tiff(true, 8, 8, 3), "Lab 640 480"},
        {Tiff(true, 5, 8, 4).left(20), "unknown 0 0"},
        {Psd(0), "1-bit 640 480"},
        {Psd(1), "gray 640 480"},
        {Psd(4), "CMYK 640 480"},
        {Psd(9), "Lab 640 480"},
        {Psd(7), "unknown 640 480"},
        {"GIF89a", "unknown 0 0"},
        {"", "unknown 0 0"},
    };
    for (const auto& [bytes, told] : cases) {
        const ImageHeader header = ImageHeader::Parse(bytes);
        EXPECT_EQ("%1 %2 %3"_q.arg(header.GetColorsText()).arg(header.width).arg(header.height).toStdString(),
                  told)
            << bytes.toHex().constData();
    }
    EXPECT_EQ(ImageHeader::Parse(Png(8, 2).replace(16, 4, Number(0xFFFFFFFF, 4))).width, 0);
}

TEST(ImageHeaderTest, WhatNobodyCouldShowIsFoundWithItsReason)
{
    const Sandbox sandbox;
    QImage image(20, 20, QImage::Format_RGB32);
    image.fill(Qt::red);
    ASSERT_TRUE(image.save(sandbox.GetPath("whole.png"_q)));
    const QByteArray png = ReadFile(sandbox.GetPath("whole.png"_q));
    const char* const cBad = "is damaged, or no image";
    const std::tuple<const char*, QByteArray, const char*> cases[] = {
        {"a.png", png, ""},
        {"cut.png", png.left(png.size() - 5), cBad},
        {"cut.PNG", png.left(20), cBad},
        {"empty.png", "", cBad},
        {"text.jpg", "This is no image.", cBad},
        {"other.tif", png, ""},
        {"a.jpeg", Jpeg(3), ""},
        {"a.pdf", "garbage before %PDF-1.4", ""},
        {"b.pdf", "<html>", cBad},
        {"a.eps", "%!PS-Adobe-3.0 EPSF-3.0", ""},
        {"b.eps", "\xC5\xD0\xD3\xC6 binary", ""},
        {"c.eps", "no program", cBad},
        {"a.svg", "<svg/>", ""},
    };
    for (const auto& [name, content, fault] : cases) {
        const QString path = sandbox.GetPath(QLatin1String(name));
        ASSERT_TRUE(WriteFile(path, content));
        EXPECT_EQ(ImageHeader::FindFault(path).toStdString(), fault) << name;
    }
    EXPECT_EQ(ImageHeader::FindFault(sandbox.GetPath("gone.png"_q)), "is missing"_q);
    EXPECT_EQ(ImageHeader::FindFault(sandbox.GetPath()), "is missing"_q) << "a folder";
    const QString locked = sandbox.GetPath("a.png"_q);
    QFile::setPermissions(locked, {});
    if (QFile(locked).open(QIODevice::ReadOnly))
        return;  // nothing is locked for root
    EXPECT_EQ(ImageHeader::FindFault(locked), "can't be read: Permission denied"_q);
}
