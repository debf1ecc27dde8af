#include "ExportRun.h"
#include "tests/support/PrinterProcessor.h"

#include <QDir>
#include <QProcess>

namespace
{
const QString cKit = QStringLiteral(KIT);
const QString cSuffix = QStringLiteral(EXECUTABLE_SUFFIX);

// A program of the kit in a sandbox.
struct ProgramRun
{
    ProgramRun(const QString& program, const QStringList& arguments)
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_QPA_PLATFORM"_q, "offscreen"_q);
        environment.remove("HOPBOX_PLUGIN"_q);
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(program + cSuffix, arguments);
        EXPECT_TRUE(process.waitForFinished(120000)) << program.toStdString();
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
