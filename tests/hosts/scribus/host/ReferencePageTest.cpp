#include "ReferencePageFixture.h"

#include <QJsonArray>
#include <QProcess>
#include <QRegularExpression>

// One page with everything that a press has to be careful with, exported by many job options; what comes out
// is judged by programs that are not ours.

namespace
{
using ReferencePageTest = ReferencePageFixture;

TEST_F(ReferencePageTest, ImagesAndColorsAreWhatEachJobOptionsAskFor)
{
    // images: RGB, gray, one bit, CMYK
    // content: a part of it
    const std::tuple<QByteArray, const char*, const char*, const char*> cases[] = {
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
    for (const auto& [settings, images, content, version] : cases) {
        const QString output = GetOutput("a.pdf"_q);
        ASSERT_EQ(Export(output, settings), cSuccess);
        EXPECT_EQ(GetImages(output).join(", "_q).toStdString(), images) << settings.constData();
        EXPECT_TRUE(GetContent(output).contains(content)) << settings.constData();
        EXPECT_EQ(PdfFacts::Read(output).version.toStdString(), version);
        EXPECT_EQ(QProcess::execute("qpdf"_q, {"--check"_q, output}), 0);
    }
}

// Ten things of 72 points on the page, each with a black square of text in its middle.
enum Thing
{
    Rgb,
    Gray,
    Mono,
    Cmyk,
    CutOut,
    PlacedPdf,
    PlacedEps,
    Leaf,
    Special,
    Ink,
    cThings
};

class TenThingsTest : public ReferencePageFixture
{
protected:
    static QPoint GetPlace(int thing) { return {4 + 78 * (thing % 5), 10 + 90 * (thing / 5)}; }

    static QString MoveTo(QString element, int thing, int size, int number)
    {
        const QPoint place = GetPlace(thing) + QPoint((72 - size) / 2, (72 - size) / 2);
        element.replace(QRegularExpression("XPOS=\"\\d+\" YPOS=\"\\d+\""_q),
                        "XPOS=\"%1\" YPOS=\"%2\""_q.arg(100 + place.x()).arg(20 + place.y()));
        element.replace(QRegularExpression("WIDTH=\"\\d+\" HEIGHT=\"\\d+\""_q),
                        "WIDTH=\"%1\" HEIGHT=\"%1\""_q.arg(size));
        return element.replace(QRegularExpression("ItemID=\"\\d+\""_q), "ItemID=\"%1\""_q.arg(number));
    }

    QString MakePage()
    {
        QImage cut(100, 100, QImage::Format_ARGB32);
        for (int y = 0; y < 100; ++y)
            for (int x = 0; x < 100; ++x)
                cut.setPixelColor(x, y, QColor(255, 0, 0, x > 50 ? 0 : 255));
        EXPECT_TRUE(cut.save(mSandbox.GetPath("cut.png"_q)));
        QString page;
        int thing = 0;
        for (const QString& file : "rgb.png|gray.png|mono.png|cmyk.tif|cut.png|placed.pdf|vector.eps"_list) {
            page += MoveTo(MakeImageFrame(file), thing, 72, 100 + thing);
            ++thing;
        }
        for (const char* color : {"Leaf", "Special", "Ink"}) {
            page += MoveTo(MakeShape(QLatin1String(color)), thing, 72, 100 + thing)
                        .replace(QRegularExpression("path=\"[^\"]*\""_q),
                                 "path=\"M0 0 L72 0 L72 72 L0 72 L0 0 Z\""_q);
            ++thing;
        }
        for (thing = 0; thing < cThings; ++thing)
            page += MoveTo(MakeText("DejaVu Sans Bold"_q), thing, 24, 200 + thing)
                        .replace("Some words"_q, "\u2588\u2588"_q)
                        .replace(QRegularExpression("path=\"[^\"]*\""_q),
                                 "path=\"M0 0 L24 0 L24 24 L0 24 L0 0 Z\""_q);
        return MakeDocument("a.sla"_q, 1, page);
    }

    QImage Draw(const QString& pdf)
    {
        RunJudge("pdftoppm"_q, {"-r"_q, "144"_q, "-png"_q, "-singlefile"_q, pdf, GetOutput("page"_q)});
        return QImage(GetOutput("page.png"_q)).convertToFormat(QImage::Format_RGB32);
    }

    // A dot of a thing's, in points from its corner; the page has a bleed of 6 at the left and 5 above it.
    static QColor GetColor(const QImage& page, int thing, int x, int y)
    {
        const QPoint place = GetPlace(thing);
        return page.pixelColor(2 * (6 + place.x() + x), 2 * (5 + place.y() + y));
    }
};

bool IsNear(const QColor& one, const QColor& other, int most)
{
    return qAbs(one.red() - other.red()) <= most && qAbs(one.green() - other.green()) <= most &&
           qAbs(one.blue() - other.blue()) <= most;
}

enum class Rgbs
{
    Kept,
    OnPress,  // kept, and shown by the judge as the press of the PDF/X shows them
    Inks,
    Grays
};

bool IsAsAskedFor(int thing, const QColor& color, Rgbs rgb)
{
    const int red = color.red();
    const int green = color.green();
    const int blue = color.blue();
    if (rgb == Rgbs::Grays && thing != PlacedPdf && thing != PlacedEps)
        return IsNear(color, QColor(red, red, red), 2);
    switch (thing) {
        case Rgb:
        case Leaf:
            if (rgb == Rgbs::Inks)
                return green > red + 50 && green > blue + 50;
            return IsNear(color, rgb == Rgbs::Kept ? QColor(10, 200, 60) : QColor(81, 191, 71), 12);
        case Gray:
        case Cmyk:
            return color.lightness() > 20 && color.lightness() < 230;
        case CutOut:
        case Ink:
            return red > green + 100 && red > blue + 100;
        case PlacedPdf:
            return red > green + 100 && blue > green + 50;
        case PlacedEps:
            return blue > red + 100;
        case Special:
            return red > green + 50 && green > blue + 30;
        default:
            return true;
    }
}

// Colours of inks are what the judge makes of them.
TEST_F(TenThingsTest, AreInTheColoursThatTenJobOptionsAskForAndTheTextIsOnTop)
{
    const QByteArray kind =
        "/PDFXOutputIntentProfile (ISO Coated v2 300% \\(basICColor\\)) /CheckCompliance ";
    const std::pair<QByteArray, Rgbs> cases[] = {
        {"", Rgbs::Kept},
        {"/ColorConversionStrategy /sRGB", Rgbs::Kept},
        {"/ColorConversionStrategy /CMYK", Rgbs::Inks},
        {"/ColorConversionStrategy /Gray", Rgbs::Grays},
        {"/ColorConversionStrategy /UseDeviceIndependentColor", Rgbs::Kept},
        {"/CompatibilityLevel 1.3", Rgbs::Kept},
        {"/CompatibilityLevel 1.7 /ColorImageResolution 72 /GrayImageResolution 72 /MonoImageResolution 300",
         Rgbs::Kept},
        {kind + "[/PDFX1a:2001]", Rgbs::Inks},
        {kind + "[/PDFX3:2003]", Rgbs::OnPress},
        {kind + "[/PDFX4:2010]", Rgbs::OnPress},
    };
    Open(MakePage());
    for (const auto& [settings, rgb] : cases) {
        SCOPED_TRACE(settings.constData());
        const QString pdf = GetOutput("a.pdf"_q);
        ASSERT_EQ(Export(pdf, settings + " /ColorImageFilter /FlateEncode"), cSuccess);
        const QImage page = Draw(pdf);
        for (int thing = 0; thing < cThings; ++thing) {
            EXPECT_LT(GetColor(page, thing, 36, 36).lightness(), 70) << "text on " << thing;
            const QColor color = GetColor(page, thing, 12, 12);
            const std::string name = std::to_string(thing) + " is " + color.name().toStdString();
            EXPECT_TRUE(IsAsAskedFor(thing, color, rgb)) << name;
        }
        EXPECT_EQ(GetColor(page, CutOut, 66, 12).name(), "#ffffff"_q) << "what is cut away";
        EXPECT_EQ(GetColor(page, PlacedPdf, 2, 2).name(), "#ffffff"_q);
        const QStringList box =
            RunJudge("gs"_q, {"-q"_q, "-dNOPAUSE"_q, "-dBATCH"_q, "-sDEVICE=bbox"_q, pdf});
        const QStringList sides = box.filter("%%BoundingBox"_q).value(0).split(QLatin1Char(' '));
        ASSERT_EQ(sides.size(), 5) << box.join(QLatin1Char(' ')).toStdString();
        const int expected[] = {10, 136, 394, 298};
        for (int side = 0; side < 4; ++side)
            EXPECT_NEAR(sides[side + 1].toInt(), expected[side], 2) << side;
    }
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
    ASSERT_EQ(Export(output, cForX), cSuccess);
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
    // reason: null for none
    const std::tuple<QStringList, const char*, const char*> cases[] = {
        {{"cut.png"_q, "placed.pdf"_q}, "", nullptr},
        {{"rgb.png"_q, "soft.png"_q}, "", "Transparent: \"soft.png\" on page 1."},
        {{"half.pdf"_q}, "", "Transparent: \"half.pdf\" on page 1."},
        {{"rgb.png"_q}, "TransValue=\"0.5\" NUMO", "Transparent: \"rgb.png\" on page 1."},
    };
    for (const auto& [files, attributes, reason] : cases) {
        QString frames = MakeFrames(files);
        if (*attributes != '\0')
            frames.replace("NUMO"_q, QLatin1String(attributes));
        Open(MakeDocument("a.sla"_q, 1, frames));
        for (const char* settings : {cForX, "/CompatibilityLevel 1.3"}) {
            EXPECT_EQ(Export(GetOutput("a.pdf"_q), settings) == cSuccess, reason == nullptr) << settings;
            EXPECT_TRUE(mHost->GetLastFailure().endsWith(QLatin1String(reason)));
        }
    }
    EXPECT_EQ(Export(GetOutput("a.pdf"_q)), cSuccess) << "a plain PDF may have it";
}

TEST_F(ReferencePageTest, WhatIsImpossibleIsRefusedAndWhatAKindNeedsIsThere)
{
    Open(MakeDocument("a.sla"_q, 1, MakeShape("Special"_q) + MakeFrames("rgb.png|cmyk.tif"_list)));
    const std::pair<const char*, const char*> refused[] = {
        {"/CheckCompliance [/PDFA1B:2005]", "they ask for PDFA1B:2005, which this program can't make"},
        {"/ColorImageMinResolution 301 /ColorImageMinResolutionPolicy /Error",
         "\"rgb.png\" on page 1 has 300 dots per inch, fewer than 301."},
    };
    for (const auto& [settings, reason] : refused) {
        EXPECT_EQ(Export(GetOutput("a.pdf"_q), settings), cFailure);
        EXPECT_TRUE(mHost->GetLastFailure().contains(QLatin1String(reason)));
    }
    EXPECT_EQ(ListOutput(), QStringList());

    const QString output = GetOutput("a.pdf"_q);
    ASSERT_EQ(
        Export(output, QByteArray(cForX) +
                           " /PDFXOutputConditionIdentifier (FOGRA39) /PDFXRegistryName (http://r.example) "
                           "/PDFXOutputCondition (Coated) /PDFXTrapped /True /ColorImageMinResolution 301 "
                           "/ColorImageMinResolutionPolicy /Warning "
                           "/OtherNamespaces [<</AddCropMarks true /MarksWeight 0.25 /IncludeSlug true>>]"),
        cSuccess);
    const QByteArray content = GetContent(output);
    for (const char* part :
         {"/OutputConditionIdentifier (FOGRA39)", "/RegistryName (http://r.example)",
          "/OutputCondition (Coated)", "/Trapped /True", "0.2500 w 0 j 0 J", "/Separation"})
        EXPECT_TRUE(content.contains(part)) << part;
    const QStringList notes = GetNotes();
    EXPECT_TRUE(notes.contains("\"rgb.png\" on page 1 has 300 dots per inch, fewer than 301."_q));
    EXPECT_TRUE(notes.contains("Not available in this host: the slug area."_q));
    EXPECT_TRUE(ReadFile(GetOutput("a.report.json"_q)).contains("\"IncludeSlug\""));
    // No ink but the inks of the press and the special one.
    const QString inks =
        RunJudge("gs"_q, {"-q"_q, "-o"_q, "-"_q, "-sDEVICE=ink_cov"_q, output}).join(QLatin1Char(' '));
    EXPECT_TRUE(inks.contains("CMYK OK"_q)) << inks.toStdString();
}
}  // namespace
