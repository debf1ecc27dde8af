#pragma once

#include "plugin/host/IBook.h"

#include <QStringList>

class ScribusHost;

// Books as a plug-in sees them.
namespace HostBooks
{
HostPtr<IBookManager> MakeManager(ScribusHost& host);

// The book's file, and the files of its documents, of a book that this host handed out.
QString GetPath(const IBook& book);
QStringList GetDocuments(const IBookContent& content);
QStringList GetDocuments(const IBook& book);
}  // namespace HostBooks
