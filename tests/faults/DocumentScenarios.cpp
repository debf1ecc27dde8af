#include "Scenarios.h"
#include "foundation/core/GException.h"
#include "foundation/system/GFileSystemBase.h"
#include "hosts/indesign/bridge/MeetingPlace.h"
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
    bool isPacked = false;
    const GResult read = SlaFile::Read(GetDocument(root), text, isPacked);
    if (!read.HasSucceeded())
        return read.GetReason();
    return text == MakeText("old") ? "old"_q : text == MakeText("new") ? "new"_q : "a part"_q;
}
}  // namespace

CHILD_ROLE(ChangeDocument)
{
    const QString path = GetDocument(arguments.at(0));
    QByteArray text;
    bool isPacked = false;
    const GResult result = SlaFile::Read(path, text, isPacked).Then([&] {
        return SlaFile::Write(path, text.replace("old", "new"), isPacked);
    });
    if (!result.HasSucceeded())
        std::fprintf(stderr, "%s\n", qPrintable(result.GetReason()));
    return result.HasSucceeded() ? 0 : 1;
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

CHILD_ROLE(AnnounceTheHelper)
{
    try {
        MeetingPlace place;
        if (!place.Enter())
            return 1;
        place.Announce(1);
        std::_Exit(0);  // as killed: what was announced stays to be looked at
    } catch (const GException& error) {
        std::fprintf(stderr, "%s\n", qPrintable(error.GetDescription()));
        return 1;
    }
}

// A file that is there for everybody: the secret must not get into it.
FaultScenario GetAnnouncement()
{
    const auto getFile = [] {
        return GFileSystemBase::GetSpecialPath(GSpecialPath::cUserPreferences)
            .GetChild("Hopbox Bridge/bridge.json"_q)
            .GetNativePath();
    };
    const auto prepare = [getFile](const QString&) {
        EXPECT_TRUE(WriteFile(getFile(), "{}"));
        QFile::setPermissions(getFile(), QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther);
    };
    const auto look = [getFile](const QString&) {
        const bool isTold = ReadFile(getFile()).contains("secret");
        const bool isForAll = (QFile::permissions(getFile()) & QFile::ReadOther) != 0;
        return !isTold ? "nothing told"_q : isForAll ? "a part: told to all"_q : "told"_q;
    };
    FaultScenario scenario{"Announcement", prepare, QString(), {"AnnounceTheHelper"_q}, look};
    scenario.ignored = QStringList{"bridge.*"_q};
    return scenario;
}
