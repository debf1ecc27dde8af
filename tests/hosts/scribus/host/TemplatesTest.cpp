#include "EngineFixture.h"
#include "hosts/scribus/sla/SlaFile.h"
#include "hosts/scribus/sla/SlaScanner.h"

#include <QDirIterator>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>

static constexpr int cShards = 8;  // so that they run side by side

static QStringList FindTemplates()
{
    QStringList templates;
    QDirIterator files("/usr/share/scribus"_q, "*.sla|*.sla.gz"_list, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext())
        templates.append(files.next());
    templates.sort();
    return templates;
}

// Every font that an attribute of the document names, whether a text uses it or not.
static QSet<QString> GetNamedFonts(const QString& path)
{
    QByteArray text;
    bool isPacked = false;
    const GResult read = SlaFile::Read(path, text, isPacked);
    EXPECT_TRUE(read.HasSucceeded()) << read.GetReason().toStdString();
    QSet<QString> fonts;
    SlaScanner element({text.constData(), static_cast<size_t>(text.size())});
    while (element.Next()) {
        for (const char* attribute : {"FONT", "IFONT", "DFONT", "CFONT"})
            fonts.insert(element.GetText(attribute));
    }
    fonts.remove(QString());
    return fonts;
}

class TemplatesTest : public EngineFixture, public ::testing::WithParamInterface<int>
{
protected:
    // The fonts that Scribus has without any document.
    QSet<QString> GetInstalledFonts()
    {
        const QString script = mSandbox.GetPath("fonts.py"_q);
        const QString list = mSandbox.GetPath("fonts"_q);
        WriteFile(script,
                  "import os, scribus, sys\n"
                  "open(sys.argv[1], 'w').write('\\n'.join(scribus.getFontNames()))\n"
                  "os._exit(0)\n");
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_QPA_PLATFORM"_q, "offscreen"_q);
        environment.insert("HOME"_q, mSandbox.GetPath());
        process.setProcessEnvironment(environment);
        process.start("scribus"_q, {"-g"_q, "-ns"_q, "-py"_q, script, list});
        process.waitForFinished(60000);
        const QStringList names = QString::fromUtf8(ReadFile(list)).split(QLatin1Char('\n'));
        return QSet<QString>(names.begin(), names.end());
    }

    // The names that the fonts of a document have in a PDF.
    static QSet<QString> GetPostScriptNames(const DocumentInfo& info)
    {
        QSet<QString> names;
        for (const DocumentFont& font : info.fonts)
            names.insert(QString::fromUtf8(
                RunProgram("fc-query"_q, {"-f"_q, "%{postscriptname}\\n"_q, font.file}).split('\n').first()));
        return names;
    }

    // The names of the fonts in a PDF, without the mark of a subset. By qpdf, as pdffonts takes minutes for
    // pages of some thousand nested forms.
    static QSet<QString> GetFonts(const QString& pdf)
    {
        const QByteArray content =
            RunProgram("qpdf"_q, {"--stream-data=preserve"_q, "--object-streams=disable"_q, pdf, "-"_q});
        const QRegularExpression font("/BaseFont /(?:[A-Z]{6}\\+)?([^\\s/>]+?)(?:-Identity-H)?[\\s/>]"_q);
        QSet<QString> names;
        for (auto found = font.globalMatch(QString::fromLatin1(content.data(), content.size()));
             found.hasNext();)
            names.insert(found.next().captured(1));
        return names;
    }

    // With `fonts`, they are those in the PDF, nothing that stands for another among them.
    void ExpectPages(const QString& source, const QString& range, int pageCount, const QSet<QString>& fonts)
    {
        const QString output = GetOutput("a.pdf"_q);
        EXPECT_EQ(Export(output, "/ColorImageResolution 100", range), cSuccess) << source.toStdString();
        EXPECT_EQ(PdfFacts::Read(output).pageCount, pageCount) << source.toStdString();
        EXPECT_EQ(QProcess::execute("qpdf"_q, {"--check"_q, output}), 0) << source.toStdString();
        const QSet<QString> inside = GetFonts(output);
        EXPECT_TRUE(range.size() > 0 || inside == fonts)
            << source.toStdString() << ": "
            << QStringList(inside.values()).join(QLatin1Char(' ')).toStdString();
        QFile::remove(output);
        QFile::remove(GetOutput("a.report.json"_q));
    }
};

// Each document of Scribus's own package is exported, or refused for just the fonts that are not there.
TEST_P(TemplatesTest, AreExportedOrNameTheirMissingFonts)
{
    mFrontend.decision = IHostFrontend::Decision::GoOn;  // one lacks two of its pictures
    const QSet<QString> installed = GetInstalledFonts();
    ASSERT_TRUE(installed.contains("DejaVu Sans Book"_q));
    const QStringList templates = FindTemplates();
    ASSERT_GE(templates.size(), 69);
    int exported = 0;
    int refused = 0;
    for (int i = GetParam(); i < templates.size(); i += cShards) {
        Open(templates[i]);
        const auto document = mHost->GetActiveDocument();
        const QStringList missing = document->GetInfo()->GetMissingFonts();
        EXPECT_TRUE((GetNamedFonts(templates[i]) - installed).contains({missing.begin(), missing.end()}))
            << templates[i].toStdString();
        const int pageCount = document->GetInfo()->pages.size();
        if (missing.isEmpty()) {
            ExpectPages(templates[i], QString(), pageCount, GetPostScriptNames(*document->GetInfo()));
            if (pageCount > 1)
                ExpectPages(templates[i], "%1,1-2"_q.arg(pageCount), 3, {});
        } else {
            EXPECT_EQ(Export(GetOutput("a.pdf"_q)), cFailure);
        }
        ++(missing.isEmpty() ? exported : refused);
        mHost->CloseDocument(document);
    }
    EXPECT_GT(exported, 0);
    EXPECT_EQ(ListOutput(), QStringList());
    std::printf("%d documents exported, %d refused\n", exported, refused);
}

INSTANTIATE_TEST_SUITE_P(Eighths, TemplatesTest, ::testing::Range(0, cShards));
