#include "Scenarios.h"
#include "hosts/scribus/sla/SlaFile.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Test.h"

#include <cstdio>

namespace
{
QString GetDocument(const QString& root)
{
    return root + "/a.sla"_q;
}

// Longer than what one read gives: a read that breaks off must not pass for the end of the file.
QByteArray MakeText(const char* title)
{
    return QByteArray("<SCRIBUSUTF8NEW TITLE=\"") + title + "\">" + QByteArray(100000, ' ') +
           "</SCRIBUSUTF8NEW>\n";
}

QString LookAtDocument(const QString& root)
{
    QByteArray text;
    QString reason;
    bool isPacked = false;
    if (!SlaFile::Read(GetDocument(root), text, isPacked, reason))
        return reason;
    return text == MakeText("old") ? "old"_q : text == MakeText("new") ? "new"_q : "a part"_q;
}
}  // namespace

CHILD_ROLE(ChangeDocument)
{
    const QString path = GetDocument(arguments.at(0));
    QByteArray text;
    QString reason;
    bool isPacked = false;
    const bool isDone = SlaFile::Read(path, text, isPacked, reason) &&
                        SlaFile::Write(path, text.replace("old", "new"), isPacked, reason);
    if (!isDone)
        std::fprintf(stderr, "%s\n", qPrintable(reason));
    return isDone ? 0 : 1;
}

FaultScenario GetDocumentChange()
{
    const auto prepare = [](const QString& root) {
        EXPECT_TRUE(WriteFile(GetDocument(root), MakeText("old")));
    };
    FaultScenario scenario{
        "DocumentChange", prepare, QString(), {"ChangeDocument"_q, "%1"_q}, LookAtDocument};
    scenario.takesEveryError = true;
    return scenario;
}
