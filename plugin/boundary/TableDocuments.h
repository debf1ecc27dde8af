#pragma once

#include "plugin/boundary/hopbox_host.h"
#include "plugin/host/IBook.h"
#include "plugin/host/IHostUtils.h"

class TableHost;

// Documents and books over a host's table.
namespace TableDocuments
{
HostPtr<ILayoutUtils> MakeLayoutUtils(const TableHost& host);
HostPtr<IDocumentUtils> MakeDocumentUtils(const TableHost& host);
HostPtr<IBookManager> MakeBookManager(const TableHost& host);

// The handles behind the objects that these have handed out; of a document by the database of its pages, too.
hopbox_handle GetHandle(const IDocument& document);
hopbox_handle GetHandle(const IDataBase* database);
hopbox_handle GetHandle(const IBook& book);
}  // namespace TableDocuments
