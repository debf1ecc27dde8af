#include "plugin/boundary/HostTable.h"

#include "plugin/boundary/BoundaryText.h"
#include "plugin/boundary/HostTableCommands.h"
#include "plugin/boundary/HostTableGuard.h"

#include <stdexcept>

namespace
{
using Object = HostTable::Object;

void Release(void* host, hopbox_handle object)
{
    Guard(host, [&](HostTable& table) {
        table.Release(object);
        return HOPBOX_OK;
    });
}

IDFile ReadFile(const hopbox_text* path)
{
    return IDFile(PMString(Boundary::Read(path)));
}

hopbox_result PutFile(const hopbox_sink* sink, const IDFile& file)
{
    if (file.IsEmpty())
        return HOPBOX_NONE;
    Boundary::Put(sink, FileUtils::SysFileToPMString(file).GetString());
    return HOPBOX_OK;
}

// Gives a number; `otherwise` where it is none, and its place stays as it is then.
template <class Number>
hopbox_result Give(Number& place, Number number, Number none, hopbox_result otherwise)
{
    if (number == none)
        return otherwise;
    place = number;
    return HOPBOX_OK;
}

template <class Interface>
hopbox_result GiveObject(HostTable& table, HostPtr<Interface> Object::*kind, HostPtr<Interface> found,
                         hopbox_handle* handle)
{
    if (!found)
        return HOPBOX_NONE;
    Object object;
    object.*kind = std::move(found);
    hopbox_handle& place = Out(handle);
    place = table.Keep(std::move(object));
    return HOPBOX_OK;
}

// --- The application ---

int32_t GetUnit(void* host, int32_t* unit)
{
    return Guard(host, [&](HostTable& table) {
        const auto settings = table.GetServices().QueryUnitPreferences(nullptr);
        if (!settings)
            return HOPBOX_NONE;
        switch (settings->GetHorizontalUnit()) {
            case HostUnitID::cPicas:
                Out(unit) = HOPBOX_PICAS;
                break;
            case HostUnitID::cInches:
            case HostUnitID::cDecimalInches:
                Out(unit) = HOPBOX_INCHES;
                break;
            case HostUnitID::cCentimetres:
                Out(unit) = HOPBOX_CENTIMETRES;
                break;
            case HostUnitID::cMillimetres:
                Out(unit) = HOPBOX_MILLIMETRES;
                break;
            default:
                Out(unit) = HOPBOX_POINTS;
        }
        return HOPBOX_OK;
    });
}

int32_t ShowAlert(void* host, const hopbox_text* text, const hopbox_text buttons[3], int32_t defaultButton,
                  int32_t cancelButton, int32_t* pressed)
{
    return Guard(host, [&](HostTable& table) {
        const auto read = [](const hopbox_text* label) {
            return PMString::Untranslated(Boundary::Read(label));
        };
        int32_t& place = Out(pressed);
        const int32_t button = table.GetServices().ModalAlert(
            read(text), read(&buttons[0]), read(&buttons[1]), read(&buttons[2]), defaultButton, cancelButton);
        return Give(place, button, 0, HOPBOX_FAILED);
    });
}

int32_t BeginModal(void* host, uint64_t* token)
{
    return Guard(host, [&](HostTable& table) {
        const auto modal = table.GetServices().QueryModalUtils();
        uint64_t& place = Out(token);
        return Give(place, modal ? modal->AcquireModalToken() : cNoModalToken, cNoModalToken, HOPBOX_NONE);
    });
}

void EndModal(void* host, uint64_t token)
{
    Guard(host, [&](HostTable& table) {
        if (const auto modal = table.GetServices().QueryModalUtils())
            modal->HandBackModalToken(token);
        return HOPBOX_OK;
    });
}

// --- Menus ---

HostPtr<IActionManager> QueryActions(const HostTable& table)
{
    const auto session = table.GetServices().QuerySession();
    const auto application = session ? session->QueryApplication() : HostPtr<IApplication>();
    return application ? application->QueryActionManager() : HostPtr<IActionManager>();
}

// A host without menus makes its entries itself.
int32_t IsActionKnown(void* host, int32_t action, int32_t* isKnown)
{
    return Guard(host, [&](HostTable& table) {
        const auto actions = QueryActions(table);
        if (!actions || !actions->QueryMenuManager())
            return HOPBOX_UNSUPPORTED;
        Out(isKnown) = actions->IsActionKnown(action);
        return HOPBOX_OK;
    });
}

int32_t AddAction(void* host, int32_t action, const hopbox_text* area)
{
    return Guard(host, [&](HostTable& table) {
        const PMString key = PMString::Untranslated(Boundary::Read(area));
        if (const auto actions = QueryActions(table))
            actions->AddAction(PlugInID::cActionComponent, action, PMString::Untranslated(GString()), key,
                               ActionFlags());
        return HOPBOX_OK;
    });
}

int32_t AddMenuItem(void* host, int32_t action, const hopbox_text* menu, double position)
{
    return Guard(host, [&](HostTable& table) {
        const PMString path = PMString::Untranslated(Boundary::Read(menu));
        const auto actions = QueryActions(table);
        if (const auto menus = actions ? actions->QueryMenuManager() : HostPtr<IMenuManager>())
            menus->AddMenuItem(action, path, position, MenuItemFlags());
        return HOPBOX_OK;
    });
}

// --- Documents ---

int32_t GetFrontDocument(void* host, hopbox_handle* document)
{
    return Guard(host, [&](HostTable& table) {
        const auto layout = table.GetServices().QueryLayoutUtils();
        return GiveObject(table, &Object::document,
                          layout ? layout->QueryFrontDocument() : HostPtr<IDocument>(), document);
    });
}

int32_t FindOpenDocument(void* host, const hopbox_text* path, hopbox_handle* document)
{
    return Guard(host, [&](HostTable& table) {
        const auto utils = table.GetServices().QueryDocumentUtils();
        return GiveObject(table, &Object::document,
                          utils ? utils->FindOpenDocument(ReadFile(path)) : HostPtr<IDocument>(), document);
    });
}

int32_t OpenDocument(void* host, const hopbox_text* path, hopbox_handle* document)
{
    return GuardCommand(host, [&](HostTable& table, const CancelWatch& watch) {
        const auto utils = table.GetServices().QueryDocumentUtils();
        HostPtr<IDocument> opened;
        const ErrorCode result = utils ? utils->OpenDocument(ReadFile(path), opened) : cFailure;
        const bool isGiven = result == cSuccess && !watch.IsCancelled();
        if (!isGiven && opened)
            utils->CloseDocument(*opened, CloseFlags());
        return isGiven ? GiveObject(table, &Object::document, opened, document) : HOPBOX_FAILED;
    });
}

int32_t CloseDocument(void* host, hopbox_handle document)
{
    return Guard(host, [&](HostTable& table) {
        const auto utils = table.GetServices().QueryDocumentUtils();
        return ToResult(utils ? utils->CloseDocument(table.Get(document, &Object::document), CloseFlags())
                              : cFailure);
    });
}

int32_t SaveDocument(void* host, hopbox_handle document)
{
    return GuardCommand(host, [&](HostTable& table, const CancelWatch&) {
        const auto utils = table.GetServices().QueryDocumentUtils();
        return ToResult(utils ? utils->SaveDocument(table.Get(document, &Object::document)) : cFailure);
    });
}

int32_t IsDocumentSaved(void* host, hopbox_handle document, int32_t* isSaved)
{
    return Guard(host, [&](HostTable& table) {
        Out(isSaved) = table.Get(document, &Object::document).IsSaved();
        return HOPBOX_OK;
    });
}

int32_t GetDocumentFile(void* host, hopbox_handle document, const hopbox_sink* path)
{
    return Guard(host, [&](HostTable& table) {
        return PutFile(path, table.Get(document, &Object::document).GetFile());
    });
}

int32_t GetDocumentName(void* host, hopbox_handle document, const hopbox_sink* name)
{
    return Guard(host, [&](HostTable& table) {
        Boundary::Put(name, table.Get(document, &Object::document).GetName().GetString());
        return HOPBOX_OK;
    });
}

int32_t GetPageCount(void* host, hopbox_handle document, int32_t* count)
{
    return Guard(host, [&](HostTable& table) {
        const auto pages = table.Get(document, &Object::document).QueryPageList();
        if (!pages)
            return HOPBOX_NONE;
        Out(count) = pages->GetPageCount();
        return HOPBOX_OK;
    });
}

int32_t GetPage(void* host, hopbox_handle document, int32_t index, uint32_t* page)
{
    return Guard(host, [&](HostTable& table) {
        const auto pages = table.Get(document, &Object::document).QueryPageList();
        return Give(Out(page), pages ? pages->GetNthPage(index) : cNoUID, cNoUID, HOPBOX_NONE);
    });
}

int32_t GetPagesOfRange(void* host, hopbox_handle document, const hopbox_text* range,
                        const hopbox_page_sink* sink)
{
    return Guard(host, [&](HostTable& table) {
        const IDocument& source = table.Get(document, &Object::document);
        const auto list = source.QueryPageList();
        if (sink == nullptr || sink->put == nullptr)
            return HOPBOX_FAILED;
        UIDList pages(source.GetDataBase());
        if (!list || list->GetPageUIDs(PMString::Untranslated(Boundary::Read(range)), pages) != cSuccess)
            return HOPBOX_FAILED;
        for (int index = 0; index < pages.Length(); ++index) {
            const uint32_t page = pages[index];
            sink->put(sink->context, &page, 1);
        }
        return HOPBOX_OK;
    });
}

int32_t GetMissingFonts(void* host, hopbox_handle document, const hopbox_sink* names)
{
    return Guard(host, [&](HostTable& table) {
        const auto fonts = table.Get(document, &Object::document).QueryFontList();
        if (!fonts)
            return HOPBOX_NONE;
        fonts->Update();
        const int32_t count = HostFault::CheckCount(fonts->GetMissingFontCount());
        for (int32_t index = 0; index < count; ++index)
            Boundary::Put(names, fonts->GetNthMissingFontName(index).GetString());
        return HOPBOX_OK;
    });
}

// --- Books ---

int32_t GetActiveBook(void* host, hopbox_handle* book)
{
    return Guard(host, [&](HostTable& table) {
        const auto session = table.GetServices().QuerySession();
        const auto books = session ? session->QueryBookManager() : HostPtr<IBookManager>();
        return GiveObject(table, &Object::book,
                          books && books->GetBookCount() > 0 ? books->QueryActiveBook() : HostPtr<IBook>(),
                          book);
    });
}

int32_t GetBookFile(void* host, hopbox_handle book, const hopbox_sink* path)
{
    return Guard(host,
                 [&](HostTable& table) { return PutFile(path, table.Get(book, &Object::book).GetFile()); });
}

int32_t GetBookName(void* host, hopbox_handle book, const hopbox_sink* name)
{
    return Guard(host, [&](HostTable& table) {
        Boundary::Put(name, table.Get(book, &Object::book).GetName().GetString());
        return HOPBOX_OK;
    });
}

int32_t IsBookModified(void* host, hopbox_handle book, int32_t* isModified)
{
    return Guard(host, [&](HostTable& table) {
        Out(isModified) = table.Get(book, &Object::book).IsModified();
        return HOPBOX_OK;
    });
}

int32_t SaveBook(void* host, hopbox_handle book)
{
    return GuardCommand(host, [&](HostTable& table, const CancelWatch&) {
        return ToResult(table.Get(book, &Object::book).Save());
    });
}

int32_t GetBookDocumentCount(void* host, hopbox_handle book, int32_t* count)
{
    return Guard(host, [&](HostTable& table) {
        const auto content = table.Get(book, &Object::book).QueryContent();
        if (!content)
            return HOPBOX_NONE;
        Out(count) = content->GetDocumentCount();
        return HOPBOX_OK;
    });
}

int32_t GetBookDocumentFile(void* host, hopbox_handle book, int32_t index, const hopbox_sink* path)
{
    return Guard(host, [&](HostTable& table) {
        const auto content = table.Get(book, &Object::book).QueryContent();
        return content ? PutFile(path, content->GetNthDocumentFile(index)) : HOPBOX_NONE;
    });
}

hopbox_host_table MakeTable()
{
    hopbox_host_table table = {};
    table.size = sizeof table;
    table.version = HOPBOX_VERSION;
    table.release = Release;
    table.get_unit = GetUnit;
    table.show_alert = ShowAlert;
    table.begin_modal = BeginModal;
    table.end_modal = EndModal;
    table.is_action_known = IsActionKnown;
    table.add_action = AddAction;
    table.add_menu_item = AddMenuItem;
    table.get_front_document = GetFrontDocument;
    table.find_open_document = FindOpenDocument;
    table.open_document = OpenDocument;
    table.close_document = CloseDocument;
    table.is_document_saved = IsDocumentSaved;
    table.save_document = SaveDocument;
    table.get_document_file = GetDocumentFile;
    table.get_document_name = GetDocumentName;
    table.get_page_count = GetPageCount;
    table.get_page = GetPage;
    table.get_pages_of_range = GetPagesOfRange;
    table.get_missing_fonts = GetMissingFonts;
    table.get_active_book = GetActiveBook;
    table.get_book_file = GetBookFile;
    table.get_book_name = GetBookName;
    table.is_book_modified = IsBookModified;
    table.save_book = SaveBook;
    table.get_book_document_count = GetBookDocumentCount;
    table.get_book_document_file = GetBookDocumentFile;
    HostTableCommands::AddTo(table);
    return table;
}
}  // namespace

const hopbox_host_table& HostTable::GetTable()
{
    static const hopbox_host_table table = MakeTable();
    return table;
}

IPackageCommand* HostTable::Object::GetPackage() const
{
    if (documentPackage)
        return documentPackage.Get();
    return bookPackage.Get();
}

hopbox_handle HostTable::Keep(Object object)
{
    mObjects.emplace(++mLast, std::move(object));
    return mLast;
}

void HostTable::Release(hopbox_handle handle)
{
    mObjects.erase(handle);
}

HostTable::Object& HostTable::Get(hopbox_handle handle)
{
    const auto found = mObjects.find(handle);
    if (found == mObjects.end())
        RaiseBadHandle();
    return found->second;
}

void HostTable::RaiseBadHandle()
{
    throw std::invalid_argument("A handle at the boundary stands for nothing of that kind.");
}
