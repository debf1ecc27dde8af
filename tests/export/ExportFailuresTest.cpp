#include "ExportFailuresFixture.h"

#include <algorithm>

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
            GFileSystemBase::DropFolder(GetTemporary());
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
            GFileSystemBase::DropFolder(GetTemporary());
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
            GFileSystemBase::DropFolder(GetTemporary());
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
