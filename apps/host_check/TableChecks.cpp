#include "apps/host_check/TableChecks.h"

#include "apps/host_check/CheckReport.h"
#include "apps/host_check/FrontDocument.h"
#include "apps/host_check/HeldHandle.h"
#include "apps/host_check/TextTaker.h"
#include "plugin/boundary/BoundaryText.h"
#include "plugin/boundary/hopbox_adaptor.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace
{
using Table = hopbox_host_table;
using Handle = hopbox_handle;
using Boundary::PassedText;

constexpr const char* cNeeded = nullptr;

// What is without an operation; needed ones have no such text.
struct Operation
{
    const char* name;
    size_t place;
    const char* consequence;
};
const Operation cOperations[] = {
    {"release", offsetof(Table, release), "handles are not counted"},
    {"get_unit", offsetof(Table, get_unit), "lengths show in points"},
    {"show_alert", offsetof(Table, show_alert), "there is no About box"},
    {"begin_modal", offsetof(Table, begin_modal), "the host does not rest while a dialog is open"},
    {"end_modal", offsetof(Table, end_modal), "the host does not rest while a dialog is open"},
    {"add_action", offsetof(Table, add_action), "actions have no place where the user edits shortcuts"},
    {"add_menu_item", offsetof(Table, add_menu_item), "the host makes its menu entries itself"},
    {"get_front_document", offsetof(Table, get_front_document), cNeeded},
    {"find_open_document", offsetof(Table, find_open_document), "a book's open documents are not found"},
    {"open_document", offsetof(Table, open_document), "a book's closed documents can't be exported"},
    {"close_document", offsetof(Table, close_document), "a book's closed documents stay open"},
    {"is_document_saved", offsetof(Table, is_document_saved), "documents count as saved"},
    {"save_document", offsetof(Table, save_document), "changed documents can't be exported"},
    {"get_document_file", offsetof(Table, get_document_file), "the PDF is named after the document's name"},
    {"get_document_name", offsetof(Table, get_document_name), "a document without a file has no name"},
    {"get_page_count", offsetof(Table, get_page_count), cNeeded},
    {"get_page", offsetof(Table, get_page), cNeeded},
    {"get_pages_of_range", offsetof(Table, get_pages_of_range), "a range of pages can't be exported"},
    {"get_missing_fonts", offsetof(Table, get_missing_fonts), cNeeded},
    {"get_active_book", offsetof(Table, get_active_book), "there are no books"},
    {"get_book_file", offsetof(Table, get_book_file), "a book's PDF is named after the book's name"},
    {"get_book_name", offsetof(Table, get_book_name), "a book without a file has no name"},
    {"is_book_modified", offsetof(Table, is_book_modified), "books count as saved"},
    {"save_book", offsetof(Table, save_book), "changed books can't be saved before an export"},
    {"get_book_document_count", offsetof(Table, get_book_document_count), "there are no books"},
    {"get_book_document_file", offsetof(Table, get_book_document_file), "there are no books"},
    {"create_command", offsetof(Table, create_command), cNeeded},
    {"read_job_options", offsetof(Table, read_job_options), cNeeded},
    {"set_switch", offsetof(Table, set_switch), "no mark and no slug can be set"},
    {"set_length", offsetof(Table, set_length), "bleed and marks have no lengths"},
    {"get_spreads", offsetof(Table, get_spreads), "pages of a spread stay apart"},
    {"set_spreads", offsetof(Table, set_spreads), "pages of a spread stay apart"},
    {"set_output", offsetof(Table, set_output), cNeeded},
    {"set_pages", offsetof(Table, set_pages), cNeeded},
    {"set_name", offsetof(Table, set_name), "the PDF has no title"},
    {"set_document", offsetof(Table, set_document), "documents can't be packaged"},
    {"set_book", offsetof(Table, set_book), "there are no books"},
    {"set_package_setting", offsetof(Table, set_package_setting), "packages are made without settings"},
    {"run_command", offsetof(Table, run_command), cNeeded},
    {"write_report", offsetof(Table, write_report), "documents can't be packaged"}};

bool Has(const Table& table, const Operation& operation)
{
    void* function = nullptr;
    std::memcpy(&function, reinterpret_cast<const char*>(&table) + operation.place, sizeof function);
    return function != nullptr;
}

bool IsRefused(int32_t result)
{
    return result != HOPBOX_OK;
}
}  // namespace

TableChecks::TableChecks(const hopbox_adaptor& adaptor, const WatchedHost& host, const QString& folder,
                         CheckReport& report)
    : mAdaptor(adaptor), mHost(host), mFolder(folder), mReport(report)
{
}

bool TableChecks::CheckTable()
{
    Table known;
    const bool isTable = Boundary::Copy(mAdaptor.table, known);
    mReport.Expect(isTable, "table", QStringLiteral("it bears its size and version %1").arg(HOPBOX_VERSION));
    if (!isTable)
        return false;
    bool isUsable = true;
    for (const Operation& operation : cOperations) {
        const bool isThere = Has(known, operation);
        if (operation.consequence == cNeeded) {
            mReport.Expect(isThere, operation.name, QStringLiteral("every adaptor has it"));
            isUsable = isUsable && isThere;
        } else if (!isThere) {
            mReport.Lack(operation.name, QString::fromLatin1(operation.consequence));
        }
    }
    const auto lackHand = [&](bool isThere, const char* name, const char* what) {
        if (!isThere)
            mReport.Lack(name, QString::fromLatin1(what));
    };
    lackHand(mAdaptor.count_handles, "count_handles", "whether handles come back is not tried");
    lackHand(mAdaptor.cancel_next, "cancel_next", "cancelling is not tried");
    lackHand(mAdaptor.open_unsaved, "open_unsaved", "saving is not tried");
    lackHand(mAdaptor.answer_alert, "answer_alert", "alerts are not tried");
    lackHand(mAdaptor.is_resting, "is_resting", "whether the host rests is not tried");
    if (isUsable)
        ExpectNothingOpen();
    return isUsable;
}

void TableChecks::ExpectNothingOpen()
{
    HeldHandle document(mHost);
    HeldHandle book(mHost);
    mReport.Expect(mHost.Call(&Table::get_front_document, &document.value) == HOPBOX_NONE,
                   "get_front_document", QStringLiteral("HOPBOX_NONE while no document is open"));
    if (mHost.GetTable().get_active_book != nullptr)
        mReport.Expect(mHost.Call(&Table::get_active_book, &book.value) == HOPBOX_NONE, "get_active_book",
                       QStringLiteral("HOPBOX_NONE while no book is open"));
}

void TableChecks::ExpectOneText(const char* operation, int32_t result, const TextTaker& taker, bool isPath)
{
    const QString text = taker.GetTexts().value(0);
    mReport.Expect(!taker.IsFaulty() && !text.contains(QChar::ReplacementCharacter), operation,
                   QStringLiteral("the text is UTF-8, on the same thread"));
    mReport.Expect(result == HOPBOX_OK && taker.GetTexts().size() == 1, operation,
                   QStringLiteral("one text for HOPBOX_OK"));
    if (isPath)
        mReport.Expect(QDir::isAbsolutePath(text) && QFile::exists(text), operation,
                       QStringLiteral("the full path of a file that is there"));
}

void TableChecks::CheckDocument()
{
    HeldHandle document(mHost);
    HeldHandle again(mHost);
    mReport.Expect(
        mHost.Call(&Table::get_front_document, &document.value) == HOPBOX_OK && document.value != 0,
        "get_front_document", QStringLiteral("a handle that is not 0 for the sample"));
    if (document.value == 0)
        return;
    mReport.Expect(mHost.Call(&Table::get_front_document, &again.value) == HOPBOX_OK, "get_front_document",
                   QStringLiteral("the document can be had twice"));
    again.GiveBack();
    int32_t count = 0;
    mReport.Expect(mHost.Call(&Table::get_page_count, document.value, &count) == HOPBOX_OK, "release",
                   QStringLiteral("what was given twice stays until it came back twice"));
    const Table& table = mHost.GetTable();
    TextTaker file;
    TextTaker name;
    if (table.get_document_file != nullptr)
        ExpectOneText("get_document_file", mHost.Call(&Table::get_document_file, document.value, file.Get()),
                      file, true);
    if (table.get_document_name != nullptr)
        ExpectOneText("get_document_name", mHost.Call(&Table::get_document_name, document.value, name.Get()),
                      name, false);
    TextTaker fonts;
    const int32_t result = mHost.Call(&Table::get_missing_fonts, document.value, fonts.Get());
    mReport.Expect((result == HOPBOX_OK || result == HOPBOX_NONE) && !fonts.IsFaulty() &&
                       fonts.GetTexts().filter(QChar(QChar::ReplacementCharacter)).isEmpty(),
                   "get_missing_fonts", QStringLiteral("the names in UTF-8, or HOPBOX_NONE"));
    int32_t isSaved = 7;
    if (table.is_document_saved != nullptr)
        mReport.Expect(mHost.Call(&Table::is_document_saved, document.value, &isSaved) == HOPBOX_OK &&
                           (isSaved == 0 || isSaved == 1),
                       "is_document_saved", QStringLiteral("0 or 1"));
    CheckPages(document.value);
    CheckRanges(document.value);
    CheckOpening();
    if (table.find_open_document != nullptr) {
        HeldHandle found(mHost);
        const PassedText path(file.GetTexts().value(0));
        const PassedText none(mFolder + QStringLiteral("/none"));
        mReport.Expect(mHost.Call(&Table::find_open_document, &path.Get(), &found.value) == HOPBOX_OK,
                       "find_open_document", QStringLiteral("the sample by its file"));
        mReport.Expect(IsRefused(mHost.Call(&Table::find_open_document, &none.Get(), &again.value)),
                       "find_open_document", QStringLiteral("HOPBOX_NONE for a file that is not open"));
    }
}

void TableChecks::CheckOpening()
{
    if (mHost.GetTable().open_document == nullptr)
        return;
    const std::pair<const char*, QString> cases[] = {
        {"none", QStringLiteral("a file that is not there is refused")},
        {"Check.joboptions", QStringLiteral("a file that is no document is refused")}};
    for (const auto& [name, expectation] : cases) {
        HeldHandle opened(mHost);
        const PassedText path(mFolder + QLatin1Char('/') + QLatin1String(name));
        mReport.Expect(IsRefused(mHost.Call(&Table::open_document, &path.Get(), &opened.value)),
                       "open_document", expectation);
    }
}

void TableChecks::CheckPages(Handle document)
{
    int32_t count = 0;
    mReport.Expect(IsRefused(mHost.Call(&Table::get_page_count, Handle(0), &count)), "get_page_count",
                   QStringLiteral("the handle 0, which is none, is refused"));
    mReport.Expect(
        mHost.Call(&Table::get_page_count, document, &count) == HOPBOX_OK && count >= 2 && count <= 1000,
        "get_page_count", QStringLiteral("two pages or more"));
    for (int32_t index = 0; index < count; ++index) {
        uint32_t page = 0;
        mReport.Expect(mHost.Call(&Table::get_page, document, index, &page) == HOPBOX_OK && page != 0,
                       "get_page", QStringLiteral("page %1 has a number that is not 0").arg(index));
    }
    constexpr uint32_t cUntouched = 4711;
    uint32_t page = cUntouched;
    for (const int32_t index : {-1, count})
        mReport.Expect(IsRefused(mHost.Call(&Table::get_page, document, index, &page)) && page == cUntouched,
                       "get_page", QStringLiteral("index %1 is refused, and no page is given").arg(index));
}

void TableChecks::CheckRanges(Handle document)
{
    if (mHost.GetTable().get_pages_of_range == nullptr)
        return;
    uint32_t first = 0;
    uint32_t second = 0;
    int32_t count = 0;
    mHost.Call(&Table::get_page_count, document, &count);
    mHost.Call(&Table::get_page, document, 0, &first);
    mHost.Call(&Table::get_page, document, 1, &second);
    const QString beyond = QString::number(count + 1);
    const struct
    {
        QString range;
        std::vector<uint32_t> pages;  // none for a range that is refused
    } cases[] = {{QStringLiteral("1"), {first}},
                 {QStringLiteral("1-2"), {first, second}},
                 {QStringLiteral("2,1"), {second, first}},
                 {QStringLiteral("1,1"), {first, first}},
                 {QStringLiteral("1-%1").arg(beyond), {}},
                 {QStringLiteral("1,%1").arg(beyond), {}},
                 {QStringLiteral("999999999999"), {}},
                 {QStringLiteral("x"), {}},
                 {QStringLiteral("0"), {}},
                 {QStringLiteral(","), {}}};
    for (const auto& entry : cases) {
        PageTaker pages;
        const PassedText range(entry.range);
        const int32_t result = mHost.Call(&Table::get_pages_of_range, document, &range.Get(), pages.Get());
        mReport.Expect(!pages.IsFaulty(), "get_pages_of_range",
                       QStringLiteral("the pages come on the same thread"));
        mReport.Expect(
            entry.pages.empty() ? IsRefused(result) : result == HOPBOX_OK && pages.GetPages() == entry.pages,
            "get_pages_of_range",
            QStringLiteral("\"%1\" %2")
                .arg(entry.range, entry.pages.empty() ? QStringLiteral("is refused")
                                                      : QStringLiteral("gives its pages in this order")));
    }
}

void TableChecks::CheckBook()
{
    HeldHandle book(mHost);
    if (mHost.Call(&Table::get_active_book, &book.value) != HOPBOX_OK)
        return;
    int32_t count = 0;
    mReport.Expect(mHost.Call(&Table::get_book_document_count, book.value, &count) == HOPBOX_OK &&
                       count > 0 && count <= 1000,
                   "get_book_document_count", QStringLiteral("one document or more"));
    TextTaker file;
    TextTaker name;
    if (mHost.GetTable().get_book_file != nullptr)
        ExpectOneText("get_book_file", mHost.Call(&Table::get_book_file, book.value, file.Get()), file, true);
    if (mHost.GetTable().get_book_name != nullptr)
        ExpectOneText("get_book_name", mHost.Call(&Table::get_book_name, book.value, name.Get()), name,
                      false);
    for (int32_t index = 0; index < count; ++index) {
        TextTaker document;
        ExpectOneText("get_book_document_file",
                      mHost.Call(&Table::get_book_document_file, book.value, index, document.Get()), document,
                      true);
    }
    if (mHost.GetTable().is_book_modified != nullptr) {
        int32_t isModified = 7;
        mReport.Expect(mHost.Call(&Table::save_book, book.value) == HOPBOX_OK, "save_book",
                       QStringLiteral("the book is in its file"));
        mReport.Expect(
            mHost.Call(&Table::is_book_modified, book.value, &isModified) == HOPBOX_OK && isModified == 0,
            "is_book_modified", QStringLiteral("0 after save_book"));
    }
    TextTaker none;
    for (const int32_t index : {-1, count})
        mReport.Expect(IsRefused(mHost.Call(&Table::get_book_document_file, book.value, index, none.Get())),
                       "get_book_document_file", QStringLiteral("index %1 is refused").arg(index));
}

void TableChecks::CheckSaving()
{
    const Table& table = mHost.GetTable();
    if (mAdaptor.open_unsaved == nullptr || table.is_document_saved == nullptr ||
        table.save_document == nullptr)
        return;
    const QString ending = FrontDocument::GetEnding(mHost);
    for (const bool canBeSaved : {false, true}) {
        const QString path = FrontDocument::OpenUnsaved(
            mAdaptor, canBeSaved ? mFolder : mFolder + QStringLiteral("/Check.joboptions"), ending);
        HeldHandle document(mHost);
        mReport.Expect(FrontDocument::IsSaved(mHost) == 0, "is_document_saved",
                       QStringLiteral("0 for a document that is not saved"));
        if (mHost.Call(&Table::get_front_document, &document.value) != HOPBOX_OK)
            return;
        TextTaker file;
        if (table.get_document_file != nullptr &&
            mHost.Call(&Table::get_document_file, document.value, file.Get()) != HOPBOX_NONE)
            ExpectOneText("get_document_file", HOPBOX_OK, file, true);
        const bool isSaved = mHost.Call(&Table::save_document, document.value) == HOPBOX_OK;
        mReport.Expect(isSaved == canBeSaved && QFile::exists(path) == canBeSaved, "save_document",
                       canBeSaved ? QStringLiteral("the document is in its file")
                                  : QStringLiteral("a place that can't be written is a failure"));
        mReport.Expect(FrontDocument::IsSaved(mHost) == int32_t(canBeSaved), "is_document_saved",
                       QStringLiteral("as the save went"));
    }
}

void TableChecks::CheckClosing()
{
    const Table& table = mHost.GetTable();
    const PassedText path(FrontDocument::GetFile(mHost));
    mReport.Expect(mAdaptor.close_all(mAdaptor.host) == HOPBOX_OK, "close_all",
                   QStringLiteral("what is open closes"));
    ExpectNothingOpen();
    if (table.open_document == nullptr || table.close_document == nullptr ||
        table.find_open_document == nullptr || path.Get().length == 0)
        return;
    HeldHandle opened(mHost);
    HeldHandle found(mHost);
    mReport.Expect(mHost.Call(&Table::open_document, &path.Get(), &opened.value) == HOPBOX_OK,
                   "open_document", QStringLiteral("a closed document opens by its file"));
    HeldHandle front(mHost);
    mReport.Expect(mHost.Call(&Table::get_front_document, &front.value) == HOPBOX_NONE, "open_document",
                   QStringLiteral("it is not in front"));
    if (opened.value == 0)
        return;
    mReport.Expect(mHost.Call(&Table::close_document, opened.value) == HOPBOX_OK &&
                       IsRefused(mHost.Call(&Table::find_open_document, &path.Get(), &found.value)),
                   "close_document", QStringLiteral("it is not open after that"));
}

void TableChecks::CheckHandles()
{
    for (const QString& operation : mHost.GetFaulty())
        mReport.Expect(false, operation.toLatin1().constData(),
                       QStringLiteral("a handle with HOPBOX_OK, and none without"));
    int32_t count = 0;
    if (mAdaptor.count_handles != nullptr)
        mReport.Expect(mAdaptor.count_handles(mAdaptor.host, &count) == HOPBOX_OK && count == 0, "release",
                       QStringLiteral("no handle is left: %1").arg(count));
}
