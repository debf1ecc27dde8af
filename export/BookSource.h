#pragma once

#include "foundation/core/GString.h"
#include "plugin/host/HostPtr.h"

#include <cstdint>

class IBook;

// What the steps of an export, and the menus, need to know about the host's books.
namespace BookSource
{
// The book whose panel is in front; empty when there is none.
HostPtr<IBook> QueryActive();

// The same for a step: gives 0 and the book, or the code of the message with which the step fails. The book
// is looked up twice, because a host may still name a book that is just being closed.
uint32_t FindActive(HostPtr<IBook>& book);

// Whether the book lists any document.
bool HasDocuments(const IBook& book);

// The name for exports of a book, safe as a file name: the name of its file without the extension or, if it
// has no file, the name that the host gives it.
GString GetOutputName(const IBook& book);
}  // namespace BookSource
