#include "EngineFixture.h"

#include <QImage>
#include <QJsonArray>
#include <QProcess>
#include <QSet>

// One page with everything that a press has to be careful with, exported by many job options; what comes out
// is judged by programs that are not ours.

namespace
{
QStringList RunJudge(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished(120000)) << program.toStdString();
    return QString::fromUtf8(process.readAllStandardOutput()).split(QLatin1Char('\n'));
}

// The images in the order of the page, each as "rgb 3 8 jpeg 300"; a mask as "smask …".
QStringList GetImages(const QString& path)
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

QByteArray MakeNumber(quint32 number, int length)
{
    QByteArray bytes;
    for (int i = 0; i < length; ++i)
        bytes.append(static_cast<char>(number >> (8 * i)));
    return bytes;
}

// A TIFF of one CMYK colour, not compressed.
QByteArray MakeCmyk(int side, const QByteArray& color)
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
QByteArray MakePdf(const QByteArray& content)
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

class ReferencePageTest : public EngineFixture
{
protected:
    ReferencePageTest()
    {
        MakeColors("rgb.png"_q, QImage::Format_RGB32, 300);
        MakeColors("gray.png"_q, QImage::Format_Grayscale8, 300);
        MakeColors("mono.png"_q, QImage::Format_Mono, 1200);
        WriteFile(mSandbox.GetPath("cmyk.tif"_q), MakeCmyk(300, QByteArray("\x10\x20\x30\x40")));
        WriteFile(mSandbox.GetPath("placed.pdf"_q), MakePdf("0 1 0 0 k 10 10 80 80 re f"));
        WriteFile(mSandbox.GetPath("text.pdf"_q), MakePdf("1 0 0 rg BT /F 20 Tf 10 10 Td (Abc) Tj ET"));
        WriteFile(mSandbox.GetPath("half.pdf"_q), MakePdf("/S50 gs 0 1 0 0 k 10 10 80 80 re f"));
    }

    void MakeColors(const QString& name, QImage::Format format, int side)
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

    // Frames of one inch beside each other, 10 points from the left and the top of the page.
    QString MakeFrames(const QStringList& files)
    {
        QString frames;
        for (const QString& file : files) {
            QString frame = MakeImageFrame(file);
            frame.replace("WIDTH=\"100\" HEIGHT=\"100\""_q, "WIDTH=\"72\" HEIGHT=\"72\""_q);
            frame.replace("ItemID=\"7\""_q, "ItemID=\"%1\""_q.arg(frames.size() + 10));
            frames +=
                frame.replace("XPOS=\"110\""_q, "XPOS=\"%1\""_q.arg(110 + 75 * frames.count("PFILE="_q)));
        }
        return frames;
    }

    // A shape in an RGB colour of the document, 10 points from the left, 150 from the top.
    static QString MakeShape(const QString& color)
    {
        return "<COLOR NAME=\"Leaf\" SPACE=\"RGB\" R=\"10\" G=\"200\" B=\"60\"/>\n"
               "<COLOR NAME=\"Special\" SPACE=\"CMYK\" C=\"0\" M=\"70\" Y=\"100\" K=\"0\" Spot=\"1\"/>\n"
               "<PAGEOBJECT XPOS=\"110\" YPOS=\"170\" OwnPage=\"0\" ItemID=\"99\" PTYPE=\"6\" WIDTH=\"50\" "
               "HEIGHT=\"20\" FRTYPE=\"0\" CLIPEDIT=\"0\" PWIDTH=\"0\" PCOLOR=\"%1\" PCOLOR2=\"None\" "
               "LAYER=\"0\" NUMO=\"0\" path=\"M0 0 L50 0 L50 20 L0 20 L0 0 Z\" copath=\"M0 0 L50 0 L50 20 L0 "
               "20 L0 0 Z\"/>\n"_q.arg(color);
    }

    // What the page's content says, with everything in plain text.
    static QByteArray GetContent(const QString& path)
    {
        QProcess process;
        process.start("qpdf"_q, {"--qdf"_q, "--object-streams=disable"_q, path, "-"_q});
        process.waitForFinished();
        return process.readAllStandardOutput();
    }
};

TEST_F(ReferencePageTest, ImagesAndColorsAreWhatEachJobOptionsAskFor)
{
    const struct
    {
        QByteArray settings;
        const char* images;   // RGB, gray, one bit, CMYK
        const char* content;  // a part of it
        const char* version;
    } cases[] = {
        {"/ColorImageFilter /FlateEncode /GrayImageFilter /FlateEncode",
         "rgb 3 8 image 300, gray 1 8 image 300, gray 1 1 image 1200, cmyk 4 8 image 300",
         "0.03922 0.78431 0.23529 scn", "1.4"},
        {"/CompatibilityLevel 1.6 /ColorImageFilter /DCTEncode /GrayImageFilter /FlateEncode "
         "/ColorImageResolution 150 /GrayImageResolution 75 /MonoImageResolution 600",
         "rgb 3 8 jpeg 150, gray 1 8 image 75, gray 1 1 image 600, cmyk 4 8 jpeg 150",
         "0.03922 0.78431 0.23529 scn", "1.6"},
        {"/CompatibilityLevel 1.7 /ColorConversionStrategy /CMYK /ColorImageFilter /FlateEncode "
         "/GrayImageFilter /DCTEncode /ColorImageResolution 150 /ColorImageDownsampleThreshold 2 "
         "/GrayImageResolution 150 /GrayImageDownsampleThreshold 1.5",
         "cmyk 4 8 image 300, gray 1 8 jpeg 150, gray 1 1 image 1200, cmyk 4 8 image 300", " k\n", "1.7"},
        {"/CompatibilityLevel 1.3 /ColorConversionStrategy /sRGB /EncodeColorImages false "
         "/GrayImageFilter /FlateEncode /DownsampleColorImages false /ColorImageResolution 72 "
         "/MonoImageResolution 301",
         "rgb 3 8 image 300, gray 1 8 image 300, gray 1 1 image 301, rgb 3 8 image 300",
         "0.03922 0.78431 0.23529 rg", "1.3"},
        {"/ColorConversionStrategy /Gray /ColorImageFilter /FlateEncode /GrayImageFilter /FlateEncode "
         "/GrayImageResolution 9 /MonoImageDownsampleType /None /MonoImageResolution 9",
         "gray 1 8 image 9, gray 1 8 image 9, gray 1 1 image 1200, gray 1 8 image 9", " g\n", "1.4"},
        {"/ColorConversionStrategy /UseDeviceIndependentColor /ColorImageFilter /FlateEncode "
         "/GrayImageFilter /FlateEncode",
         "icc 3 8 image 300, gray 1 8 image 300, gray 1 1 image 1200, icc 4 8 image 300",
         "0.03922 0.78431 0.23529 scn", "1.4"},
    };
    Open(MakeDocument("a.sla"_q, 1,
                      MakeShape("Leaf"_q) + MakeFrames("rgb.png|gray.png|mono.png|cmyk.tif"_list)));
    for (const auto& item : cases) {
        const QString output = GetOutput("a.pdf"_q);
        ASSERT_EQ(Export(output, item.settings), cSuccess) << mHost->GetLastFailure().toStdString();
        EXPECT_EQ(GetImages(output).join(", "_q).toStdString(), item.images) << item.settings.constData();
        EXPECT_TRUE(GetContent(output).contains(item.content)) << item.settings.constData();
        EXPECT_EQ(PdfFacts::Read(output).version.toStdString(), item.version);
        EXPECT_EQ(QProcess::execute("qpdf"_q, {"--check"_q, output}), 0);
    }
}

TEST_F(ReferencePageTest, RgbThatIsLeftUnchangedIsThatOfTheDocumentInEveryDot)
{
    Open(MakeDocument("a.sla"_q, 1, MakeShape("Leaf"_q) + MakeFrames("rgb.png|gray.png"_list)));
    const QString output = GetOutput("a.pdf"_q);
    ASSERT_EQ(Export(output, "/ColorImageFilter /FlateEncode /GrayImageFilter /FlateEncode"), cSuccess);
    RunJudge("pdftoppm"_q, {"-r"_q, "300"_q, "-png"_q, "-singlefile"_q, output, GetOutput("page"_q)});
    const QImage page(GetOutput("page.png"_q));
    const auto at = [&](double x, double y) { return page.pixelColor(int(x * 300 / 72), int(y * 300 / 72)); };
    const double bleedLeft = 6;
    const double bleedTop = 5;
    EXPECT_EQ(at(bleedLeft + 46, bleedTop + 46).name(), QColor(10, 200, 60).name());
    EXPECT_EQ(at(bleedLeft + 30, bleedTop + 160).name(), QColor(10, 200, 60).name());
    const QColor gray = at(bleedLeft + 85 + 24, bleedTop + 46);
    EXPECT_NEAR(gray.red(), 100, 6);
    EXPECT_EQ(gray.red(), gray.blue());
}

TEST_F(ReferencePageTest, PlacedFilesStayVectorsWithTheirFonts)
{
    // In the place of the picture that another export of the same user draws at this moment.
    QDir().mkpath(GetSetup().home + "/.local/share/scribus/temp/sc.png"_q);
    Open(MakeDocument("a.sla"_q, 1, MakeFrames("placed.pdf|text.pdf"_list)));
    const QString output = GetOutput("a.pdf"_q);
    ASSERT_EQ(Export(output), cSuccess);
    EXPECT_EQ(GetImages(output), QStringList());
    EXPECT_TRUE(RunJudge("pdffonts"_q, {output}).join(QLatin1Char('\n')).contains("Helvetica"_q));
    const QJsonArray notes = mHost->GetLastReport()["notes"_q].toArray();
    EXPECT_EQ(notes, QJsonArray{"Fonts are not inside the PDF: Helvetica of \"text.pdf\" on page 1."_q});
    EXPECT_EQ(Export(output, "/CannotEmbedFontPolicy /Error"), cFailure);
    // A PDF/X can't have the one; so it becomes an image, and the other stays.
    ASSERT_EQ(Export(output, cForX), cSuccess) << mHost->GetLastFailure().toStdString();
    EXPECT_TRUE(
        mHost->GetLastReport()["notes"_q].toArray().last().toString().contains("\"text.pdf\" on page 1"_q));
    EXPECT_FALSE(RunJudge("pdffonts"_q, {output}).join(QLatin1Char('\n')).contains("Helvetica"_q));
}

TEST_F(ReferencePageTest, TransparencyIsFoundBeforeAKindWithoutItIsClaimed)
{
    QImage soft(100, 100, QImage::Format_ARGB32);
    QImage cut(100, 100, QImage::Format_ARGB32);
    for (int y = 0; y < 100; ++y) {
        for (int x = 0; x < 100; ++x) {
            soft.setPixelColor(x, y, QColor(255, 0, 0, 128));
            cut.setPixelColor(x, y, QColor(255, 0, 0, x < 50 ? 0 : 255));
        }
    }
    EXPECT_TRUE(soft.save(mSandbox.GetPath("soft.png"_q)) && cut.save(mSandbox.GetPath("cut.png"_q)));
    const struct
    {
        QStringList files;
        const char* attributes;
        const char* reason;  // null for none
    } cases[] = {
        {{"cut.png"_q, "placed.pdf"_q}, "", nullptr},
        {{"rgb.png"_q, "soft.png"_q}, "", "Transparent: \"soft.png\" on page 1."},
        {{"half.pdf"_q}, "", "Transparent: \"half.pdf\" on page 1."},
        {{"rgb.png"_q}, "TransValue=\"0.5\" NUMO", "Transparent: \"rgb.png\" on page 1."},
    };
    for (const auto& item : cases) {
        QString frames = MakeFrames(item.files);
        if (*item.attributes != '\0')
            frames.replace("NUMO"_q, QLatin1String(item.attributes));
        Open(MakeDocument("a.sla"_q, 1, frames));
        for (const char* settings : {cForX, "/CompatibilityLevel 1.3"}) {
            EXPECT_EQ(Export(GetOutput("a.pdf"_q), settings) == cSuccess, item.reason == nullptr) << settings;
            EXPECT_TRUE(mHost->GetLastFailure().endsWith(QLatin1String(item.reason)))
                << mHost->GetLastFailure().toStdString();
        }
    }
    EXPECT_EQ(Export(GetOutput("a.pdf"_q)), cSuccess) << "a plain PDF may have it";
}

TEST_F(ReferencePageTest, WhatIsImpossibleIsRefusedAndWhatAKindNeedsIsThere)
{
    Open(MakeDocument("a.sla"_q, 1, MakeShape("Special"_q) + MakeFrames("rgb.png|cmyk.tif"_list)));
    const struct
    {
        const char* settings;
        const char* reason;
    } refused[] = {
        {"/CheckCompliance [/PDFA1B:2005]", "they ask for PDFA1B:2005, which this program can't make"},
        {"/ColorImageMinResolution 301 /ColorImageMinResolutionPolicy /Error",
         "\"rgb.png\" on page 1 has 300 dots per inch, fewer than 301."},
    };
    for (const auto& item : refused) {
        EXPECT_EQ(Export(GetOutput("a.pdf"_q), item.settings), cFailure);
        EXPECT_TRUE(mHost->GetLastFailure().contains(QLatin1String(item.reason)))
            << mHost->GetLastFailure().toStdString();
    }
    EXPECT_EQ(ListOutput(), QStringList());

    const QString output = GetOutput("a.pdf"_q);
    ASSERT_EQ(
        Export(output, QByteArray(cForX) +
                           " /PDFXOutputConditionIdentifier (FOGRA39) /PDFXRegistryName (http://r.example) "
                           "/PDFXOutputCondition (Coated) /PDFXTrapped /True /ColorImageMinResolution 301 "
                           "/ColorImageMinResolutionPolicy /Warning "
                           "/OtherNamespaces [<</AddCropMarks true /MarksWeight 0.25 /IncludeSlug true>>]"),
        cSuccess)
        << mHost->GetLastFailure().toStdString();
    const QByteArray content = GetContent(output);
    for (const char* part :
         {"/OutputConditionIdentifier (FOGRA39)", "/RegistryName (http://r.example)",
          "/OutputCondition (Coated)", "/Trapped /True", "0.2500 w 0 j 0 J", "/Separation"})
        EXPECT_TRUE(content.contains(part)) << part;
    QStringList notes;
    for (const QJsonValue& note : mHost->GetLastReport()["notes"_q].toArray())
        notes.append(note.toString());
    EXPECT_TRUE(notes.contains("\"rgb.png\" on page 1 has 300 dots per inch, fewer than 301."_q));
    EXPECT_TRUE(notes.contains("Not available in this host: the slug area."_q));
    EXPECT_TRUE(ReadFile(GetOutput("a.report.json"_q)).contains("\"IncludeSlug\""));
    // No ink but the inks of the press and the special one.
    const QString inks =
        RunJudge("gs"_q, {"-q"_q, "-o"_q, "-"_q, "-sDEVICE=ink_cov"_q, output}).join(QLatin1Char(' '));
    EXPECT_TRUE(inks.contains("CMYK OK"_q)) << inks.toStdString();
}
}  // namespace
