#include "Exporter.h"

#include "export/PlugInPrefModule.h"
#include "export/PlugInPreferences.h"
#include "foundation/prefs/GPrefMemoryModule.h"
#include "foundation/prefs/GPreferences.h"
#include "foundation/strings/GUserMessage.h"
#include "foundation/system/GFileSystemBase.h"
#include "hopbox/HopboxProject.h"
#include "hopbox/HopboxRegistry.h"

#include <QCoreApplication>
#include <QFile>

#include <chrono>
#include <random>

namespace
{
QByteArray MakeNoise(int size)
{
    std::mt19937 random(1);
    QByteArray noise(size, Qt::Uninitialized);
    for (char& byte : noise)
        byte = static_cast<char>(random());
    return noise;
}

// An export that failed shows an alert.
class AlertCounter : public GUserMessage
{
public:
    void ShowInfoMessage(const GString&, const GString&) override {}
    void ShowErrorMessage(const GString&, const GString&) override { ++sCount; }
    bool ShowWarningMessage(const GString&, const GString&) override { return false; }

    static int sCount;
};

int AlertCounter::sCount = 0;
}  // namespace

Exporter::Exporter(int hopboxes, int archiveSize) : Exporter(hopboxes, MakeNoise(archiveSize)) {}

Exporter::Exporter(int hopboxes, const QByteArray& jobOptions)
{
    qputenv("MORVANE_ROOT", mRoot.path().toLocal8Bit());
    GPreferences::Initialize();
    const GPathName settings = GFileSystemBase::GetSpecialPath(GSpecialPath::cUserPreferences);
    GPreferences::SetPrefModule(
        GPreferences::cUserFileModule,
        std::make_unique<PlugInPrefModule>(settings.GetChild(PlugInPreferences::cFileName)));
    GUserMessage::SetInstance(std::make_unique<AlertCounter>());

    mJobOptions = GPathName(mRoot.filePath(QStringLiteral("a.joboptions")));
    QFile file(mJobOptions.GetNativePath());
    file.open(QIODevice::WriteOnly);
    file.write(jobOptions);
    file.close();
    mArchive = GPathName(mRoot.filePath(QStringLiteral("Project.hopbox")));
    GPrefMemoryModule values;
    values.Set(HopboxProject::GetPlugInGroup(), "UserSettings", QStringLiteral("true"));
    if (!HopboxProject(mArchive).Create(mJobOptions, values).HasSucceeded())
        qFatal("the project archive can't be made");
    Register(hopboxes);

    FakeDocument document;
    document.path = mRoot.filePath(QStringLiteral("a.indd"));
    document.name = QStringLiteral("a.indd");
    document.pageCount = 100;
    mHost.documents = {document};
    mReceiver.start(
        QCoreApplication::applicationDirPath() + QStringLiteral("/../bin/PrinterProcessorWin.exe"),
        QStringList());
    mReceiver.setReadChannel(QProcess::StandardError);
    mReceiver.waitForReadyRead();
    mReceiver.closeReadChannel(QProcess::StandardOutput);
}

Exporter::~Exporter()
{
    mReceiver.kill();
    mReceiver.waitForFinished();
    GUserMessage::SetInstance(nullptr);
    GPreferences::Finalize();
}

// All but the last offer themselves under other names; written in one go, as adding them one by one writes
// the growing file as often.
void Exporter::Register(int hopboxes)
{
    HopboxRegistry registry;
    HopboxRecord record;
    record.entry.contextFilePath = mArchive;
    record.entry.isPlugin = true;
    GPrefFileModule file(HopboxRegistry::GetPathName(), GEncoding::GetUTF16());
    for (int number = 1; number <= hopboxes; ++number) {
        record.actorName = QStringLiteral("Hopbox %1").arg(number);
        record.entry.hopboxName = record.entry.pdfSettings = record.actorName;
        mKey = QStringLiteral("%1").arg(number, 32, 16, QLatin1Char('0'));
        file.Set("PrinterProcessorRegistry", mKey.toUtf8(), record.ToText());
    }
    file.FlushPrefs();
}

double Exporter::Export(bool& isDone)
{
    using Clock = std::chrono::steady_clock;
    GCPTSaveAsTool tool(mAction, {});
    isDone = tool.SelectPDFSetting(mKey, HopboxRegistry().GetRecord(mKey).value_or(HopboxRecord()));
    AlertCounter::sCount = 0;
    const Clock::time_point start = Clock::now();
    tool.Submit();
    const std::chrono::duration<double> time = Clock::now() - start;
    isDone = isDone && AlertCounter::sCount == 0 && !mAction.GetPDFPath().IsEmpty();
    GFileSystemBase::DropFile(mAction.GetPDFPath());
    return time.count();
}
