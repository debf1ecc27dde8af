#include "ExportRun.h"
#include "tests/support/LeakOptions.h"
#include "tests/support/PrinterProcessor.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

static const QString cPrograms = QStringLiteral(KIT "/moved/bin/");

// The module, its texts, the engine's script: all is found where the kit was moved to.
TEST(InstalledLayoutHost, ExportsAndSpeaksGerman)
{
    const Sandbox sandbox;
    const QString options = sandbox.GetPath("Press.joboptions"_q);
    ASSERT_TRUE(WriteFile(options, "<< /CompatibilityLevel 1.4 >> setdistillerparams\n"));
    ASSERT_EQ(
        QProcess::execute(cPrograms + "hopboxctl"_q, {"create"_q, "Press"_q, "--job-options"_q, options}), 0);
    PrinterProcessor receiver(sandbox, {"--inbox"_q, sandbox.GetPath("Inbox"_q)});
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("LSAN_OPTIONS"_q, QString::fromUtf8(WriteLeakOptions(sandbox.GetPath())));
    environment.insert("LC_ALL"_q, "de_DE.UTF-8"_q);
    environment.remove("HOPBOX_PLUGIN"_q);
    process.setProcessEnvironment(environment);
    const auto exportTo = [&](const QString& hopbox) {
        process.start(cPrograms + "layout-host"_q,
                      {"--export"_q, "/usr/share/scribus/templates/nl2/nl2.sla.gz"_q, "--hopbox"_q, hopbox,
                       "--pages"_q, "1"_q, "--force"_q});
        EXPECT_TRUE(process.waitForFinished(240000));
        return QJsonDocument::fromJson(process.readAllStandardOutput()).object();
    };
    EXPECT_EQ(exportTo("Press"_q).value("result"_q), "success"_q);
    EXPECT_TRUE(ReadFile(receiver.ReadLine().value("saved"_q).toString()).startsWith("%PDF-"));
    receiver.Kill();
    const QString alert = exportTo("Press"_q).value("alert"_q).toString();
    EXPECT_TRUE(alert.contains("Starten Sie die Hopbox von Hand"_q)) << alert.toStdString();
}
