#include "EngineFixture.h"

#include <QProcess>

namespace
{
// The dots per inch and the coding of the images of a PDF, as "72 jpeg".
QStringList GetImages(const QString& path)
{
    QStringList images;
    for (const QString& line :
         QString::fromUtf8(RunProgram("pdfimages"_q, {"-list"_q, path})).split(QLatin1Char('\n'))) {
        const QStringList columns = line.simplified().split(QLatin1Char(' '));
        if (columns.value(2) == "image"_q)
            images.append(columns.value(12) + QLatin1Char(' ') + columns.value(8));
    }
    return images;
}

using ExportTest = EngineFixture;

TEST_F(ExportTest, PagesComeInTheOrderOfTheRange)
{
    Open(MakeDocument("a & 'b' \"c\" $(d) \u00e9.sla"_q, 3));
    const QString all = GetOutput("all.pdf"_q);
    const QString some = GetOutput("some #%20.pdf"_q);
    ASSERT_EQ(Export(all), cSuccess);
    ASSERT_EQ(Export(some, "/CompatibilityLevel 1.3", "3,1-2,3"_q), cSuccess);
    EXPECT_EQ(PdfFacts::Read(all).pageCount, 3);
    EXPECT_EQ(PdfFacts::Read(some).pageCount, 4);
    EXPECT_EQ(PdfFacts::Read(some).version, "1.3"_q);
    EXPECT_EQ(Export(all, "", "3-4"_q), cFailure);
    EXPECT_EQ(ListOutput(), "all.pdf|all.report.json|some #%20.pdf|some #%20.report.json"_list);
    EXPECT_EQ(mFrontend.events, "begin Export PDF|end|begin Export PDF|end"_list);
}

TEST_F(ExportTest, BoxesShowTheBleedAndTheRoomForMarks)
{
    struct Case
    {
        bool hasDocumentBleed, hasCropMarks, hasBleedMarks;
        double markOffset;
        double bleed[4];    // top, bottom, inside, outside
        double margins[4];  // of the trim box in the media box: left, bottom, right, top
        double bleedOf[4];  // the bleed box around the trim box, in that order
    };
    const Case cases[] = {
        {false, false, false, 0, {0, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, 0, 0}},
        {false, false, false, 0, {9, 10, 11.5, 12.25}, {11.5, 10, 12.25, 9}, {11.5, 10, 12.25, 9}},
        {true, false, false, 0, {99, 99, 99, 99}, {6, 8, 7, 5}, {6, 8, 7, 5}},
        {false, true, false, 7.5, {9, 9, 9, 9}, {36.5, 36.5, 36.5, 36.5}, {9, 9, 9, 9}},
        {true, false, true, 3, {0, 0, 0, 0}, {29, 31, 30, 28}, {6, 8, 7, 5}},
    };
    Open(MakeDocument("a.sla"_q, 1));
    for (const Case& item : cases) {
        const QString output = GetOutput("boxes.pdf"_q);
        ASSERT_EQ(Export(output, "/OtherNamespaces [<</AddCropMarks true /MarksOffset 99>>]", {},
                         [&](IPDFExportPreferences& preferences) {
                             preferences.SetSwitch(PDFSwitch::UseDocumentBleed, item.hasDocumentBleed);
                             preferences.SetSwitch(PDFSwitch::CropMarks, item.hasCropMarks);
                             preferences.SetSwitch(PDFSwitch::BleedMarks, item.hasBleedMarks);
                             preferences.SetLength(PDFLength::MarkOffset, item.markOffset);
                             preferences.SetLength(PDFLength::BleedTop, item.bleed[0]);
                             preferences.SetLength(PDFLength::BleedBottom, item.bleed[1]);
                             preferences.SetLength(PDFLength::BleedInside, item.bleed[2]);
                             preferences.SetLength(PDFLength::BleedOutside, item.bleed[3]);
                         }),
                  cSuccess);
        const PdfFacts facts = PdfFacts::Read(output);
        const QRectF trim = facts.boxes["TrimBox"_q];
        const auto expectAround = [&](const char* box, const double(&margins)[4]) {
            const QRectF outer = facts.boxes[QLatin1String(box)];
            EXPECT_NEAR(trim.left() - outer.left(), margins[0], 0.1) << box;
            EXPECT_NEAR(trim.top() - outer.top(), margins[1], 0.1) << box;
            EXPECT_NEAR(outer.right() - trim.right(), margins[2], 0.1) << box;
            EXPECT_NEAR(outer.bottom() - trim.bottom(), margins[3], 0.1) << box;
        };
        EXPECT_NEAR(trim.width(), 400, 0.1);
        EXPECT_NEAR(trim.height(), 300, 0.1);
        expectAround("MediaBox", item.margins);
        expectAround("BleedBox", item.bleedOf);
    }
}

TEST_F(ExportTest, TwoJobOptionsMakeTwoDifferentFiles)
{
    MakeImage("image.png"_q, 600, 600);
    Open(MakeDocument("a.sla"_q, 1, MakeImageFrame("image.png"_q)));
    const QString proof = GetOutput("proof.pdf"_q);
    const QString fine = GetOutput("fine.pdf"_q);
    ASSERT_EQ(Export(proof, "/CompatibilityLevel 1.4 /ColorImageResolution 72 /ColorImageFilter /DCTEncode"),
              cSuccess);
    ASSERT_EQ(
        Export(fine, "/CompatibilityLevel 1.5 /ColorImageResolution 300 /ColorImageFilter /FlateEncode"),
        cSuccess);
    EXPECT_EQ(PdfFacts::Read(proof).version, "1.4"_q);
    EXPECT_EQ(PdfFacts::Read(fine).version, "1.5"_q);
    EXPECT_EQ(GetImages(proof), "72 jpeg"_list);
    EXPECT_EQ(GetImages(fine), "300 image"_list);
}

TEST_F(ExportTest, PdfXIsMadeOnlyWhereTheDocumentCanBeOne)
{
    // reason: a part of it; null for success
    const std::tuple<QByteArray, const char*, const char*> cases[] = {
        {"/PDFX3:2003", "ISO Coated v2 300% (basICColor)", nullptr},
        {"/PDFX1a:2001", "ISO Coated v2 300% (basICColor)", nullptr},
        {"/PDFX4:2010", "ISO Coated v2 300% (basICColor)", nullptr},
        {"/PDFX3:2003", "No such profile", "\"No such profile\" is none that is installed"},
        {"/PDFX3:2003", "sRGB display profile (ICC v2.2)", "is none that is installed"},
        {"/PDFX3:2003", "None", "\"The document's own\" is none that is installed"},
    };
    MakeImage("image.png"_q, 100, 100);
    Open(MakeDocument(
        "a.sla"_q, 1,
        "<PDF Version='14' PrintP=\"The document's own\" InfoString=''/>"_q + MakeImageFrame("image.png"_q)));
    for (const auto& [kind, profile, reason] : cases) {
        const QByteArray settings =
            "/CheckCompliance [" + kind + "] /PDFXOutputIntentProfile <" + QByteArray(profile).toHex() + ">";
        const QString output = GetOutput("x.pdf"_q);
        const bool isMade = Export(output, settings) == cSuccess;
        EXPECT_EQ(isMade, reason == nullptr);
        EXPECT_EQ(QFile::exists(output), isMade);
        EXPECT_EQ(ReadFile(output).contains("/GTS_PDFX"), isMade);
        EXPECT_TRUE(mHost->GetLastFailure().contains(QLatin1String(isMade ? "" : reason)));
        EXPECT_EQ(mLog->TakeErrors().isEmpty(), isMade);
        QFile::remove(output);
    }
    EXPECT_EQ(ListOutput(), "x.report.json"_list);
}
}  // namespace
