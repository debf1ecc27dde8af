#include "ReferencePageFixture.h"
#include "hosts/scribus/pdf/JobOptionRows.h"
#include "joboptions/JobOptions.h"

#include <QJsonArray>
#include <QRegularExpression>
#include <QSet>

// Every row of the table of settings goes through Scribus with the values at its bounds. A start of Scribus
// is dear, so settings that don't touch each other share an export.

static QList<QRegularExpressionMatch> FindAll(const char* pattern, const QByteArray& text)
{
    QList<QRegularExpressionMatch> found;
    auto matches = QRegularExpression(QLatin1String(pattern), QRegularExpression::DotMatchesEverythingOption)
                       .globalMatch(QString::fromLatin1(text.constData(), text.size()));
    while (matches.hasNext())
        found.append(matches.next());
    return found;
}

// The finest number of each JPEG's first table, and how many dots its first part has to one of colour:
// "1/11".
static QString GetJpegs(const QByteArray& file)
{
    QStringList jpegs;
    for (const auto& jpeg : FindAll("\xFF\xDB.{3}(.).*?\xFF\xC0.{9}(.)", file))
        jpegs += "%1/%2"_q.arg(jpeg.captured(1).at(0).unicode()).arg(jpeg.captured(2).at(0).unicode(), 0, 16);
    jpegs.removeDuplicates();
    return jpegs.join(QLatin1Char(' '));
}

// How often images are coded in each way, by their bits: "1 none, 8 DCTDecode".
static QString GetCodings(const QByteArray& file)
{
    QStringList codings;
    for (const auto& image : FindAll("<< /BitsPerComponent (\\d)[^\\n]*?/Subtype /Image[^\\n]*", file)) {
        const QString filter = QRegularExpression("/Filter /(\\w+)"_q).match(image.captured(0)).captured(1);
        codings += image.captured(1) + QLatin1Char(' ') + (filter.isEmpty() ? "none"_q : filter);
    }
    codings.sort();
    codings.removeDuplicates();
    return codings.join(", "_q);
}

// Where to look, and what is expected there.
using Look = std::pair<const char*, const char*>;

class SettingsTableTest : public ReferencePageFixture
{
protected:
    // A page with images of each class, a shape, a text with a bookmark, and two layers.
    void OpenPage(const QStringList& files)
    {
        const QString path = MakeDocument(
            "a.sla"_q, 1,
            MakeShape("Leaf"_q) + MakeFrames(files) +
                MakeText("DejaVu Sans Bold"_q).replace("PTYPE=\"4\""_q, "PTYPE=\"4\" BOOKMARK=\"1\""_q));
        const QByteArray layer = ReadFile(path).replace(
            "<MASTERPAGE",
            "<LAYERS NUMMER=\"1\" LEVEL=\"1\" NAME=\"More\" SICHTBAR=\"1\" DRUCKEN=\"1\"/><MASTERPAGE");
        WriteFile(path,
                  QByteArray(layer).replace("</DOCUMENT>",
                                            "<Bookmark Title=\"Mark\" Text=\"Mark\" Aktion=\"\" ItemNr=\"0\" "
                                            "Element=\"70\" First=\"0\" Last=\"0\" Prev=\"0\" Next=\"0\" "
                                            "Parent=\"0\"/></DOCUMENT>"));
        Open(path);
    }

    QString LookAt(const QString& pdf, const QString& at, const QString& expected)
    {
        const QByteArray file = ReadFile(pdf);
        const PdfFacts facts = PdfFacts::Read(pdf);
        if (at == "images"_q)
            return GetImages(pdf).join(", "_q);
        if (at == "jpegs"_q)
            return GetJpegs(file);
        if (at == "codings"_q)
            return GetCodings(file);
        if (at == "version"_q)
            return facts.version;
        if (at == "box"_q)
            return "%1 %2"_q.arg(facts.boxes["MediaBox"_q].width()).arg(facts.boxes["MediaBox"_q].height());
        if (at == "font"_q)  // inside, and only the characters in use
            return RunJudge("pdffonts"_q, {pdf}).value(2).simplified().section(QLatin1Char(' '), -5, -4);
        if (at == "optimized"_q)
            return RunJudge("pdfinfo"_q, {pdf}).filter("Optimized"_q).value(0).section(QLatin1Char(' '), -1);
        const bool isRaw = at == "file"_q;
        const bool isNot = expected.startsWith(QLatin1Char('!'));
        const bool isThere =
            (isRaw ? file : GetContent(pdf)).contains(expected.mid(isNot ? 1 : 0).toLatin1());
        return isThere != isNot ? expected : (isThere ? "there"_q : "not there"_q);
    }
};

static const std::pair<QByteArray, std::vector<Look>> cExports[] = {
    // The lowest of each.
    {"/CompatibilityLevel 1 /CompressPages false /Optimize true /ColorConversionStrategy /sRGB "
     "/ColorImageResolution 9 /GrayImageResolution 9 /MonoImageResolution 9 "
     "/ColorImageDownsampleThreshold 1 /GrayImageDownsampleThreshold 1 /MonoImageDownsampleThreshold 1 "
     "/ColorImageDownsampleType /Subsample /GrayImageDownsampleType /Subsample "
     "/MonoImageDownsampleType /Subsample /ColorImageMinResolution 0 /GrayImageMinResolution 0 "
     "/MonoImageMinResolution 0 /ColorImageMinResolutionPolicy /Error /GrayImageMinResolutionPolicy /Error "
     "/MonoImageMinResolutionPolicy /Error /ColorImageFilter /FlateEncode /GrayImageFilter /FlateEncode "
     "/MonoImageFilter /FlateEncode /SubsetFonts true /Binding /Left /OtherNamespaces [<< /AddCropMarks true "
     "/MarksOffset 0 /MarksWeight 0 /UseDocumentBleed false /BleedOffset [0 0 0 0] >>]",
     {{"version", "1.3"},
      {"optimized", "yes"},
      {"images", "rgb 3 8 image 9, gray 1 8 image 9, gray 1 1 image 9, rgb 3 8 image 9"},
      {"codings", "1 FlateDecode, 8 FlateDecode"},
      {"file", "0.03922 0.78431 0.23529 rg"},
      {"file", "0.0000 w 0 j 0 J"},
      {"font", "yes yes"},
      {"content", "!/R2L"},
      {"content", "!/Outlines"},
      {"content", "!/Thumb"},
      {"box", "440 340"}}},
    // The highest.
    {"/CompatibilityLevel 2 /CompressObjects /All /ColorConversionStrategy /UseDeviceIndependentColor "
     "/ColorImageResolution 2400 /GrayImageResolution 2400 /MonoImageResolution 2400 "
     "/ColorImageDownsampleThreshold 10 /GrayImageDownsampleThreshold 10 /MonoImageDownsampleThreshold 10 "
     "/ColorImageMinResolution 10000 /ColorImageMinResolutionPolicy /Warning /GrayImageMinResolution 10000 "
     "/GrayImageMinResolutionPolicy /Warning /MonoImageMinResolution 10000 /MonoImageMinResolutionPolicy "
     "/Warning /EncodeColorImages false /EncodeGrayImages false /EncodeMonoImages false /SubsetFonts false "
     "/Binding /Right /DoThumbnails true /OtherNamespaces [<< /IncludeBookmarks true /IncludeLayers true "
     "/AddCropMarks true /MarksOffset 14400 /MarksWeight 14400 /UseDocumentBleed false "
     "/BleedOffset [14400 0 14400 0] >>]",
     {{"version", "1.7"},
      {"file", "/ObjStm"},
      {"images", "icc 3 8 image 300, gray 1 8 image 300, gray 1 1 image 1200, icc 4 8 image 300"},
      {"codings", "1 none, 8 none"},
      {"content", "14400.0000 w 0 j 0 J"},
      {"font", "yes no"},
      {"content", "/R2L"},
      {"content", "/Outlines"},
      {"content", "/Thumb"},
      {"content", "/OCProperties"},
      {"note", "\"noise.png\" on page 1 has 300 dots per inch, fewer than 10000."},
      {"note", "\"graynoise.png\" on page 1 has 300 dots per inch, fewer than 10000."},
      {"note", "\"mono.png\" on page 1 has 1200 dots per inch, fewer than 10000."},
      {"box", "29640 29440"}}},  // Scribus makes no bleed larger than the page
    // Resolutions that are switched off; the finest JPEG.
    {"/CompatibilityLevel 1.5 /CompressObjects /Off /ColorImageResolution 72 /DownsampleColorImages false "
     "/GrayImageResolution 72 /DownsampleGrayImages false /MonoImageResolution 72 /DownsampleMonoImages "
     "false "
     "/ColorImageFilter /DCTEncode /GrayImageFilter /DCTEncode /AutoFilterColorImages false "
     "/AutoFilterGrayImages false /ColorImageDict << /QFactor 0 /HSamples [1 1 1 1] >> "
     "/GrayImageDict << /QFactor 0 >> /EmbedAllFonts false /OtherNamespaces [<< /ConvertColors "
     "/ConvertToCMYK /AddRegMarks true /MarksWeight 0.25 /IncludeLayers false /IncludeSlug true >>]",
     {{"version", "1.5"},
      {"file", "!/ObjStm"},
      {"images", "cmyk 4 8 jpeg 300, gray 1 8 jpeg 300, gray 1 1 image 1200, cmyk 4 8 jpeg 300"},
      {"jpegs", "1/11"},
      {"font", "no no"},
      {"content", " k\n"},
      {"content", "0.2500 w 0 j 0 J"},
      {"content", "!/OCProperties"},
      {"note", "Not available in this host: the slug area."}}},
    // The coarsest JPEG, chosen for each image; the other dictionary is not looked at.
    {"/AutoFilterColorImages true /AutoFilterGrayImages true /ColorACSImageDict << /QFactor 100 /HSamples "
     "[2 1 1 2] >> /GrayACSImageDict << /QFactor 100 >> /ColorImageDict << /QFactor 0 >> /GrayImageDict "
     "<< /QFactor 0 >> /ColorImageDownsampleType /None /ColorImageResolution 99 /OtherNamespaces [<< "
     "/ConvertColors /ConvertToRGB /AddPageInfo true /AsReaderSpreads true /UseDocumentBleed true >>]",
     {{"images", "rgb 3 8 jpeg 300, gray 1 8 jpeg 300, gray 1 1 image 1200, rgb 3 8 image 300"},
      {"jpegs", "255/22 255/11"},
      {"note", "Not available in this host: spreads as pages."},
      {"box", "453 353"}}},
    {"/ColorConversionStrategy /UseDeviceIndependentColor /ColorImageFilter /FlateEncode /GrayImageFilter "
     "/FlateEncode /OtherNamespaces [<< /IncludeProfiles false /AddBleedMarks true /AddColorBars true >>]",
     {{"images", "rgb 3 8 image 300, gray 1 8 image 300, gray 1 1 image 1200, cmyk 4 8 image 300"},
      {"content", "!/ICCBased"},
      {"content", "0 1 0 0 k"},
      {"box", "453 353"}}},
};
static const QByteArray cProfile = "/PDFXOutputIntentProfile (ISO Coated v2 300% \\(basICColor\\)) ";
static const struct
{
    QByteArray settings;
    std::vector<Look> looks;
} cKinds[] = {
    {"/PDFX1aCheck true /PDFXTrapped /True /PDFXOutputCondition (Coated)",
     {{"content", "/GTS_PDFXVersion (PDF/X-1:2001)"},
      {"content", "/GTS_PDFXConformance (PDF/X-1a:2001)"},
      {"content", "/Trapped /True"},
      {"content", "/OutputCondition (Coated)"},
      {"content", "!DeviceRGB"}}},
    {"/PDFX3Check true /PDFXTrapped /False /PDFXRegistryName (http://r.example) "
     "/PDFXOutputConditionIdentifier "
     "(FOGRA39) /ColorImageFilter /FlateEncode >> setdistillerparams << /HWResolution [35 35] >> "
     "setpagedevice "
     "<<",
     {{"content", "/GTS_PDFXVersion (PDF/X-3:2002)"},
      {"content", "/Trapped /False"},
      {"content", "/RegistryName (http://r.example)"},
      {"content", "/OutputConditionIdentifier (FOGRA39)"},
      {"images", "icc 3 8 image 49, mask - 1 1 image 49"},  // 100 points of the file in 72 of the page
      {"note", "It was turned into an image."}}},
    {"/CheckCompliance [/PDFX4:2010]", {{"content", "/GTS_PDFXVersion (PDF/X-4)"}, {"version", "1.6"}}},
};

TEST_F(SettingsTableTest, EveryRowIsSeenInThePdf)
{
    QSet<QString> unseen;
    for (const JobOptionRow& row : JobOptionRow::GetAll()) {
        if (row.take)
            unseen.insert(QLatin1String(row.key));
    }
    const auto expect = [&](const QByteArray& settings, const std::vector<Look>& looks) {
        const QString pdf = GetOutput("a.pdf"_q);
        ASSERT_EQ(Export(pdf, settings), cSuccess) << settings.constData();
        EXPECT_EQ(RunJudge("qpdf"_q, {"--check"_q, pdf}).filter("No syntax or stream"_q).size(), 1);
        const QStringList notes = GetNotes();
        for (const auto& [at, expected] : looks) {
            const QString text = QLatin1String(expected);
            if (QByteArray(at) == "note")
                EXPECT_EQ(notes.filter(text).size(), 1) << expected;
            else
                EXPECT_EQ(LookAt(pdf, QLatin1String(at), text).toStdString(), expected)
                    << at << " of " << settings.constData();
        }
        for (const auto& name : FindAll("/(\\w+)", settings))
            unseen.remove(name.captured(1));
    };
    OpenPage("noise.png|graynoise.png|mono.png|cmyk.tif"_list);
    for (const auto& [options, wanted] : cExports)
        expect(options, wanted);
    // What no PDF/X allows is turned into an image, of the resolution of drawings.
    OpenPage("text.pdf"_list);
    for (const auto& item : cKinds)
        expect(cProfile + item.settings, item.looks);
    EXPECT_EQ(Export(GetOutput("b.pdf"_q), "/CannotEmbedFontPolicy /Error"), cFailure);
    EXPECT_EQ(mHost->GetLastFailure(),
              "Fonts are not inside the PDF: Helvetica of \"text.pdf\" on page 1."_q);
    unseen.remove("CannotEmbedFontPolicy"_q);
    EXPECT_TRUE(unseen.isEmpty()) << QStringList(unseen.values()).join(QLatin1Char(' ')).toStdString();
}

// Whatever they say, the other settings change nothing, and the report tells those that mean something.
TEST_F(SettingsTableTest, WhatIsNotHonouredChangesNothingAndIsTold)
{
    QByteArray parameters;
    QByteArray device;
    QByteArray layout;
    QStringList told;
    for (const JobOptionRow& row : JobOptionRow::GetAll()) {
        if (row.take || QByteArray(row.key) == "OtherNamespaces")
            continue;
        using Section = JobOptionRow::Section;
        QByteArray& section = row.section == Section::Parameters
                                  ? parameters
                                  : (row.section == Section::Device ? device : layout);
        section += " /" + QByteArray(row.key) + " (x)";
        const bool isTold = row.answer == JobOptionRow::Answer::Approximated ||
                            row.answer == JobOptionRow::Answer::NotPossible;
        if (isTold)
            told.append(QLatin1String(row.key));
    }
    const auto clean = [](const QByteArray& content) {
        QString text = QString::fromLatin1(content);
        for (const char* volatilePart : {"/(Creation|Mod)Date[^\\n]*", "/ID \\[[^\\n]*",
                                         "<\\?xpacket.*?<\\?xpacket", "[A-Z]{6}\\+", "xref\\n.*"})
            text.remove(QRegularExpression(QLatin1String(volatilePart),
                                           QRegularExpression::DotMatchesEverythingOption));
        return text.toStdString();
    };
    OpenPage("noise.png|mono.png"_list);
    ASSERT_EQ(Export(GetOutput("a.pdf"_q)), cSuccess);
    EXPECT_EQ(mHost->GetLastReport()["settings"_q].toArray(), QJsonArray());
    ASSERT_EQ(
        Export(GetOutput("b.pdf"_q), parameters + "/OtherNamespaces [<<" + layout +
                                         ">>] >> setdistillerparams <<" + device + ">> setpagedevice <<"),
        cSuccess);
    EXPECT_TRUE(clean(GetContent(GetOutput("a.pdf"_q))) == clean(GetContent(GetOutput("b.pdf"_q))));
    QStringList answered;
    for (const QJsonValue& answer : mHost->GetLastReport()["settings"_q].toArray())
        answered.append(answer["key"_q].toString());
    told.sort();
    answered.sort();
    EXPECT_EQ(answered, told);
}
