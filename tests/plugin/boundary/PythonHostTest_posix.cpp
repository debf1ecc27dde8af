#include "ExportRun.h"
#include "tests/support/PrinterProcessor.h"

#include <QCoreApplication>

TEST(PythonHost, ExportsByTheHeaderAlone)
{
    int count = 1;
    char name[] = "test";
    char* arguments[] = {name, nullptr};
    const QCoreApplication application(count, arguments);
    const Sandbox sandbox;
    MakeHopbox("Press"_q);
    PrinterProcessor receiver(sandbox, {"--inbox"_q, sandbox.GetPath("Inbox"_q)});
    QProcess python;
    if (*SANITIZER_RUNTIME != '\0') {
        // The interpreter has none of its own, and gives back little of what it takes.
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("LD_PRELOAD"_q, QStringLiteral(SANITIZER_RUNTIME));
        environment.insert("ASAN_OPTIONS"_q, "detect_leaks=0"_q);
        python.setProcessEnvironment(environment);
    }
    python.start("python3"_q,
                 {QStringLiteral(PYTHON_HOST), QStringLiteral(HOPBOX_HEADER), QStringLiteral(HOPBOX_MODULE),
                  QStringLiteral(USER_HAND), sandbox.GetPath(QString())});
    ASSERT_TRUE(python.waitForFinished(60000));
    EXPECT_EQ(python.exitCode(), 0) << python.readAllStandardError().toStdString();
    const QString pdf = QString::fromUtf8(python.readAllStandardOutput()).trimmed();
    EXPECT_TRUE(pdf.endsWith("/Press/Python.pdf"_q)) << pdf.toStdString();
    EXPECT_TRUE(ReadFile(receiver.ReadLine().value("saved"_q).toString()).startsWith("%PDF-1.4"));
}
