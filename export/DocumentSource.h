#pragma once

#include "foundation/core/GString.h"
#include "plugin/host/HostPtr.h"

#include <QStringList>

#include <optional>

class IDocument;

// What the steps of an export, and the menus, ask of the host's documents.
namespace DocumentSource
{
// The document in front; empty when there is none.
HostPtr<IDocument> QueryFront();

// The fonts that a document lacks, in the host's order; none when the host has no list of its fonts. Raises
// when their count can't be (HostFault).
std::optional<QStringList> GetMissingFonts(const IDocument& document);

// What exports of a document are named after, safe as a file's name: the document's file without its
// extension, or, without a file, the name in its window.
GString GetOutputName(const IDocument& document);

// The same for the name of a file.
GString GetOutputName(const GString& fileName);
}  // namespace DocumentSource
