#include "ExportRun.h"

#include "foundation/prefs/GPrefMemoryModule.h"
#include "foundation/strings/GStringPool.h"
#include "hopbox/HopboxProject.h"
#include "hopbox/HopboxRegistry.h"
#include "plugin/host/HostCalls.h"
#include "plugin/messages/MessageTable.h"
#include "tests/support/AlertRecorder.h"

const QString cNobodyTakesIt =
    "Unable to automatically launch Hopbox. Launch the Hopbox manually and try again."_q;

static FakeDocument MakeDocument(const QString& name, bool isOpen, int pageCount)
{
    FakeDocument document;
    document.path = GFileSystemBase::GetRoot().GetChild(name).GetNativePath();
    document.name = name;
    document.isOpen = isOpen;
    document.pageCount = pageCount;
    return document;
}

ExportParty::ExportParty(ExportKind kind)
    : mAction(kind == ExportKind::Document ? std::make_unique<GIDCSPSaveAsAction>()
                                           : std::make_unique<GIDCSPExportBookAction>()),
      action(*mAction)
{
    GStringPool::Initialize();
    RegisterPlugInMessages();
    GUserMessage::SetInstance(std::make_unique<AlertRecorder>(alerts));
    host.documents = {MakeDocument("Gr\u00F6\u00DFe v1.2.indd"_q, true, 3),
                      MakeDocument("b.indd"_q, false, 1), MakeDocument("c.indd"_q, false, 1)};
    FakeBook book;
    book.path = GFileSystemBase::GetRoot().GetChild("50% #1 \u65E5.indb"_q).GetNativePath();
    for (const FakeDocument& document : host.documents)
        book.documentPaths.append(document.path);
    host.books = {book};
}

ExportParty::~ExportParty()
{
    GUserMessage::SetInstance(nullptr);
    GStringPool::Finalize();
}

void ExportParty::UseBoundary(const hopbox_host_table& table)
{
    mTable = std::make_unique<HostTable>(host);
    mTableHost = std::make_unique<TableHost>(table, mTable.get());
    HostServices::Set(mTableHost.get());
}

void ExportParty::Export(const GString& key)
{
    Export(key, [](GCPTSaveAsTool&) {});
}

void ExportParty::Export(const GString& key, const std::function<void(GCPTSaveAsTool&)>& prepare)
{
    alerts.clear();
    GCPTSaveAsTool tool(action, {});
    const HopboxRecord record = HopboxRegistry().GetRecord(key).value_or(HopboxRecord());
    static_cast<void>(tool.SelectPDFSetting(key, record));  // the export tells why it fails
    prepare(tool);
    tool.Submit();
}

GString MakeHopbox(const GString& name, const QStringList& settings, int32_t build)
{
    const GPathName folder(
        HopboxRegistry::GetCacheFolder().GetChild(QStringLiteral("Settings/%1").arg(qHash(name))));
    GFileSystemBase::CreateFolder(folder);
    const GPathName jobOptions = folder.GetChild("a.joboptions"_q);
    EXPECT_TRUE(WriteFile(jobOptions.GetNativePath(), "<< /A 1 >>"));
    GPrefMemoryModule module;
    module.Set("Other", "Key", "value"_q);
    for (const QString& setting : settings) {
        module.Set(HopboxProject::GetPlugInGroup(), setting.section(QLatin1Char('='), 0, 0).toUtf8(),
                   setting.section(QLatin1Char('='), 1));
    }
    HopboxProject project(folder.GetChild("Project.hopbox"_q));
    EXPECT_EQ(project.Create(jobOptions, module).GetReason(), QString());
    HopboxRegistryEntry entry;
    entry.contextFilePath = project.GetPathName();
    entry.applicationPath =
        HopboxRegistry::GetCacheFolder().GetChild(QString::number(build) + "/Hopbox.exe"_q);
    entry.isPlugin = true;
    GString key;
    EXPECT_TRUE(HopboxRegistry().AddEntry(name, entry, &key));
    return key;
}

QString MakeAlert(const QString& text)
{
    return "Export to Hopbox error|"_q + text;
}

QString MakeFramedAlert(const char* text)
{
    return MakeAlert("Plug-in Error: "_q + QString::fromUtf8(text));
}
