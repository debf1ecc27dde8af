#include "export/BookSource.h"

#include "export/DocumentSource.h"
#include "plugin/host/HostCalls.h"
#include "plugin/messages/MessageCodes.h"

HostPtr<IBook> BookSource::QueryActive()
{
    const HostPtr<ISession> session = GetExecutionContextSession();
    const HostPtr<IBookManager> books = session ? session->QueryBookManager() : HostPtr<IBookManager>();
    return books && books->GetBookCount() > 0 ? books->QueryActiveBook() : HostPtr<IBook>();
}

uint32_t BookSource::FindActive(HostPtr<IBook>& book)
{
    if (!QueryActive())
        return PlugInMessage::cBookInvalid;
    book = QueryActive();
    return book ? 0 : PlugInMessage::cNoBook;
}

bool BookSource::HasDocuments(const IBook& book)
{
    const HostPtr<IBookContent> content = book.QueryContent();
    return content && content->GetDocumentCount() > 0;
}

GString BookSource::GetOutputName(const IBook& book)
{
    const PMString file = book.GetFile().GetFileName();
    return DocumentSource::GetOutputName((file.IsEmpty() ? book.GetName() : file).GetString());
}
