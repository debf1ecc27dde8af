#include "ExportRun.h"
#include "Scenarios.h"
#include "export/JobOptionsFolder.h"
#include "export/SmartFileList.h"
#include "foundation/core/GException.h"
#include "foundation/trace/GTrace.h"
#include "tests/support/ChildProcess.h"

#include <cstdio>

// A whole export: the settings of the plug-in, the Hopbox's archive, the work folder, the job options among
// the host's, the host's own PDF, and a hand-off for which nobody runs.

CHILD_ROLE(MakeExportHopbox)
{
    const PlugInStore store;
    GFileSystemBase::CreateFolder(JobOptionsFolder::GetPath());
    WriteFile(arguments.at(0) + "/key"_q, MakeHopbox("Press"_q, "IncludeFilePackage=true"_list).toUtf8());
    return testing::Test::HasFailure() ? 1 : 0;
}

CHILD_ROLE(Export)
{
    QFile key(arguments.at(0) + "/key"_q);
    if (!key.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "%s\n", qPrintable(key.errorString()));
        return 1;
    }
    try {
        const PlugInStore store;
        PlugInPreferences::Initialize();
        ExportParty party;
        party.Export(QString::fromUtf8(key.readAll()));
        PlugInPreferences::Release();
        GPreferences::FlushPrefs();
        if (party.alerts == QStringList{MakeAlert(cNobodyTakesIt)})
            return 0;
        std::fprintf(stderr, "%s\n", qPrintable(party.alerts.join(QLatin1Char('\n'))));
    } catch (const GException& error) {
        std::fprintf(stderr, "%s\n", qPrintable(error.GetDescription()));
    }
    return 1;
}

namespace
{
// What lies in the work folders, all of it whole.
QString LookAtWorkFolders(const QString& root)
{
    QStringList found;
    const QMap<QString, QByteArray> tree = ReadTree(root + "/Temp"_q);
    for (auto item = tree.begin(); item != tree.end(); ++item) {
        if (item.key().endsWith(".pdf"_q))
            found.append(item->endsWith("%%EOF\n") ? "a PDF"_q : "a part of a PDF"_q);
    }
    found.removeDuplicates();
    return found.join(QLatin1Char('\n'));
}
}  // namespace

FaultScenario GetExport()
{
    const auto prepare = [](const QString& root) {
        EXPECT_EQ(ChildProcess("MakeExportHopbox"_q, {root}).WaitForExit(), 0);
    };
    // Each export has a work folder of its own, which stays, and the settings come with the first.
    FaultScenario scenario{"Export",
                           prepare,
                           QString(),
                           {"Export"_q, "%1"_q},
                           LookAtWorkFolders,
                           {"Temp"_q, "Junctra_CC2019_64_InDesign"_q, "*lock"_q},
                           true,
                           false};
    scenario.stride = 5;
    return scenario;
}

CHILD_ROLE(ListTemporary)
{
    const PlugInStore store;
    return SmartFileList::Add(GPathName(arguments.at(0) + "/old"_q)) == 1 ? 0 : 1;
}

CHILD_ROLE(ListAnotherTemporary)
{
    GTrace::SetLogger(std::make_shared<ErrorPrinter>());
    const PlugInStore store;
    const GPathName path(arguments.at(0) + "/new"_q);
    const int32_t numbers[] = {SmartFileList::Add(path), SmartFileList::Add(path)};
    const bool isListed = numbers[0] != 0 && numbers[1] != 0 && SmartFileList::Replace(1, path);
    // What one process has listed stays its own.
    const GPrefGroup list = PlugInStore::ReadList();
    const GString* const first = list.Find("FileOwner_" + GBuffer::number(numbers[0]));
    const GString* const second = list.Find("FileOwner_" + GBuffer::number(numbers[1]));
    if (first != nullptr && second != nullptr && !first->isEmpty() && *first != *second)
        WriteFile(arguments.at(0) + "/lost"_q, "");
    return isListed ? 0 : 1;
}

FaultScenario GetListOfTemporaries()
{
    const auto prepare = [](const QString& root) {
        EXPECT_EQ(ChildProcess("ListTemporary"_q, {root}).WaitForExit(), 0);
    };
    const auto look = [](const QString& root) {
        const GPrefGroup list = PlugInStore::ReadList();
        const GString* const path = list.Find("FilePathName_1");
        if (QFile::exists(root + "/lost"_q))
            return "a part is nobody's"_q;
        return path == nullptr ? "not listed"_q : path->right(3);
    };
    return {"ListOfTemporaries",     prepare, QString(), {"ListAnotherTemporary"_q, "%1"_q}, look,
            {"*lock"_q, "*.owner"_q}};
}
