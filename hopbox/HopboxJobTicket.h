#pragma once

#include "foundation/core/GString.h"

#include <cstdint>
#include <utility>
#include <vector>

// A job that is handed to a Hopbox.
struct HopboxJobTicket
{
    GString userName;

    // Where the job is: a native path, or an encoded `file` URL. Kept unchanged.
    GString jobPath;

    GString printerName;  // the name of the Hopbox
    GString portName;
    int32_t copyCount = 0;
    GString printerID;

    // Whether a Hopbox can use the ticket: nothing is empty except perhaps the printer identifier, and at
    // least one copy is asked for.
    bool IsValid() const;

    // The names and texts of the values, in the order of the ticket's text.
    std::vector<std::pair<GString, GString>> GetValues() const;

    // The text that is sent; docs/formats/registry.md has the form. Line breaks within a value come back as
    // CR LF.
    GString ToText() const;

    // Takes the values that the text holds and does not change the others. A copy count that is not a number
    // becomes 0. If the text is not a ticket, gives false and leaves the ticket unchanged.
    [[nodiscard]] bool FromText(const GString& text);
};
