#include "ExportRun.h"

#include "foundation/prefs/GPrefMemoryModule.h"
#include "foundation/strings/GStringPool.h"
#include "hopbox/HopboxProject.h"
#include "hopbox/HopboxRegistry.h"
#include "plugin/messages/MessageTable.h"

namespace
{
class AlertRecorder : public GUserMessage
{
public:
    explicit AlertRecorder(QStringList& alerts) : mAlerts(alerts) {}
    void ShowInfoMessage(const GString&, const GString&) override {}
    void ShowErrorMessage(const GString& title, const GString& text) override
    {
        mAlerts.append(title + QLatin1Char('|') + text);
    }
    bool ShowWarningMessage(const GString&, const GString&) override { return false; }

private:
    QStringList& mAlerts;
};
}  // namespace

ExportParty::ExportParty()
{
    GStringPool::Initialize();
    RegisterPlugInMessages();
    GUserMessage::SetInstance(std::make_unique<AlertRecorder>(alerts));
    FakeDocument document;
    document.path = GFileSystemBase::GetSpecialPath(GSpecialPath::cTemporary)
                        .GetParent()
                        .GetChild(QStringLiteral("Gr\u00F6\u00DFe v1.2.indd"))
                        .GetNativePath();
    document.name = QStringLiteral("Gr\u00F6\u00DFe v1.2.indd");
    document.pageCount = 3;
    host.documents = {document};
}

ExportParty::~ExportParty()
{
    GUserMessage::SetInstance(nullptr);
    GStringPool::Finalize();
}

void ExportParty::Export(const GString& key)
{
    Export(key, [](GCPTSaveAsTool&) {});
}

void ExportParty::Export(const GString& key, const std::function<void(GCPTSaveAsTool&)>& prepare)
{
    alerts.clear();
    GCPTSaveAsTool tool(action, {});
    tool.SelectPDFSetting(key);
    prepare(tool);
    tool.Submit();
}

GString MakeHopbox(const GString& name, const QStringList& settings)
{
    const GPathName folder(
        HopboxRegistry::GetCacheFolder().GetChild(QStringLiteral("Settings/%1").arg(qHash(name))));
    GFileSystemBase::CreateFolder(folder);
    const GPathName jobOptions = folder.GetChild(QStringLiteral("a.joboptions"));
    EXPECT_TRUE(WriteFile(jobOptions.GetNativePath(), "<< /A 1 >>"));
    GPrefMemoryModule module;
    module.Set("Other", "Key", QStringLiteral("value"));
    for (const QString& setting : settings) {
        module.Set(HopboxProject::GetPlugInGroup(), setting.section(QLatin1Char('='), 0, 0).toUtf8(),
                   setting.section(QLatin1Char('='), 1));
    }
    HopboxProject project(folder.GetChild(QStringLiteral("Project.hopbox")));
    EXPECT_TRUE(project.Create(jobOptions, module)) << project.GetLastError().toStdString();
    HopboxRegistryEntry entry;
    entry.contextFilePath = project.GetPathName();
    entry.isPlugin = true;
    GString key;
    HopboxRegistry().AddEntry(name, entry, &key);
    return key;
}

QString MakeAlert(const QString& text)
{
    return QStringLiteral("Export to Hopbox error|") + text;
}

QString MakeFramedAlert(const char* text)
{
    return MakeAlert(QStringLiteral("Plug-in Error: ") + QString::fromUtf8(text));
}
