#include "tests/support/LeakOptions.h"
#include "tests/support/PrinterProcessor.h"
#include "tests/support/Test.h"

#include <QDirIterator>
#include <QJsonArray>
#include <QJsonDocument>
#include <QThread>

#include <csignal>

// The program as a person or a script has it: real Scribus, the real plug-in with its dialog, a real
// receiver.

namespace
{
const QString cTemplates = "/usr/share/scribus/templates/"_q;
const QString cNewsletter = cTemplates + "nl2/nl2.sla.gz"_q;  // 4 pages, every font there
const QString cCard = cTemplates + "buscard1/buscard1.sla.gz"_q;

// A running program of this build, or another.
class Program
{
public:
    Program(const QString& path, const QStringList& arguments,
            const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment())
    {
        mProcess.setProcessEnvironment(environment);
        mProcess.start(path, arguments);
        EXPECT_TRUE(mProcess.waitForStarted());
    }

    ~Program()
    {
        mProcess.kill();
        mProcess.waitForFinished();
    }

    // Waits for its end; -1 after a crash.
    int GetStatus()
    {
        EXPECT_TRUE(mProcess.waitForFinished(120000)) << mProcess.program().toStdString();
        return mProcess.exitStatus() == QProcess::NormalExit ? mProcess.exitCode() : -1;
    }

    QByteArray GetOutput() { return mProcess.readAllStandardOutput(); }
    QByteArray GetError() { return mProcess.readAllStandardError(); }

    void Stop() { ::kill(static_cast<pid_t>(mProcess.processId()), SIGTERM); }

private:
    QProcess mProcess;
};

// What pdfinfo says of a PDF under a name such as "MediaBox".
QString GetFact(const QString& pdf, const char* name)
{
    Program pdfinfo("pdfinfo"_q, {"-box"_q, pdf});
    EXPECT_EQ(pdfinfo.GetStatus(), 0) << pdf.toStdString();
    const QString rest = QString::fromUtf8(pdfinfo.GetOutput()).section(QLatin1String(name) + ":"_q, 1);
    return rest.section(QLatin1Char('\n'), 0, 0).simplified();
}

class LayoutHost : public testing::Test
{
protected:
    LayoutHost()
    {
        const QString options = mSandbox.GetPath("Press.joboptions"_q);
        EXPECT_TRUE(WriteFile(options, "<< /CompatibilityLevel 1.4 >> setdistillerparams\n"));
        QStringList create{"create"_q, "Press"_q,          "--job-options"_q,
                           options,    "--pdf-settings"_q, "Magazine, coated"_q};
        for (const QString& setting :
             "UserSettings=true|Trim=true|MarkOffset=6|BleedChoice=1|BleedTopValue=9|"
             "BleedBottomValue=10|BleedInsideValue=11|BleedOutsideValue=12"_list)
            create << "--setting"_q << setting;
        EXPECT_EQ(Program(GetProgramPath("hopboxctl"), create).GetStatus(), 0);
        qputenv("LSAN_OPTIONS", WriteLeakOptions(mSandbox.GetPath()));
    }

    // The arguments of an export to that Hopbox. The newsletter's images are not in its package.
    static QStringList MakeCall(const QString& document, const QStringList& more = {})
    {
        return QStringList{"--export"_q, document, "--hopbox"_q, "Press"_q, "--force"_q} + more;
    }

    // Runs an export; what it prints, with its exit status as "status".
    static QJsonObject Export(const QStringList& arguments)
    {
        Program program(GetProgramPath("layout-host"), arguments);
        return GetReport(program);
    }

    static QJsonObject GetReport(Program& program)
    {
        const int status = program.GetStatus();
        QJsonObject report = QJsonDocument::fromJson(program.GetOutput()).object();
        report.insert("status"_q, status);
        return report;
    }

    QStringList FindPDFs() const
    {
        QStringList found;
        QDirIterator files(mSandbox.GetPath(), {"*.pdf"_q}, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext())
            found.append(files.next());
        return found;
    }

    QString MakeBook(const QStringList& documents) const
    {
        const QString path = mSandbox.GetPath("Three.slabook"_q);
        EXPECT_TRUE(WriteFile(path, R"({"format": "layout-host book", "version": 1, "documents": [")" +
                                        documents.join("\", \""_q).toUtf8() + "\"]}"));
        return path;
    }

    Sandbox mSandbox;
};
}  // namespace

TEST_F(LayoutHost, SendsPagesAndAPackageToTheReceiver)
{
    PrinterProcessor receiver(mSandbox, {"--inbox"_q, mSandbox.GetPath("inbox"_q), "--count"_q, "2"_q});
    const QJsonObject report = Export(MakeCall(cNewsletter, "--pages|4,1-2|--package|--options|open"_list));
    EXPECT_EQ(report.value("result"_q), "success"_q) << report.value("alert"_q).toString().toStdString();
    EXPECT_EQ(report.value("status"_q), 0);

    const QJsonObject pdf = receiver.ReadLine();
    EXPECT_EQ(pdf.value("JobPath"_q), report.value("pdf"_q));
    const QString saved = pdf.value("saved"_q).toString();
    EXPECT_EQ(GetFact(saved, "Pages"), "3"_q);
    EXPECT_EQ(GetFact(saved, "MediaBox"), "0.00 0.00 670.28 912.89"_q);
    EXPECT_EQ(GetFact(saved, "TrimBox"), "38.00 36.00 633.28 877.89"_q);
    EXPECT_EQ(GetFact(saved, "BleedBox"), "26.00 26.00 644.28 886.89"_q) << "of a left page";
    const QDir package(receiver.ReadLine().value("saved"_q).toString());
    EXPECT_FALSE(report.value("package"_q).toString().isEmpty());
    EXPECT_FALSE(package.entryList({"*.sla"_q, "*.sla.gz"_q}, QDir::Files).isEmpty());
    EXPECT_EQ(receiver.WaitForExit(), 0);
}

TEST_F(LayoutHost, SendsABookOfThreeInItsOrder)
{
    PrinterProcessor receiver(mSandbox, {"--inbox"_q, mSandbox.GetPath("inbox"_q), "--count"_q, "1"_q});
    const QString book = MakeBook({cCard, cNewsletter, cCard});
    const QJsonObject report = Export({"--export-book"_q, book, "--hopbox"_q, "Press"_q, "--force"_q});
    EXPECT_EQ(report.value("result"_q), "success"_q) << report.value("alert"_q).toString().toStdString();
    EXPECT_EQ(GetFact(receiver.ReadLine().value("saved"_q).toString(), "Pages"), "6"_q);
}

TEST_F(LayoutHost, TwoAtOnceMixNothing)
{
    PrinterProcessor receiver(mSandbox, {"--inbox"_q, mSandbox.GetPath("inbox"_q), "--count"_q, "4"_q});
    Program first(GetProgramPath("layout-host"), MakeCall(cNewsletter, "--package"_list));
    Program second(GetProgramPath("layout-host"), MakeCall(cNewsletter, "--pages|2|--package"_list));
    const QJsonObject one = GetReport(first);
    const QJsonObject other = GetReport(second);
    EXPECT_EQ(GetFact(one.value("pdf"_q).toString(), "Pages"), "4"_q);
    EXPECT_EQ(GetFact(other.value("pdf"_q).toString(), "Pages"), "1"_q);
    EXPECT_NE(one.value("package"_q), other.value("package"_q));
    for (const QJsonObject& report : {one, other})
        EXPECT_EQ(QDir(report.value("package"_q).toString()).entryList(QDir::Files),
                  "nl2.sla.gz|Package Report.txt"_list);
    EXPECT_EQ(receiver.WaitForExit(), 0);
}

TEST_F(LayoutHost, TellsWhyItSentNothing)
{
    const QString emptyBook = mSandbox.GetPath("Empty.slabook"_q);
    const QString notes = mSandbox.GetPath("notes.sla"_q);
    EXPECT_TRUE(WriteFile(emptyBook, R"({"format": "layout-host book", "version": 1, "documents": []})") &&
                WriteFile(notes, "%PDF-1.4\n"));
    const QByteArray emptyError = "The book \"" + emptyBook.toUtf8() + "\" is empty.";
    const QByteArray notesError = "\"" + notes.toUtf8() + "\" is no Scribus document.";
    const struct
    {
        QStringList arguments;
        const char *result, *text;    // "alert" with the alert's text, or "failed" with the error
        const char* cause = nullptr;  // the error with an alert; null: the alert's text
    } cases[] = {
        {MakeCall(cNewsletter, "--pages|3-9"_list), "failed",
         "The dialog does not let OK be pressed. The document has no page \"9\"; it has 4 pages."},
        {MakeCall(cNewsletter, "--pages|3-2"_list), "failed",
         "The dialog does not let OK be pressed. The page range \"3-2\" runs backwards."},
        {MakeCall(cTemplates + "cover1/cover1.sla.gz"_q), "alert",
         "Plug-in Error: Font is Missing! Correct the following font and try again:\n"
         "    1. Nimbus Sans L Regular\n"},
        {MakeCall(cTemplates + "br1/br1.sla.gz"_q), "alert",
         "Plug-in Error: Fonts are Missing! Correct the following fonts and try again:\n"
         "    1. Bitstream Charter Bold Italic\n    2. Bitstream Charter Regular\n"},
        {{"--export-book"_q, MakeBook({cCard, cTemplates + "none.sla"_q}), "--hopbox"_q, "Press"_q},
         "alert",
         "Plug-in Error: Unable to open document.",
         "There is no file \"/usr/share/scribus/templates/none.sla\"."},
        {MakeCall(cNewsletter), "alert",
         "Unable to automatically launch Hopbox. Launch the Hopbox manually and try again."},
        {{"--export-book"_q, emptyBook, "--hopbox"_q, "Press"_q}, "failed", emptyError.constData()},
        {MakeCall(notes), "alert", notesError.constData(), notesError.constData()},
        {MakeCall(cNewsletter, "--hopbox|Other"_list), "failed",
         "The dialog lists no Hopbox \"Other\", but \"Magazine, coated\"."},
        {MakeCall(cNewsletter, "--pages|1,"_list), "failed", "The dialog does not let OK be pressed."},
    };
    for (const auto& entry : cases) {
        SCOPED_TRACE(entry.arguments.join(QLatin1Char(' ')).toStdString());
        const QJsonObject report = Export(entry.arguments);
        const bool isAlert = QByteArray(entry.result) == "alert";
        EXPECT_EQ(report.value("status"_q), 1);
        EXPECT_EQ(report.value("result"_q), QString::fromLatin1(entry.result));
        const bool isOfPlugIn = isAlert && entry.text != notesError;
        EXPECT_EQ(report.value("title"_q).toString(), isOfPlugIn ? "Export to Hopbox error"_q : QString());
        EXPECT_EQ(report.value(isAlert ? "alert"_q : "error"_q), QString::fromLatin1(entry.text));
        const char* const other = isAlert ? (entry.cause == nullptr ? entry.text : entry.cause) : "";
        EXPECT_EQ(report.value(isAlert ? "error"_q : "alert"_q).toString().toStdString(), other);
    }
    // What nobody took is still there to be sent again; nothing else was made.
    EXPECT_EQ(FindPDFs().size(), 1);
}

TEST_F(LayoutHost, ExportsWithoutAnImageOnlyWhenItIsForced)
{
    PrinterProcessor receiver(mSandbox, {"--inbox"_q, mSandbox.GetPath("inbox"_q), "--count"_q, "1"_q});
    const QString problem = "\"flowers.jpg\" on page 1 is missing."_q;
    const QJsonObject refused = Export({"--export"_q, cNewsletter, "--hopbox"_q, "Press"_q});
    EXPECT_EQ(refused.value("result"_q), "alert"_q);
    EXPECT_TRUE(refused.value("error"_q).toString().contains(problem));
    EXPECT_EQ(FindPDFs(), QStringList());
    const QJsonObject forced = Export(MakeCall(cNewsletter));
    EXPECT_EQ(forced.value("result"_q), "success"_q) << forced.value("error"_q).toString().toStdString();
    EXPECT_TRUE(forced.value("notes"_q).toArray().contains(problem));
    EXPECT_EQ(receiver.WaitForExit(), 0);
}

TEST_F(LayoutHost, RefusesACallThatIsNone)
{
    const std::pair<QStringList, const char*> cases[] = {
        {"--export|a.sla"_list, "--hopbox NAME is missing."},
        {"--hopbox|Press"_list, "\"--hopbox\" needs \"--export\" or \"--export-book\"."},
        {"--force"_list, "\"--force\" needs \"--export\" or \"--export-book\"."},
        {"--export|a.sla|--export-book|b.slabook|--hopbox|Press"_list, "One export at a time."},
        {"--export|a.sla|--hopbox|Press|b.sla"_list, "Unexpected \"b.sla\"."},
        {"--export-book|b.slabook|--hopbox|Press|--pages|1"_list, "without \"--pages\"."},
        {"--export|a.sla|--hopbox|Press|--options|shut"_list, "\"--options\" can only be \"open\"."},
        {"--export|a.sla|--hopbox|Press|--timeout|0"_list, "takes seconds, from 1 to 86400, not \"0\"."},
        {"--export|a.sla|--hopbox|Press|--pages"_list, "\"--pages\" needs a value: --pages RANGE."},
        {"--check-job-options="_list, "\"--check-job-options\" takes a file, not \"\"."},
        {"--check-job-options|a|--export|a.sla|--hopbox|Press"_list, "\"--check-job-options\" stands alone."},
        {"--check-job-options|a|a.sla"_list, "\"--check-job-options\" stands alone."},
        {"--export|a.sla|--hopbox|Press|--page"_list, "no option \"--page\". Did you mean \"--pages\"?"},
    };
    for (const auto& [call, message] : cases) {
        Program program(GetProgramPath("layout-host"), call);
        EXPECT_EQ(program.GetStatus(), 2) << message;
        EXPECT_EQ(program.GetOutput(), QByteArray());
        const QByteArray error = program.GetError();
        EXPECT_TRUE(error.startsWith("layout-host: ") && error.contains(message)) << error.toStdString();
    }
    for (const char* call : {"--help", "--version", "--manual", "--completion=fish"}) {
        Program program(GetProgramPath("layout-host"), {QLatin1String(call)});
        EXPECT_EQ(program.GetStatus(), 0) << call;
        EXPECT_TRUE(program.GetOutput().contains("layout")) << call;
    }
}

TEST_F(LayoutHost, TellsWhichJobOptionsItCanNotHonour)
{
    const QString file = mSandbox.GetPath("b.joboptions"_q);
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"<< /CompatibilityLevel 1.4 >> setdistillerparams", "\"settings\": [\n    ]", ""},
        {"<< /OPM 0 >> setdistillerparams", "\"key\": \"OPM\"", ""},
        {"<< /CompatibilityLevel (x) >> setdistillerparams", "", "\"CompatibilityLevel\" takes a number"},
        {"Dear printer,", "", "line 1, column 1"},
        {nullptr, "", "No such file or directory"},
    };
    for (const auto& [content, output, message] : cases) {
        EXPECT_TRUE(content == nullptr ? QFile::remove(file) : WriteFile(file, content));
        Program program(GetProgramPath("layout-host"), {"--check-job-options"_q, file});
        EXPECT_EQ(program.GetStatus(), *message == '\0' ? 0 : 1);
        EXPECT_TRUE(program.GetOutput().contains(output)) << output;
        const QByteArray error = program.GetError();
        EXPECT_TRUE(error.contains(message) && (*message == '\0') == error.isEmpty()) << error.toStdString();
        EXPECT_TRUE(error.isEmpty() ||
                    error.startsWith("layout-host: \"" + file.toUtf8() + "\" can't be used: "));
    }
}

// A Scribus that gets stuck in the export, once the document is open.
class StuckScribus : public LayoutHost
{
protected:
    StuckScribus()
    {
        const QString script = mSandbox.GetPath("scribus.sh"_q);
        mMarker = mSandbox.GetPath("started"_q);
        EXPECT_TRUE(
            WriteProgram(script, QStringLiteral("#!/bin/sh\n"
                                                "case \"$*\" in\n"
                                                "*'\"operation\":\"pdf\"'*) : > '%1'; exec sleep 600;;\n"
                                                "esac\n"
                                                "exec /usr/bin/scribus \"$@\"\n")
                                     .arg(mMarker)
                                     .toUtf8()));
        mEnvironment.insert("LAYOUT_HOST_SCRIBUS"_q, script);
    }

    QProcessEnvironment mEnvironment = QProcessEnvironment::systemEnvironment();
    QString mMarker;
};

TEST_F(StuckScribus, IsCancelledWithoutAnAlert)
{
    Program program(GetProgramPath("layout-host"), MakeCall(cNewsletter), mEnvironment);
    for (int wait = 0; wait < 600 && !QFileInfo::exists(mMarker); ++wait)
        QThread::msleep(100);
    program.Stop();
    const QJsonObject report = GetReport(program);
    EXPECT_EQ(report.value("status"_q), 1);
    EXPECT_EQ(report.value("result"_q), "cancelled"_q);
    EXPECT_TRUE(report.value("alert"_q).isNull()) << report.value("alert"_q).toString().toStdString();
    EXPECT_EQ(FindPDFs(), QStringList());
}

TEST_F(StuckScribus, EndsWhenTheTimeIsUp)
{
    Program program(GetProgramPath("layout-host"), MakeCall(cNewsletter, "--timeout|8"_list), mEnvironment);
    const QJsonObject report = GetReport(program);
    EXPECT_EQ(report.value("status"_q), 1);
    EXPECT_EQ(report.value("result"_q), "failed"_q);
    EXPECT_TRUE(report.value("error"_q).toString().contains("8 s"_q));
}
