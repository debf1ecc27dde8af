#pragma once

#include "plugin/host/IBook.h"

#include <QStringList>

class BookFile;
class ScribusHost;

// Books as a plug-in sees them.
namespace HostBooks
{
HostPtr<IBookManager> MakeManager(ScribusHost& host);

// A book that this host handed out, and the files of its documents.
const BookFile& GetBook(const IBook& book);
QStringList GetDocuments(const IBookContent& content);
}  // namespace HostBooks
