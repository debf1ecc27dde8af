#include "ExportRun.h"
#include "export/JobOptionsFolder.h"
#include "hopbox/HopboxRegistry.h"

#include <algorithm>

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

namespace
{
const char* const cGoesOn = nullptr;

// How an operation of the host that does not work ends the exports of a document and of a book.
struct Row
{
    HostOperation operation;
    const char* document;
    const char* book;
    int fromCall = 1;
    HostAnswer answer = HostAnswer::Works;  // here: the one that the operation can give
};

using Op = HostOperation;
const char* const cNoDocument = "No current document";
const char* const cNotSaved = "Unable to save current document. Save the document and try again.";
const char* const cNotOpened = "Unable to open document.";
const char* const cNoPages = "The pages to export are not in the document.";
const char* const cNoPreferences = "Unable to retrieve PDF Export preferences";
const char* const cNoJobOptions =
    "Unable to read job options. Reselect the job options setting under the Printer tab and recreate the "
    "Hopbox again.";
const char* const cNoCommand = "PDF Export command not found";
const char* const cFailed = "Unable to execute PDF Export command";
const char* const cInvalidBook = "Book is either empty or invalid.";
const char* const cNoBook = "No current book.";
const char* const cNoPackage = "Create Package command not found";
const char* const cPackageFailed = "Unable to execute Create Package command";

const Row cRows[] = {{Op::CreatePDFExportCommand, cNoCommand, cGoesOn},
                     {Op::QueryPDFExportPreferences, cNoPreferences, cNoPreferences},
                     {Op::ReadJobOptions, cNoJobOptions, cNoJobOptions},
                     {Op::QuerySystemFileData, "Unable to retrieve system file data", cGoesOn},
                     {Op::QueryLayoutUtils, cNoDocument, cGoesOn},
                     {Op::QueryFrontDocument, cNoDocument, cGoesOn},
                     {Op::QueryDocumentUtils, cNotSaved, cNotOpened},
                     {Op::SaveDocument, cNotSaved, cGoesOn},
                     {Op::QueryPageList, cNoPages, cGoesOn},
                     {Op::GetNthPage, cNoPages, cGoesOn},
                     {Op::QueryOutputPages, cFailed, cGoesOn},
                     {Op::QueryFontList, "Can't retrieve all fonts used in the document.", cGoesOn},
                     {Op::RunPDFExport, cFailed, cGoesOn},
                     {Op::QuerySession, cGoesOn, cInvalidBook},
                     {Op::QueryBookManager, cGoesOn, cInvalidBook},
                     {Op::QueryActiveBook, cGoesOn, cInvalidBook},
                     {Op::QueryActiveBook, cGoesOn, cNoBook, 2},
                     {Op::QueryBookContent, cGoesOn, cInvalidBook},
                     {Op::GetNthDocumentFile, cGoesOn, cNotOpened},
                     {Op::OpenDocument, cGoesOn, "Invalid document."},
                     {Op::OpenDocument, cGoesOn, cNotOpened, 1, HostAnswer::Fails},
                     {Op::OpenDocument, cGoesOn, cNotOpened, 2, HostAnswer::Fails},
                     {Op::SaveBook, cGoesOn, cFailed},
                     {Op::CreatePDFPreferencesCommand, cGoesOn, cNoPreferences},
                     {Op::RunPDFPreferences, cGoesOn, cFailed},
                     {Op::CreateBookExportCommand, cGoesOn, cNoCommand},
                     {Op::QueryBookExportData, cGoesOn, cNoCommand},
                     {Op::RunBookExport, cGoesOn, cNoCommand},
                     {Op::QueryObjectModel, cNoPackage, cNoPackage},
                     {Op::CreatePackageCommand, cNoPackage, cGoesOn},
                     {Op::CreateBookPackageCommand, cGoesOn, cNoPackage},
                     {Op::QueryFrontDocument, cNoDocument, cGoesOn, 2},
                     {Op::QueryActiveBook, cGoesOn, cInvalidBook, 3},
                     {Op::QueryActiveBook, cGoesOn, cNoBook, 4},
                     {Op::ExecutePackage, cPackageFailed, cPackageFailed},
                     {Op::CreatePackageReportCommand, "Create Package Report command not found", cGoesOn},
                     {Op::CreateReport, "Unable to execute Create Package Report command", cGoesOn}};

// The rows, and one that goes on for each other operation.
std::vector<Row> CompleteRows()
{
    std::vector<Row> rows;
    for (const HostOperationInfo& info : GetHostOperations()) {
        const HostAnswer usual = info.canBeAbsent ? HostAnswer::Absent : HostAnswer::Fails;
        const size_t count = rows.size();
        for (Row row : cRows) {
            if (row.operation != info.operation)
                continue;
            row.answer = row.answer == HostAnswer::Works ? usual : row.answer;
            rows.push_back(row);
        }
        if (rows.size() == count)
            rows.push_back({info.operation, cGoesOn, cGoesOn, 1, usual});
    }
    return rows;
}
}  // namespace

TEST_F(ExportFailuresTest, EachHostOperationThatIsAbsentOrFailsEndsTheExportWithItsAlert)
{
    const std::pair<ExportKind, bool> ways[] = {{ExportKind::Document, false},
                                                {ExportKind::Book, false},
                                                {ExportKind::Document, true},
                                                {ExportKind::Book, true}};
    for (const auto& [kind, isAtBoundary] : ways) {
        const auto run = [&, isAtBoundary = isAtBoundary](ExportParty& party, const Row& row) {
            GFileSystemBase::TryToRemoveFolder(GetTemporary());
            if (isAtBoundary)
                party.UseBoundary();
            party.host.documents.front().isSaved = false;
            party.host.books.front().isModified = true;
            party.host.Make(row.operation, row.answer, row.fromCall);
            party.Export(key);
        };
        std::vector<Op> asked;  // when everything works
        {
            ExportParty party(kind);
            run(party, {Op::QueryModalUtils, cGoesOn, cGoesOn});
            asked = party.host.GetAsked();
        }
        for (const Row& row : CompleteRows()) {
            SCOPED_TRACE(testing::Message() << GetName(row.operation).toStdString() << " from call "
                                            << row.fromCall << (isAtBoundary ? " at the boundary" : ""));
            const char* const text = kind == ExportKind::Document ? row.document : row.book;
            if (text == cGoesOn && std::count(asked.begin(), asked.end(), row.operation) == 0)
                continue;
            ExportParty party(kind);
            run(party, row);
            if (text != cGoesOn) {
                EXPECT_EQ(party.alerts, QStringList{MakeFramedAlert(text)});
                EXPECT_EQ(party.host.GetAsked().back(), row.operation);
            } else {
                EXPECT_EQ(party.alerts, QStringList{MakeAlert(cNobodyTakesIt)});
                EXPECT_FALSE(party.action.GetPackagePath().IsEmpty());
            }
            CheckWhatIsLeft(party);
            if (row.operation != Op::CloseDocument && row.operation != Op::FindOpenDocument)
                CheckDocumentsAreAsTheyWere(party);
        }
    }
}

// One after the other through the same action and host: each run must get as far as its call, which proves
// that those before it have left everything working.
TEST_F(ExportFailuresTest, AnyOneCallOfTheHostMayFailRaiseOrAnswerNonsense)
{
    constexpr int32_t most = std::numeric_limits<int32_t>::max();
    const struct
    {
        ExportKind kind;
        HostAnswer answer;
        int32_t nonsense;
        bool isAtBoundary;
        int goesOn;  // calls without whose answer the export does its work: no more than these
    } cases[] = {{ExportKind::Document, HostAnswer::Fails, 0, false, 2},
                 {ExportKind::Document, HostAnswer::Raises, 0, false, 2},
                 {ExportKind::Document, HostAnswer::Nonsense, most, false, 25},
                 {ExportKind::Book, HostAnswer::Fails, 0, false, 8},
                 {ExportKind::Book, HostAnswer::Raises, 0, false, 4},
                 {ExportKind::Book, HostAnswer::Nonsense, most, false, 32},
                 {ExportKind::Book, HostAnswer::Nonsense, -1, false, 28},
                 {ExportKind::Document, HostAnswer::Fails, 0, true, 3},
                 {ExportKind::Document, HostAnswer::Raises, 0, true, 13},
                 {ExportKind::Document, HostAnswer::Nonsense, most, true, 32},
                 {ExportKind::Book, HostAnswer::Fails, 0, true, 13},
                 {ExportKind::Book, HostAnswer::Raises, 0, true, 23},
                 {ExportKind::Book, HostAnswer::Nonsense, most, true, 47},
                 {ExportKind::Book, HostAnswer::Nonsense, -1, true, 43}};
    for (const auto& row : cases) {
        ExportParty party(row.kind);
        if (row.isAtBoundary)
            party.UseBoundary();
        int goneOn = 0;
        int call = 1;
        for (bool isDisturbed = true; isDisturbed; ++call) {
            SCOPED_TRACE(testing::Message() << "answer " << int(row.answer) << " of call " << call);
            GFileSystemBase::TryToRemoveFolder(GetTemporary());
            for (FakeDocument& document : party.host.documents)
                document.isOpen = document.pageCount > 1;
            party.host.documents.front().isSaved = false;
            party.host.books.front().isModified = true;
            party.host.nonsense = row.nonsense;
            party.host.DisturbCall(call, row.answer);
            party.Export(key);
            isDisturbed = party.host.IsDisturbed();
            ASSERT_EQ(party.alerts.size(), 1);
            const bool isHandedOff = party.alerts.front() == MakeAlert(cNobodyTakesIt);
            EXPECT_TRUE(isHandedOff || party.alerts.front().startsWith(MakeFramedAlert("").trimmed()));
            EXPECT_TRUE(isHandedOff || row.answer != HostAnswer::Raises || row.isAtBoundary ||
                        party.alerts.front().endsWith("\nRaised by the host"_q));
            EXPECT_TRUE(isHandedOff || isDisturbed);
            goneOn += isDisturbed && isHandedOff;
            CheckWhatIsLeft(party);
        }
        EXPECT_GT(call, 20);
        EXPECT_EQ(goneOn, row.goesOn) << int(row.kind) << int(row.answer) << row.nonsense << row.isAtBoundary;
    }
}

// The host shows its progress in more than the commands: opening and saving may take one, too.
TEST_F(ExportFailuresTest, WhatTheUserCancelsEndsWithoutAnAlertInWhicheverOperation)
{
    const std::pair<ExportKind, Op> cases[] = {{ExportKind::Document, Op::SaveDocument},
                                               {ExportKind::Document, Op::CreateReport},
                                               {ExportKind::Book, Op::OpenDocument},
                                               {ExportKind::Book, Op::SaveBook}};
    for (const auto& [kind, cancelled] : cases) {
        // At the boundary what was cancelled has failed, even where all of it was done.
        for (const auto& [isAtBoundary, answer] : {std::pair(false, HostAnswer::Fails),
                                                   {false, HostAnswer::Raises},
                                                   {true, HostAnswer::Fails},
                                                   {true, HostAnswer::Raises},
                                                   {true, HostAnswer::Works}}) {
            SCOPED_TRACE(testing::Message()
                         << GetName(cancelled).toStdString() << isAtBoundary << int(answer));
            GFileSystemBase::TryToRemoveFolder(GetTemporary());
            ExportParty party(kind);
            if (isAtBoundary)
                party.UseBoundary();
            party.host.documents.front().isSaved = false;
            party.host.books.front().isModified = true;
            party.host.Make(cancelled, answer);
            party.host.onAsk = [&, op = cancelled](Op asked) {
                if (asked == op)
                    party.host.CancelByUser();
            };
            party.Export(key);
            EXPECT_EQ(party.alerts, QStringList());
            EXPECT_EQ(party.action.GetPackagePath().IsEmpty(), cancelled != Op::CreateReport);
            CheckWhatIsLeft(party);
            CheckDocumentsAreAsTheyWere(party);
        }
    }
}

TEST_F(ExportFailuresTest, EachOtherFailureHasItsAlertAndEndsTheExport)
{
    using Prepare = std::function<void(ExportParty&)>;
    struct Case
    {
        const char* name;
        ExportKind kind;
        Prepare prepare;
        QStringList alerts;
        const char* range = nullptr;
    };
    constexpr ExportKind document = ExportKind::Document;
    constexpr ExportKind book = ExportKind::Book;
    const auto framed = [](const char* text) { return QStringList{MakeFramedAlert(text)}; };
    const auto none = [](ExportParty&) {};
    const auto miss = [](const QStringList& fonts, size_t first, size_t last) -> Prepare {
        return [=](ExportParty& party) {
            for (size_t at = first; at <= last; ++at)
                party.host.documents[at].missingFonts = fonts;
        };
    };
    const auto cancel = [](std::optional<Op> failure) -> Prepare {
        return [failure](ExportParty& party) {
            party.host.onRun = [&party] { party.host.CancelByUser(); };
            if (failure)
                party.host.Make(*failure, HostAnswer::Fails);
        };
    };
    const auto list = [](const QStringList& names) -> Prepare {
        return [names](ExportParty& party) {
            QStringList& paths = party.host.books.front().documentPaths;
            paths = names;
            paths.replaceInStrings("*"_q, party.host.documents.at(1).path);
        };
    };
    // What a command has made, spoilt before it says success.
    const auto spoil = [](const char* name, const std::function<void(const QString&)>& change) -> Prepare {
        return [=](ExportParty& party) {
            party.host.onMade = [=](const QString& path) {
                if (!path.endsWith(QLatin1String(name)))
                    return;
                QFileInfo(path).isDir() ? QDir(path).removeRecursively() : QFile::remove(path);
                change(path);
            };
        };
    };
    const auto leaveNothing = [](const QString&) {};
    const auto makeFolder = [](const QString& path) { QDir().mkpath(path); };
    const auto write = [](const QByteArray& content) {
        return [content](const QString& path) { WriteFile(path, content); };
    };
    const QString elsewhere = GetSandbox().GetPath("Elsewhere"_q);
    QDir().mkpath(elsewhere);
    WriteFile(elsewhere + "/a.pdf"_q, "%PDF-1.4");
    const auto link = [](const QString& target) {
        return [target](const QString& path) { QFile::link(target, path); };
    };
    const QStringList noSetting = {MakeAlert("Unable to retrieve PDF setting: Press"_q)};
    const QStringList taken = {MakeAlert(cNobodyTakesIt)};
    const QString archive = HopboxRegistry::GetSettingsFolder()
                                .GetChild(QString::number(qHash("Press"_q)) + "/Project.hopbox"_q)
                                .GetNativePath();
    const Case cases[] = {
        {"a range outside the document", document, none, framed(cNoPages), "1-2,4"},
        {"a range that is none", document, none, framed(cNoPages), ""},
        {"no pages", document, [](ExportParty& party) { party.host.documents.front().pageCount = 0; },
         framed(cNoPages)},
        {"one font", document, miss("Arial"_list, 0, 0),
         framed("Font is Missing! Correct the following font and try again:\n    1. Arial\n")},
        {"three fonts", document, miss("Arial|%1|Times"_list, 0, 0),
         framed("Fonts are Missing! Correct the following fonts and try again:\n    1. Arial\n"
                "    2. %1\n    3. Times\n")},
        {"no document", document, [](ExportParty& party) { party.host.documents.clear(); },
         framed(cNoDocument)},
        {"a font in a book", book, miss("Arial"_list, 2, 2),
         framed("Font is Missing! Correct the following font and try again:\nc.indd : \n    1. Arial\n")},
        {"two fonts in a book", book, miss("Arial|Times"_list, 2, 2),
         framed("Fonts are Missing! Correct the following fonts and try again:\nc.indd : \n    1. Arial\n"
                "    2. Times\n")},
        {"a font in each of two documents", book, miss("Arial"_list, 1, 2),
         framed("Fonts are Missing! Correct the following fonts and try again:\nb.indd : \n    1. Arial\n"
                "\nc.indd : \n    1. Arial\n")},
        {"a document that is not there", book, list("*|none.indd"_list), framed(cNotOpened)},
        {"a document listed twice", book, list("*|*"_list), taken},
        {"an empty book", book, list({}), taken},
        {"no book", book, [](ExportParty& party) { party.host.books.clear(); }, framed(cInvalidBook)},
        {"cancelled", document, cancel(Op::RunPDFExport), {}},
        {"a package cancelled", document, cancel(Op::ExecutePackage), {}},
        {"a book cancelled", book, cancel(Op::RunBookExport), {}},
        {"cancelled too late", document, cancel(std::nullopt), taken},
        {"no PDF", document, spoil(".pdf", leaveNothing), framed(cFailed)},
        {"an empty PDF", document, spoil(".pdf", write("")), framed(cFailed)},
        {"another file", document, spoil(".pdf", write("%!PS-Adobe-3.0 PDF")), framed(cFailed)},
        {"a folder for a PDF", document, spoil(".pdf", makeFolder), framed(cFailed)},
        {"a link for a PDF", document, spoil(".pdf", link(elsewhere + "/a.pdf"_q)), framed(cFailed)},
        {"no PDF of a book", book, spoil(".pdf", leaveNothing), framed(cNoCommand)},
        {"no package", document, spoil(" Folder", leaveNothing), framed(cPackageFailed)},
        {"an empty package", document, spoil(" Folder", makeFolder), framed(cPackageFailed)},
        {"a package of a hidden file", document,
         spoil(" Folder", [](const QString& path) { WriteFile(path + "/.a"_q, "a"); }), taken},
        {"a file for a package", document, spoil(" Folder", write("zip")), framed(cPackageFailed)},
        {"a link for a package", document, spoil(" Folder", link(elsewhere)), framed(cPackageFailed)},
        {"an empty package of a book", book, spoil(" Folder", makeFolder), framed(cPackageFailed)},
        {"an action that is not active", document, [](ExportParty& party) { party.action.SetActive(false); },
         framed(cFailed)},
        {"no archive", document, [&](ExportParty&) { QFile::remove(archive); }, noSetting},
        {"an archive that is none", document, [&](ExportParty&) { WriteFile(archive, "zip"); }, noSetting},
        {"no entry",
         document,
         [&](ExportParty&) { EXPECT_TRUE(HopboxRegistry().RemoveEntry(key)); },
         {MakeAlert("Unable to retrieve PDF setting: "_q + key)}}};
    for (const Case& row : cases) {
        SCOPED_TRACE(row.name);
        GFileSystemBase::TryToRemoveFolder(GetTemporary());
        ExportParty party(row.kind);
        row.prepare(party);
        party.Export(key, [&](GCPTSaveAsTool& tool) {
            if (row.range != nullptr)
                tool.SetPageRange(QString::fromLatin1(row.range));
        });
        EXPECT_EQ(party.alerts, row.alerts);
        EXPECT_EQ(!party.action.GetPackagePath().IsEmpty(), row.alerts == taken);
        CheckWhatIsLeft(party);
        if (row.kind == book)
            CheckDocumentsAreAsTheyWere(party);
    }
}
