#pragma once

#include "foundation/core/GString.h"
#include "plugin/host/HostPtr.h"

#include <QStringList>

#include <optional>

class IDocument;

// What the steps of an export, and the menus, need to know about the host's documents.
namespace DocumentSource
{
// The document in front; empty when there is none.
HostPtr<IDocument> QueryFront();

// The missing fonts of a document, in the host's order; no value when the host has no list of its fonts.
// Raises when their count is not possible (HostFault).
std::optional<QStringList> GetMissingFonts(const IDocument& document);

// The name for exports of a document, safe as a file name: the name of its file without the extension or, if
// it has no file, the name in its window.
GString GetOutputName(const IDocument& document);

// The same for the name of a file.
GString GetOutputName(const GString& fileName);
}  // namespace DocumentSource
