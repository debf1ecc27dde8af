#pragma once

#include "ExportFixture.h"
#include "export/GCPTSaveAsTool.h"
#include "export/GIDCSPExportBookAction.h"
#include "plugin/boundary/HostTable.h"
#include "plugin/boundary/TableHost.h"
#include "tests/support/fake_host/FakeHost.h"

enum class ExportKind
{
    Document,
    Book
};

// Everything that an export needs in this process: the texts, an alert service, a host, and the action. The
// host has one document in front, and one book of that document and two that are closed; nothing has changed
// since it was saved.
class ExportParty
{
public:
    explicit ExportParty(ExportKind kind = ExportKind::Document);
    ~ExportParty();
    ExportParty(const ExportParty&) = delete;
    ExportParty& operator=(const ExportParty&) = delete;

    // Runs an export of the Hopbox of a registry key, after what the test does to the tool.
    void Export(const GString& key);
    void Export(const GString& key, const std::function<void(GCPTSaveAsTool&)>& prepare);

    // From now on the action reaches the host through both bridges of the C boundary, and this table.
    void UseBoundary(const hopbox_host_table& table = HostTable::GetTable());

    // Handles that were not given back at the boundary.
    size_t GetHandleCount() const { return mTable ? mTable->GetHandleCount() : 0; }

    FakeHost host;
    QStringList alerts;

private:
    std::unique_ptr<HostTable> mTable;
    std::unique_ptr<TableHost> mTableHost;
    std::unique_ptr<GCPTSaveAsAction> mAction;

public:
    GCPTSaveAsAction& action;
};

// Registers a Hopbox of a build with a project archive of its own, without the command-line tool; gives its
// key. Its settings are texts KEY=VALUE.
GString MakeHopbox(const GString& name, const QStringList& settings = {}, int32_t build = 0);

// An alert of a failed export as ExportParty keeps it, and the text in its frame.
QString MakeAlert(const QString& text);
QString MakeFramedAlert(const char* text);

// What comes when no Hopbox process runs.
extern const QString cNobodyTakesIt;
