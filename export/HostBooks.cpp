#include "export/HostBooks.h"

#include "export/HostDocuments.h"
#include "plugin/host/HostCalls.h"
#include "plugin/messages/MessageCodes.h"

HostPtr<IBook> HostBooks::QueryActive()
{
    const HostPtr<ISession> session = GetExecutionContextSession();
    const HostPtr<IBookManager> books = session ? session->QueryBookManager() : HostPtr<IBookManager>();
    return books && books->GetBookCount() > 0 ? books->QueryActiveBook() : HostPtr<IBook>();
}

uint32_t HostBooks::FindActive(HostPtr<IBook>& book)
{
    if (!QueryActive())
        return PlugInMessage::cBookInvalid;
    book = QueryActive();
    return book ? 0 : PlugInMessage::cNoBook;
}

bool HostBooks::HasDocuments(const IBook& book)
{
    const HostPtr<IBookContent> content = book.QueryContent();
    return content && content->GetDocumentCount() > 0;
}

GString HostBooks::GetOutputName(const IBook& book)
{
    return HostDocuments::GetOutputName(book.GetFile().GetFileName().GetString());
}
