#include "ExportRun.h"
#include "export/JobOptionsFolder.h"
#include "export/WorkFolder.h"
#include "foundation/core/GException.h"
#include "hopbox/HopboxRegistry.h"

#include <algorithm>

// No Hopbox process runs in these tests, so an export that succeeds ends with this.
static const QString cNobodyTakesIt =
    QStringLiteral("Unable to automatically launch Hopbox. Launch the Hopbox manually and try again.");

class ExportFailuresTest : public ExportFixture
{
protected:
    ExportFailuresTest()
    {
        GFileSystemBase::TryToRemoveFile(HopboxRegistry::GetPathName());
        key = MakeHopbox(cName);
    }

    // What must hold after every export, whatever came of it: nothing of the plug-in's is left but the PDF.
    void CheckNothingIsLeft(const ExportParty& party) const
    {
        EXPECT_TRUE(party.host.GetUnreleased().isEmpty())
            << party.host.GetUnreleased().join(QLatin1Char(' ')).toStdString();
        EXPECT_TRUE(List(JobOptionsFolder::GetPath()).isEmpty());
        QStringList files = List(GetTemporary());
        files.erase(std::remove_if(files.begin(), files.end(),
                                   [](const QString& name) { return name.endsWith(QLatin1Char('/')); }),
                    files.end());
        EXPECT_EQ(files.size(), party.action.GetPDFPath().IsEmpty() ? 0 : 1)
            << files.join(QLatin1Char(' ')).toStdString();
        EXPECT_LE(List(GetTemporary()).size() - files.size(), 2);  // the user's folder and the Hopbox's
        std::vector<GBuffer> keys;
        PlugInPrefModule(PlugInStore::GetFile()).GetGroupPreferences("SmartFileList", keys);
        EXPECT_EQ(keys.size(), 1u);
    }

    static const QString cName;
    GString key;
};

const QString ExportFailuresTest::cName = QStringLiteral("Press");

TEST_F(ExportFailuresTest, EachHostOperationThatIsAbsentOrFailsEndsTheExportWithItsAlert)
{
    const char* const noPages = "The page range names no page of the document.";
    const char* const noCommand = "Unable to execute PDF Export command";
    const std::map<HostOperation, const char*> texts = {
        {HostOperation::CreatePDFExportCommand, "PDF Export command not found"},
        {HostOperation::QueryPDFExportPreferences, "Unable to retrieve PDF Export preferences"},
        {HostOperation::ReadJobOptions,
         "Unable to read job options. Reselect the job options setting under the Printer tab and recreate "
         "the "
         "Hopbox again."},
        {HostOperation::QuerySystemFileData, "Unable to retrieve system file data"},
        {HostOperation::QueryLayoutUtils, "No current document"},
        {HostOperation::QueryFrontDocument, "No current document"},
        {HostOperation::QueryDocumentUtils,
         "Unable to save current document. Save the document and try again."},
        {HostOperation::SaveDocument, "Unable to save current document. Save the document and try again."},
        {HostOperation::QueryPageList, noPages},
        {HostOperation::GetNthPage, noPages},
        {HostOperation::QueryOutputPages, noCommand},
        {HostOperation::QueryFontList, "Can't retrieve all fonts used in the document."},
        {HostOperation::RunPDFExport, noCommand}};
    size_t met = 0;
    for (const HostOperationInfo& info : GetHostOperations()) {
        for (const HostAnswer answer : {HostAnswer::Absent, HostAnswer::Fails}) {
            if (!(answer == HostAnswer::Absent ? info.canBeAbsent : info.canFail))
                continue;
            SCOPED_TRACE(info.name);
            GFileSystemBase::TryToRemoveFolder(GetTemporary());
            ExportParty party;
            party.host.documents.front().isSaved = false;
            party.host.Make(info.operation, answer);
            party.Export(key);
            const auto text = texts.find(info.operation);
            if (text != texts.end()) {
                ++met;
                EXPECT_EQ(party.alerts, QStringList{MakeFramedAlert(text->second)});
                EXPECT_EQ(party.host.GetAsked().back(), info.operation);
                EXPECT_TRUE(party.action.GetOutputPath().IsEmpty());
            } else {
                EXPECT_EQ(party.alerts, QStringList{MakeAlert(cNobodyTakesIt)});
            }
            CheckNothingIsLeft(party);
        }
    }
    EXPECT_EQ(met, texts.size());
}

TEST_F(ExportFailuresTest, EachOtherFailureHasItsAlertAndEndsTheExport)
{
    struct Case
    {
        const char* name;
        std::function<void(ExportParty&)> prepare;
        std::function<void(GCPTSaveAsTool&)> choose;
        QStringList alerts;
        bool asksHost;
        bool runsCommand;
    };
    const auto none = [](ExportParty&) {};
    const auto plain = [](GCPTSaveAsTool&) {};
    const auto range = [](const char* text) {
        return [text](GCPTSaveAsTool& tool) { tool.SetPageRange(QString::fromLatin1(text)); };
    };
    const auto miss = [](const QStringList& fonts) {
        return [fonts](ExportParty& party) { party.host.documents.front().missingFonts = fonts; };
    };
    const auto cancel = [](bool fails) {
        return [fails](ExportParty& party) {
            party.host.onRun = [&party] { party.host.CancelByUser(); };
            if (fails)
                party.host.Make(HostOperation::RunPDFExport, HostAnswer::Fails);
        };
    };
    const QStringList noPages = {MakeFramedAlert("The page range names no page of the document.")};
    const QStringList noSetting = {MakeAlert(QStringLiteral("Unable to retrieve PDF setting: Press"))};
    const QStringList taken = {MakeAlert(cNobodyTakesIt)};
    const GPathName archive = HopboxRegistry::GetSettingsFolder().GetChild(QString::number(qHash(cName)) +
                                                                           QStringLiteral("/Project.hopbox"));
    const Case cases[] = {
        {"a range outside the document", none, range("1-2,4"), noPages, true, false},
        {"a range that is none", none, range(""), noPages, true, false},
        {"no pages", [](ExportParty& party) { party.host.documents.front().pageCount = 0; }, plain, noPages,
         true, false},
        {"one font",
         miss({QStringLiteral("Arial")}),
         plain,
         {MakeFramedAlert("Font is Missing! Correct the following font and try again:\n    1. Arial\n")},
         true,
         false},
        {"three fonts",
         miss({QStringLiteral("Arial"), QStringLiteral("%1"), QStringLiteral("Times")}),
         plain,
         {MakeFramedAlert("Fonts are Missing! Correct the following fonts and try again:\n    1. Arial\n"
                          "    2. %1\n    3. Times\n")},
         true,
         false},
        {"no document",
         [](ExportParty& party) { party.host.documents.clear(); },
         plain,
         {MakeFramedAlert("No current document")},
         true,
         false},
        {"cancelled", cancel(true), plain, {}, true, false},
        {"cancelled too late", cancel(false), plain, taken, true, true},
        {"an action that is not active",
         [](ExportParty& party) { party.action.SetActive(false); },
         plain,
         {MakeFramedAlert("Unable to execute PDF Export command")},
         false,
         false},
        {"no archive", [&](ExportParty&) { QFile::remove(archive.GetNativePath()); }, plain, noSetting, false,
         false},
        {"an archive that is none", [&](ExportParty&) { WriteFile(archive.GetNativePath(), "zip"); }, plain,
         noSetting, false, false},
        {"no entry",
         [&](ExportParty&) { HopboxRegistry().RemoveEntry(key); },
         [](GCPTSaveAsTool&) {},
         {MakeAlert(QStringLiteral("Unable to retrieve PDF setting: ") + key)},
         false,
         false}};
    for (const Case& row : cases) {
        SCOPED_TRACE(row.name);
        GFileSystemBase::TryToRemoveFolder(GetTemporary());
        ExportParty party;
        row.prepare(party);
        party.Export(key, row.choose);
        EXPECT_EQ(party.alerts, row.alerts);
        EXPECT_EQ(!party.host.GetAsked().empty(), row.asksHost);
        EXPECT_EQ(
            party.host.CountAsked(HostOperation::RunPDFExport) > 0 && !party.action.GetPDFPath().IsEmpty(),
            row.runsCommand);
        CheckNothingIsLeft(party);
    }
}
