#pragma once

#include "ExportRun.h"
#include "export/JobOptionsFolder.h"

// Texts of alerts, without the frame.
constexpr const char* cNoDocument = "No current document";
constexpr const char* cNotSaved = "Unable to save current document. Save the document and try again.";
constexpr const char* cNotOpened = "Unable to open document.";
constexpr const char* cNoPages = "The pages to export are not in the document.";
constexpr const char* cNoPreferences = "Unable to retrieve PDF Export preferences";
constexpr const char* cNoJobOptions =
    "Unable to read job options. Reselect the job options setting under the Printer tab and recreate the "
    "Hopbox again.";
constexpr const char* cNoCommand = "PDF Export command not found";
constexpr const char* cFailed = "Unable to execute PDF Export command";
constexpr const char* cInvalidBook = "Book is either empty or invalid.";
constexpr const char* cNoBook = "No current book.";
constexpr const char* cNoPackage = "Create Package command not found";
constexpr const char* cPackageFailed = "Unable to execute Create Package command";

// No Hopbox process runs in these tests, so an export that succeeds ends with the alert that says so. Every
// export is to make a file package too.
class ExportFailuresTest : public ExportFixture
{
protected:
    ExportFailuresTest() : key(MakeHopbox("Press"_q, "IncludeFilePackage=true"_list)) {}

    // What must hold after every export, whatever came of it: nothing of the plug-in's is left but what the
    // action says that the host has made.
    void CheckWhatIsLeft(const ExportParty& party) const
    {
        EXPECT_EQ(party.host.GetUnreleased(), QStringList());
        EXPECT_EQ(party.GetHandleCount(), 0U);
        EXPECT_TRUE(List(JobOptionsFolder::GetPath()).isEmpty());
        EXPECT_EQ(PlugInStore::ReadList().GetCount(), 1);
        QStringList left = List(GetTemporary());
        for (const GPathName& path : {party.action.GetPDFPath(), party.action.GetPackagePath()}) {
            if (path.IsEmpty())
                continue;
            const QString item = path.GetRelativeTo(GetTemporary()).GetPortablePath();
            EXPECT_GT(left.removeAll(item) + left.removeAll(item + "/"_q), 0) << item.toStdString();
            for (const QString& inPackage : left.filter(item + "/"_q))
                left.removeAll(inPackage);
        }
        EXPECT_LE(left.size(), 2) << left.join(QLatin1Char(' ')).toStdString();  // the two work folders
    }

    static void CheckDocumentsAreAsTheyWere(const ExportParty& party)
    {
        for (const FakeDocument& document : party.host.documents)
            EXPECT_EQ(document.isOpen, document.pageCount > 1) << document.name.toStdString();
    }

    GString key;
};
