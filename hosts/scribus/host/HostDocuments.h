#pragma once

#include "plugin/host/IHostUtils.h"

#include <memory>

class ScribusDocument;
class ScribusHost;

// Documents as a plug-in sees them.
namespace HostDocuments
{
HostPtr<ILayoutUtils> MakeLayoutUtils(ScribusHost& host);
HostPtr<IDocumentUtils> MakeDocumentUtils(ScribusHost& host);

// The database of a document's pages: a mark to know the document by.
const IDataBase* GetDataBase(const ScribusDocument& document);

// The document behind one that this host handed out.
std::shared_ptr<ScribusDocument> GetDocument(const IDocument& document);

// Pages are numbered from 1 in the database.
constexpr UID GetPageUID(int pageIndex)
{
    return static_cast<UID>(pageIndex + 1);
}

constexpr int GetPageIndex(UID page)
{
    return static_cast<int>(page) - 1;
}
}  // namespace HostDocuments
