#include "ReferencePageFixture.h"

#include <QProcess>

static QByteArray MakeNumber(quint32 number, int length)
{
    QByteArray bytes;
    for (int i = 0; i < length; ++i)
        bytes.append(static_cast<char>(number >> (8 * i)));
    return bytes;
}

// A TIFF of one CMYK colour, not compressed.
static QByteArray MakeCmyk(int side, const QByteArray& color)
{
    const auto entry = [](int tag, int type, quint32 count, quint32 value) {
        return MakeNumber(tag, 2) + MakeNumber(type, 2) + MakeNumber(count, 4) + MakeNumber(value, 4);
    };
    const quint32 size = quint32(side * side * 4);
    const QByteArray table = MakeNumber(9, 2) + entry(256, 3, 1, side) + entry(257, 3, 1, side) +
                             entry(258, 3, 4, 8 + size) + entry(259, 3, 1, 1) + entry(262, 3, 1, 5) +
                             entry(273, 4, 1, 8) + entry(277, 3, 1, 4) + entry(278, 3, 1, side) +
                             entry(279, 4, 1, size) + MakeNumber(0, 4);
    return "II*" + QByteArray(1, '\0') + MakeNumber(16 + size, 4) + color.repeated(side * side) +
           MakeNumber(8, 2).repeated(4) + table;
}

// A PDF of 100 x 100 points with that content; fonts F and states S50 (half transparent) are there.
static QByteArray MakePdf(const QByteArray& content)
{
    const QByteArray objects[] = {
        "<</Type/Catalog/Pages 2 0 R>>", "<</Type/Pages/Kids[3 0 R]/Count 1>>",
        "<</Type/Page/Parent 2 0 R/MediaBox[0 0 100 100]/Contents 4 0 R/Resources<</ExtGState<</S50<</ca "
        "0.5>>>>/Font<</F<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>>>>>>>",
        "<</Length " + QByteArray::number(content.size()) + ">>stream\n" + content + "\nendstream"};
    QByteArray text = "%PDF-1.4\n";
    QByteArray table = "xref\n0 5\n0000000000 65535 f \n";
    for (int i = 0; i < 4; ++i) {
        table += QByteArray::number(text.size()).rightJustified(10, '0') + " 00000 n \n";
        text += QByteArray::number(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
    }
    return text + table + "trailer<</Size 5/Root 1 0 R>>\nstartxref\n" + QByteArray::number(text.size()) +
           "\n%%EOF\n";
}

ReferencePageFixture::ReferencePageFixture()
{
    MakeColors("rgb.png"_q, QImage::Format_RGB32, 300);
    MakeColors("gray.png"_q, QImage::Format_Grayscale8, 300);
    MakeColors("mono.png"_q, QImage::Format_Mono, 1200);
    QImage noise(300, 300, QImage::Format_RGB32);
    quint32 number = 1;
    for (int y = 0; y < 300; ++y) {
        for (int x = 0; x < 300; ++x) {
            number = number * 1664525 + 1013904223;
            noise.setPixel(x, y, number >> 8);
        }
    }
    EXPECT_TRUE(noise.save(mSandbox.GetPath("noise.png"_q)));
    EXPECT_TRUE(noise.convertToFormat(QImage::Format_Grayscale8).save(mSandbox.GetPath("graynoise.png"_q)));
    WriteFile(mSandbox.GetPath("cmyk.tif"_q), MakeCmyk(300, QByteArray("\x10\x20\x30\x40")));
    WriteFile(mSandbox.GetPath("placed.pdf"_q), MakePdf("0 1 0 0 k 10 10 80 80 re f"));
    WriteFile(mSandbox.GetPath("text.pdf"_q), MakePdf("1 0 0 rg BT /F 20 Tf 10 10 Td (Abc) Tj ET"));
    WriteFile(mSandbox.GetPath("half.pdf"_q), MakePdf("/S50 gs 0 1 0 0 k 10 10 80 80 re f"));
    WriteFile(mSandbox.GetPath("vector.eps"_q),
              "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 100 100\n%%EndComments\n"
              "1 0 0 0 setcmykcolor 10 10 80 80 rectfill showpage\n%%EOF\n");
}

void ReferencePageFixture::MakeColors(const QString& name, QImage::Format format, int side)
{
    QImage image(side, side, QImage::Format_RGB32);
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x)
            image.setPixelColor(
                x, y,
                format == QImage::Format_RGB32 ? QColor(10, 200, 60) : QColor(x % 200, x % 200, x % 200));
    }
    EXPECT_TRUE(image.convertToFormat(format).save(mSandbox.GetPath(name)));
}

QString ReferencePageFixture::MakeFrames(const QStringList& files)
{
    QString frames;
    for (const QString& file : files) {
        QString frame = MakeImageFrame(file);
        frame.replace("WIDTH=\"100\" HEIGHT=\"100\""_q, "WIDTH=\"72\" HEIGHT=\"72\""_q);
        frame.replace("ItemID=\"7\""_q, "ItemID=\"%1\""_q.arg(frames.size() + 10));
        frames += frame.replace("XPOS=\"110\""_q, "XPOS=\"%1\""_q.arg(110 + 75 * frames.count("PFILE="_q)));
    }
    return frames;
}

QString ReferencePageFixture::MakeShape(const QString& color)
{
    return "<COLOR NAME=\"Leaf\" SPACE=\"RGB\" R=\"10\" G=\"200\" B=\"60\"/>\n"
           "<COLOR NAME=\"Ink\" SPACE=\"CMYK\" C=\"0\" M=\"100\" Y=\"100\" K=\"0\"/>\n"
           "<COLOR NAME=\"Special\" SPACE=\"CMYK\" C=\"0\" M=\"70\" Y=\"100\" K=\"0\" Spot=\"1\"/>\n"
           "<PAGEOBJECT XPOS=\"110\" YPOS=\"170\" OwnPage=\"0\" ItemID=\"99\" PTYPE=\"6\" WIDTH=\"50\" "
           "HEIGHT=\"20\" FRTYPE=\"0\" CLIPEDIT=\"0\" PWIDTH=\"0\" PCOLOR=\"%1\" PCOLOR2=\"None\" "
           "LAYER=\"0\" NUMO=\"0\" path=\"M0 0 L50 0 L50 20 L0 20 L0 0 Z\" copath=\"M0 0 L50 0 L50 20 L0 "
           "20 L0 0 Z\"/>\n"_q.arg(color);
}

QStringList ReferencePageFixture::RunJudge(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished(120000)) << program.toStdString();
    return QString::fromUtf8(process.readAllStandardOutput()).split(QLatin1Char('\n'));
}

QStringList ReferencePageFixture::GetImages(const QString& path)
{
    QStringList images;
    for (const QString& line : RunJudge("pdfimages"_q, {"-list"_q, path})) {
        const QStringList columns = line.simplified().split(QLatin1Char(' '));
        if (columns.size() > 13 && columns[0] != "page"_q)
            images += (columns[2] == "image"_q ? QString() : columns[2] + QLatin1Char(' ')) + columns[5] +
                      QLatin1Char(' ') + columns[6] + QLatin1Char(' ') + columns[7] + QLatin1Char(' ') +
                      columns[8] + QLatin1Char(' ') + columns[12];
    }
    return images;
}

QByteArray ReferencePageFixture::GetContent(const QString& path)
{
    return RunProgram("qpdf"_q, {"--qdf"_q, "--object-streams=disable"_q, path, "-"_q});
}
