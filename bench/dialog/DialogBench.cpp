#include "Ratios.h"
#include "export/GCPTSaveAsTool.h"
#include "export/GIDCSPSaveAsAction.h"
#include "export/PlugInPrefModule.h"
#include "export/dialog/GCSPUSaveAsStamplexPDFDialog.h"
#include "foundation/prefs/GPrefMemoryModule.h"
#include "foundation/prefs/GPrefSharedFileModule.h"
#include "foundation/prefs/GPreferences.h"
#include "foundation/strings/GStringPool.h"
#include "foundation/system/GFileSystemBase.h"
#include "hopbox/HopboxProject.h"
#include "hopbox/HopboxRegistry.h"

#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <ctime>

// How long the user waits for the selection dialog, from the menu choice to its first picture, by the number
// of registered Hopboxes; and what the registered Hopboxes take of that, beside reading their file alone.

namespace
{
// Measures processor time: what other programs take is left out.
class Watch
{
public:
    double GetSeconds() const { return static_cast<double>(std::clock() - mStart) / CLOCKS_PER_SEC; }

private:
    std::clock_t mStart = std::clock();
};

// A root of its own with so many Hopboxes, which share a project archive.
class Registry
{
public:
    explicit Registry(int count) : mCount(count)
    {
        Enter();
        const HopboxRegistry folderMaker;
        const HopboxRecord record = MakeRecord();
        GPrefSharedFileModule module(HopboxRegistry::GetPathName(), GEncoding::GetUTF16LittleEndian());
        for (int number = 0; number < count; ++number)
            Register(module, record, number);
        module.FlushPrefs();
    }

    // Makes it the root of this process.
    void Enter() const { qputenv("MORVANE_ROOT", mFolder.path().toUtf8()); }

    // Opens the dialog and takes it down again; gives the seconds of the opening.
    double OpenDialog() const
    {
        Enter();
        GIDCSPSaveAsAction action;
        GCPTSaveAsTool tool(action, {{DialogOption::cFilePackage, true}});
        const Watch watch;
        GCSPUSaveAsStamplexPDFDialog dialog(nullptr, tool);
        dialog.show();
        QApplication::processEvents();
        const double time = watch.GetSeconds();
        if (dialog.findChild<QComboBox*>()->count() != mCount)
            std::abort();
        return time;
    }

    // The same for the registry's file.
    double ReadFile() const
    {
        Enter();
        const Watch watch;
        const GPrefSharedFileModule module(HopboxRegistry::GetPathName(), GEncoding::GetUTF16LittleEndian());
        return watch.GetSeconds();
    }

private:
    HopboxRecord MakeRecord() const
    {
        const GPathName jobOptions(mFolder.filePath(QStringLiteral("a.joboptions")));
        QFile file(jobOptions.GetNativePath());
        file.open(QIODevice::WriteOnly);
        file.write("<< /A 1 >>");
        file.close();
        GPrefMemoryModule settings;
        settings.Set(HopboxProject::GetPlugInGroup(), "UserSettings", QStringLiteral("true"));
        HopboxProject project(GPathName(mFolder.filePath(QStringLiteral("Project.hopbox"))));
        if (!project.Create(jobOptions, settings).HasSucceeded())
            std::abort();
        HopboxRecord record;
        record.entry.applicationPath =
            HopboxRegistry::GetCacheFolder().GetChild(QStringLiteral("700000/PrinterProcessorWin.exe"));
        record.entry.contextFilePath = project.GetPathName();
        record.entry.isPlugin = true;
        record.entry.isActive = true;
        return record;
    }

    static void Register(GPrefModule& module, HopboxRecord record, int number)
    {
        record.actorName = QStringLiteral("Hopbox of press %1").arg(number);
        record.entry.pdfSettings = QStringLiteral("Settings of press %1").arg(number);
        record.entry.hopboxName = record.actorName;
        module.Set("PrinterProcessorRegistry", GBuffer::number(number), record.ToText());
    }

    QTemporaryDir mFolder;
    int mCount;
};

void Open(benchmark::State& state)
{
    const Registry registry(static_cast<int>(state.range(0)));
    for (auto _ : state)
        state.SetIterationTime(registry.OpenDialog());
}

// Each time is that of a dialog with Hopboxes less that of one without, opened just before.
void OpenBeyondNone(benchmark::State& state)
{
    const Registry none(0);
    const Registry registry(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        const double without = none.OpenDialog();
        state.SetIterationTime(std::max(0.0, registry.OpenDialog() - without));
    }
}

// Each reading follows a dialog without Hopboxes, so that it finds memory and caches as the reading for a
// dialog does.
void ReadRegistry(benchmark::State& state)
{
    const Registry none(0);
    const Registry registry(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        none.OpenDialog();
        state.SetIterationTime(registry.ReadFile());
    }
}

BENCHMARK(Open)->Arg(0)->Arg(10)->Arg(1000)->Arg(10000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(OpenBeyondNone)->Arg(10)->Arg(1000)->Arg(10000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(ReadRegistry)->Arg(10)->Arg(1000)->Arg(10000)->UseManualTime()->Unit(benchmark::kMillisecond);
}  // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QTemporaryDir settings;
    GPreferences::Initialize();
    GStringPool::Initialize();  // names a language, by which lists are sorted
    GPreferences::SetPrefModule(
        GPreferences::cUserFileModule,
        std::make_unique<PlugInPrefModule>(GPathName(settings.filePath(QStringLiteral("settings")))));
    const int status = RunBenchmarks(
        argc, argv,
        {{"OpenBeyondNone/1000/manual_time", "ReadRegistry/1000/manual_time",
          "what 1,000 Hopboxes add to the dialog's opening, beside reading the registry"},
         {"OpenBeyondNone/10000/manual_time", "ReadRegistry/10000/manual_time",
          "what 10,000 Hopboxes add to the dialog's opening, beside reading the registry"},
         {"OpenBeyondNone/10000/manual_time", "OpenBeyondNone/1000/manual_time", "10 times the Hopboxes"}});
    GStringPool::Finalize();
    GPreferences::Finalize();
    return status;
}
