#pragma once

#include "foundation/core/GString.h"

#include <cstdint>
#include <utility>
#include <vector>

// A job that is handed to a Hopbox.
struct HopboxJobTicket
{
    GString userName;

    // Where the job is: a native path, or an encoded `file` URL. Kept as it stands.
    GString jobPath;

    GString printerName;  // the name of the Hopbox
    GString portName;
    int32_t copyCount = 0;
    GString printerID;

    // Whether a Hopbox can do anything with it: everything is there but the printer identifier, which may be
    // empty, and at least one copy is asked for.
    bool IsValid() const;

    // The text of each value with its name, in the order of the text.
    std::vector<std::pair<GString, GString>> GetValues() const;

    // The text that is sent; docs/formats/registry.md has the form. Line breaks within a value come back as
    // CR LF.
    GString ToText() const;

    // Takes the values that the text holds and leaves the others as they are; a copy count that is no number
    // becomes 0. False, with the ticket unchanged, when the text is no ticket.
    [[nodiscard]] bool FromText(const GString& text);
};
