#include "plugin/boundary/TableDocuments.h"

#include "plugin/boundary/TableObject.h"

namespace
{
using Table = hopbox_host_table;

IDFile MakeFile(const GString& path)
{
    return path.isEmpty() ? IDFile() : IDFile(PMString(path));
}

class Pages final : public TableObject<IPageList>
{
public:
    using TableObject::TableObject;

    int32_t GetPageCount() const override
    {
        int32_t count = 0;
        return Call(&Table::get_page_count, &count) == HOPBOX_OK ? count : 0;
    }

    UID GetNthPage(int32_t index) const override
    {
        uint32_t page = cNoUID;
        return Call(&Table::get_page, index, &page) == HOPBOX_OK ? page : cNoUID;
    }

    ErrorCode GetPageUIDs(const PMString& range, UIDList& pages) const override
    {
        const Boundary::PassedText text(range.GetString());
        const Boundary::PageSink sink;
        const int32_t result =
            Call(&Table::get_pages_of_range, &text.Get(), static_cast<const hopbox_page_sink*>(sink));
        if (result != HOPBOX_OK || sink.IsFaulty())
            return cFailure;
        for (const uint32_t page : sink.GetPages())
            pages.Append(page);
        return cSuccess;
    }
};

// The host took stock when it was asked for the list.
class Fonts final : public TableObject<IFontList>
{
public:
    Fonts(const TableHost& host, const QStringList& names) : TableObject(host), mNames(names) {}

    void Update() override {}
    int32_t GetMissingFontCount() const override { return mNames.size(); }
    PMString GetNthMissingFontName(int32_t index) const override
    {
        return PMString::Untranslated(mNames.value(index));
    }

private:
    QStringList mNames;
};

class Document final : public TableObject<IDocument>
{
public:
    using TableObject::TableObject;

    bool IsSaved() const override { return Ask(&Table::is_document_saved, true, false); }
    IDFile GetFile() const override { return MakeFile(GetText(&Table::get_document_file)); }
    PMString GetName() const override { return PMString::Untranslated(GetText(&Table::get_document_name)); }

    // Only ever passed on; carries the handle, which lives as long as the document.
    const IDataBase* GetDataBase() const override
    {
        return reinterpret_cast<const IDataBase*>(static_cast<uintptr_t>(GetHandle()));
    }

    HostPtr<IPageList> QueryPageList() const override
    {
        return MakeTableObject<Pages, IPageList>(mHost, mHandle);
    }

    HostPtr<IFontList> QueryFontList() const override
    {
        const Boundary::TextSink names;
        const int32_t result = Call(&Table::get_missing_fonts, static_cast<const hopbox_sink*>(names));
        if (result == HOPBOX_NONE || result == HOPBOX_UNSUPPORTED)
            return {};
        if (result != HOPBOX_OK || names.IsFaulty())
            throw std::runtime_error(
                QT_TRANSLATE_NOOP("HostFault", "The host does not tell a document's missing fonts."));
        return MakeTableObject<Fonts, IFontList>(mHost, names.GetTexts());
    }
};

class LayoutUtils final : public TableObject<ILayoutUtils>
{
public:
    using TableObject::TableObject;

    HostPtr<IDocument> QueryFrontDocument() const override
    {
        return TakeObject<Document, IDocument>(mHost, &Table::get_front_document);
    }
};

class DocumentUtils final : public TableObject<IDocumentUtils>
{
public:
    using TableObject::TableObject;

    ErrorCode SaveDocument(IDocument& document) override
    {
        return mHost.Call(&Table::save_document, TableDocuments::GetHandle(document));
    }

    HostPtr<IDocument> FindOpenDocument(const IDFile& file) const override
    {
        const Boundary::PassedText path(FileUtils::SysFileToPMString(file).GetString());
        return TakeObject<Document, IDocument>(mHost, &Table::find_open_document, &path.Get());
    }

    ErrorCode OpenDocument(const IDFile& file, HostPtr<IDocument>& document) override
    {
        const Boundary::PassedText path(FileUtils::SysFileToPMString(file).GetString());
        hopbox_handle handle = 0;
        const int32_t result = mHost.Call(&Table::open_document, &path.Get(), &handle);
        document = TakeHandle<Document, IDocument>(mHost, result, handle);
        return result == HOPBOX_OK || result == HOPBOX_NONE ? cSuccess : cFailure;
    }

    ErrorCode CloseDocument(IDocument& document, const CloseFlags&) override
    {
        return mHost.CallAside(&Table::close_document, TableDocuments::GetHandle(document));
    }
};

// The host counted when it was asked for the content.
class Content final : public TableObject<IBookContent>
{
public:
    Content(const TableHost& host, const TableHandlePtr& book, int32_t count)
        : TableObject(host, book), mCount(count)
    {
    }

    int32_t GetDocumentCount() const override { return mCount; }

    IDFile GetNthDocumentFile(int32_t index) const override
    {
        return MakeFile(GetText(&Table::get_book_document_file, index));
    }

private:
    int32_t mCount;
};

class Book final : public TableObject<IBook>
{
public:
    using TableObject::TableObject;

    IDFile GetFile() const override { return MakeFile(GetText(&Table::get_book_file)); }
    PMString GetName() const override { return PMString::Untranslated(GetText(&Table::get_book_name)); }
    bool IsModified() const override { return Ask(&Table::is_book_modified, false, true); }
    ErrorCode Save() override { return Call(&Table::save_book); }

    // A book whose documents are not known must not pass for an empty one.
    HostPtr<IBookContent> QueryContent() const override
    {
        int32_t count = 0;
        const int32_t result = Call(&Table::get_book_document_count, &count);
        if (result == HOPBOX_NONE || result == HOPBOX_UNSUPPORTED)
            return {};
        if (result != HOPBOX_OK)
            throw std::runtime_error(
                QT_TRANSLATE_NOOP("HostFault", "The host does not tell a book's documents."));
        return MakeTableObject<Content, IBookContent>(mHost, mHandle, count);
    }
};

class BookManager final : public TableObject<IBookManager>
{
public:
    using TableObject::TableObject;

    // The number beyond one is of no interest to the plug-in.
    int32_t GetBookCount() const override { return mHost.Has(&Table::get_active_book) ? 1 : 0; }

    HostPtr<IBook> QueryActiveBook() const override
    {
        return TakeObject<Book, IBook>(mHost, &Table::get_active_book);
    }
};
}  // namespace

HostPtr<ILayoutUtils> TableDocuments::MakeLayoutUtils(const TableHost& host)
{
    return MakeTableObject<LayoutUtils, ILayoutUtils>(host);
}

HostPtr<IDocumentUtils> TableDocuments::MakeDocumentUtils(const TableHost& host)
{
    return MakeTableObject<DocumentUtils, IDocumentUtils>(host);
}

HostPtr<IBookManager> TableDocuments::MakeBookManager(const TableHost& host)
{
    return MakeTableObject<BookManager, IBookManager>(host);
}

hopbox_handle TableDocuments::GetHandle(const IDocument& document)
{
    return static_cast<const Document&>(document).GetHandle();
}

hopbox_handle TableDocuments::GetHandle(const IDataBase* database)
{
    return reinterpret_cast<uintptr_t>(database);
}

hopbox_handle TableDocuments::GetHandle(const IBook& book)
{
    return static_cast<const Book&>(book).GetHandle();
}
