#include "ExportRun.h"
#include "tests/support/LeakOptions.h"
#include "tests/support/PrinterProcessor.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

namespace
{
const QString cKit = QStringLiteral(KIT);
const QString cSuffix = QStringLiteral(EXECUTABLE_SUFFIX);

// A program of the kit in a sandbox.
struct ProgramRun
{
    ProgramRun(const QString& program, const QStringList& arguments, const char* lie = "")
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_QPA_PLATFORM"_q, "offscreen"_q);
        // A program that is linked with the module finds it there on Windows.
        environment.insert("PATH"_q,
                           QDir::toNativeSeparators(QDir(cKit + "/moved/lib/hopbox"_q).absolutePath()) +
                               QDir::listSeparator() + environment.value("PATH"_q));
        environment.insert("FAKE_ADAPTOR_LIE"_q, QLatin1String(lie));
        environment.remove("HOPBOX_PLUGIN"_q);
        const QTemporaryDir folder;
        environment.insert("LSAN_OPTIONS"_q, QString::fromUtf8(WriteLeakOptions(folder.path())));
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(program + cSuffix, arguments);
        EXPECT_TRUE(process.waitForFinished(240000)) << program.toStdString();
        status = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
        output = QString::fromUtf8(process.readAll());
    }

    int status = -1;
    QString output;
};

QString MakeText(int lines)
{
    QString text;
    for (int line = 1; line <= lines; ++line)
        text += QStringLiteral("Line %1 (gr\u00F6\u00DFer)\n").arg(line);
    return text;
}

class TinyHosts : public testing::Test
{
protected:
    // Each host, by each compiler: the one that loads the module and the one that is linked with it.
    static QStringList GetPrograms()
    {
        QStringList programs;
        for (const QString& compiler : QStringLiteral(KIT_COMPILERS).split(QLatin1Char(',')))
            for (const char* name : {"tiny-host", "tiny-host-linked"})
                programs.append(cKit + QLatin1Char('/') + compiler + QLatin1Char('/') + QLatin1String(name));
        return programs;
    }

    Sandbox sandbox;
};
}  // namespace

TEST_F(TinyHosts, ExportPagesAndPackageToAHopbox)
{
    MakeHopbox("Press"_q,
               {"BleedChoice=1"_q, "BleedTopValue=9"_q, "BleedInsideValue=5"_q, "BleedOutsideValue=7"_q});
    const QString document = sandbox.GetPath("Gr\u00F6\u00DFe.txt"_q);
    ASSERT_TRUE(WriteFile(document, MakeText(120).toUtf8()));
    for (const QString& program : GetPrograms()) {
        SCOPED_TRACE(program.toStdString());
        PrinterProcessor receiver(sandbox, {"--inbox"_q, sandbox.GetPath("Inbox"_q)});
        const ProgramRun run(program, {document, "Press"_q, "3,1"_q, "package"_q});
        ASSERT_EQ(run.status, 0) << run.output.toStdString();
        const QByteArray pdf = ReadFile(receiver.ReadLine().value("saved"_q).toString());
        EXPECT_TRUE(pdf.startsWith("%PDF-1.4"));
        EXPECT_EQ(pdf.count("/Type /Page "), 2);
        EXPECT_LT(pdf.indexOf("\\114\\151\\156\\145\\040\\061\\061\\063"),
                  pdf.indexOf("\\114\\151\\156\\145\\040\\061\\040"));
        EXPECT_TRUE(pdf.contains("/MediaBox [0 0 607 851] /BleedBox [0 0 607 851] /TrimBox [5 0 600 842]"))
            << pdf.left(600).toStdString();
        const QMap<QString, QByteArray> package = ReadTree(receiver.ReadLine().value("saved"_q).toString());
        EXPECT_EQ(package.value("Gr\u00F6\u00DFe.txt"_q), ReadFile(document));
        EXPECT_FALSE(package.value("Report.txt"_q).isEmpty());
    }
}

TEST_F(TinyHosts, SayWhatIsWrong)
{
    MakeHopbox("Press"_q);
    const QString document = sandbox.GetPath("A.txt"_q);
    ASSERT_TRUE(WriteFile(document, "A"));
    const struct
    {
        QStringList arguments;
        int status;
        QString output;
    } cases[] = {{{}, 2, "usage"_q},
                 {{sandbox.GetPath("none"_q), "Press"_q}, 1, "can't be read"_q},
                 {{document, "Proof"_q}, 1, "Unable to retrieve PDF setting: Proof"_q},
                 {{document, "Press"_q, "2"_q}, 1, "The pages to export are not in the document."_q},
                 {{document, "Press"_q}, 1, cNobodyTakesIt}};
    for (const auto& entry : cases) {
        const ProgramRun run(GetPrograms().front(), entry.arguments);
        EXPECT_EQ(run.status, entry.status);
        EXPECT_TRUE(run.output.contains(entry.output)) << run.output.toStdString();
    }
}

static const QString cCheck = cKit + "/moved/bin/hopbox-host-check"_q;

TEST(HostCheck, FindsNoFaultInOurAdaptors)
{
    QStringList libraries = QStringLiteral(OUR_ADAPTORS).split(QLatin1Char(','));
    const int withBooks = libraries.size();
    for (const QString& compiler : QStringLiteral(KIT_COMPILERS).split(QLatin1Char(',')))
        libraries.append(cKit + QLatin1Char('/') + compiler + "/tiny-adaptor"_q +
                         QStringLiteral(LIBRARY_SUFFIX));
    for (const QString& library : libraries) {
        const ProgramRun run(cCheck, {library});
        EXPECT_EQ(run.status, 0) << library.toStdString() << run.output.toStdString();
        const bool hasBooks = libraries.indexOf(library) < withBooks;
        EXPECT_EQ(run.output.contains("lacks  get_active_book"_q), !hasBooks) << run.output.toStdString();
        EXPECT_TRUE(run.output.contains("write_report"_q)) << run.output.toStdString();
    }
}

// Each wrong operation is named.
TEST(HostCheck, FindsTheFaultOfAnAdaptor)
{
    const struct
    {
        const char* lie;
        QString fault;
    } cases[] = {{"version", "table"_q},
                 {"needed", "set_pages"_q},
                 {"no file", "get_document_file"_q},
                 {"no UTF-8", "get_document_name"_q},
                 {"any page", "get_page"_q},
                 {"any range", "get_pages_of_range"_q},
                 {"a range that is cut", "get_pages_of_range"_q},
                 {"any file that opens", "open_document"_q},
                 {"a rest of a cancelled export", "run_command"_q},
                 {"any command", "create_command"_q},
                 {"any job options", "read_job_options"_q},
                 {"any setting", "set_switch"_q},
                 {"pages of one handle", "get_page"_q},
                 {"a document of no handle", "get_page_count"_q},
                 {"a command of no handle", "run_command"_q},
                 {"a file that is not there yet", "get_document_file"_q},
                 {"documents that don't close", "close_all"_q},
                 {"a rest without an end", "end_modal"_q},
                 {"no rest", "begin_modal"_q},
                 {"no setting", "set_switch"_q},
                 {"no length", "set_length"_q},
                 {"no package setting", "set_package_setting"_q},
                 {"no PDF", "run_command"_q},
                 {"no report", "write_report"_q},
                 {"no token", "begin_modal"_q},
                 {"no unit", "get_unit"_q},
                 {"books without documents", "get_book_document_file"_q},
                 {"no export", "run_command"_q},
                 {"documents left open", "get_front_document"_q},
                 {"a text of another thread", "get_document_name"_q},
                 {"pages of another thread", "get_pages_of_range"_q},
                 {"handles that are kept", "release"_q},
                 {"handles that are not counted", "release"_q},
                 {"a handle of nothing", "find_open_document"_q},
                 {"no handle", "open_document"_q},
                 {"documents that stay open", "close_document"_q},
                 {"no Cancel", "run_command"_q},
                 {"a rest of what was cancelled", "run_command"_q},
                 {"any folder", "run_command"_q},
                 {"any report", "write_report"_q},
                 {"any save", "save_document"_q},
                 {"always saved", "is_document_saved"_q},
                 {"a book that stays modified", "is_book_modified"_q},
                 {"any length", "set_length"_q},
                 {"any package setting", "set_package_setting"_q},
                 {"no PDF of a book", "run_command"_q},
                 {"no package of a book", "run_command"_q},
                 {"no preferences of a book", "run_command"_q},
                 {"no Cancel of a book", "run_command"_q},
                 {"a rest beside what was made", "run_command"_q},
                 {"a document that is written to", "run_command"_q},
                 {"no document for a package", "set_document"_q},
                 {"no book for a command", "set_book"_q},
                 {"no output", "set_output"_q},
                 {"no pages", "set_pages"_q},
                 {"no name", "set_name"_q},
                 {"no spreads", "set_spreads"_q},
                 {"spreads that are forgotten", "get_spreads"_q},
                 {"no action", "add_action"_q},
                 {"an action that is forgotten", "is_action_known"_q},
                 {"any action", "is_action_known"_q},
                 {"no menu", "add_menu_item"_q},
                 {"one button", "show_alert"_q},
                 {"fonts that are no UTF-8", "get_missing_fonts"_q},
                 {"no page", "get_page_count"_q},
                 {"a document of nothing", "get_front_document"_q},
                 {"any document that is open", "find_open_document"_q},
                 {"any document that opens", "open_document"_q},
                 {"a document that is unsaved for ever", "save_document"_q},
                 {"a book without a file", "get_book_file"_q},
                 {"a book's name that is no UTF-8", "get_book_name"_q},
                 {"any document of a book", "get_book_document_file"_q},
                 {"an empty book", "get_book_document_count"_q},
                 {"a book that is not saved", "save_book"_q},
                 {"books left open", "get_active_book"_q}};
    for (const auto& entry : cases) {
        const ProgramRun run(cCheck, {QStringLiteral(FAKE_ADAPTOR)}, entry.lie);
        EXPECT_EQ(run.status, 1) << entry.lie;
        EXPECT_TRUE(run.output.contains("fault  "_q + entry.fault + ":"_q))
            << entry.lie << run.output.toStdString();
    }
}

TEST(HostCheck, TakesWhatAHostMayLackOrHaveAlready)
{
    const struct
    {
        const char* adaptor;
        QString output;
    } cases[] = {{"no packages of books", "lacks  create_command: books can't be packaged"_q},
                 {"job options that break off", "lacks  read_job_options: a file that breaks off is taken"_q},
                 {"actions of an earlier session", " 0 faults"_q}};
    for (const auto& entry : cases) {
        const ProgramRun run(cCheck, {QStringLiteral(FAKE_ADAPTOR)}, entry.adaptor);
        EXPECT_EQ(run.status, 0) << entry.adaptor << run.output.toStdString();
        EXPECT_TRUE(run.output.contains(entry.output)) << entry.adaptor << run.output.toStdString();
    }
}

TEST(HostCheck, SaysWhatItCantUse)
{
    const struct
    {
        QStringList arguments;
        QString output;
    } cases[] = {{{}, "LIBRARY"_q},
                 {{"none.so"_q}, "none.so"_q},
                 {{QStringLiteral(FAKE_ADAPTOR), "--module"_q, "none"_q}, "none"_q},
                 {{QStringLiteral(FAKE_ADAPTOR), "--module"_q, QStringLiteral(SHORT_MODULE)},
                  "can't export by itself"_q},
                 {{QStringLiteral(FAKE_ADAPTOR), "--receiver"_q, "none"_q}, "none"_q}};
    for (const auto& entry : cases) {
        const ProgramRun run(cCheck, entry.arguments);
        EXPECT_EQ(run.status, 2) << run.output.toStdString();
        EXPECT_TRUE(run.output.contains(entry.output)) << run.output.toStdString();
    }
}
