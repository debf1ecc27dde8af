#pragma once

#include "foundation/core/GPathName.h"

#include <cstdint>
#include <functional>

// Reads string files: the texts of one language, by code. docs/formats/string-file.md describes the form.
// A line that makes no sense is skipped and logged with the file's name and the line's number.
class GStringFileReader
{
public:
    // A file larger than this is refused: no translation is so large.
    static constexpr int cLargestFile = 16 * 1024 * 1024;

    // The most entries of one file that are read; the rest is skipped, with a line in the log. This limits
    // the time that a file can cost if its codes were chosen to have the same place in the table.
    static constexpr int cMostEntries = 20000;

    using Sink = std::function<void(uint32_t code, const GString& text)>;

    // Reads a file into the language's table of the string pool; each entry replaces the text that is there.
    // False, with a line in the log, when the file can't be read or is too large; texts that were read before
    // an error stay. A file without entries makes no table.
    [[nodiscard]] static bool ParseStringFile(const GPathName& path, const GString& language);

    // Reads the content of a string file and gives each entry in the order of the lines. `name` is the file's
    // name for the log.
    static void Parse(const GBuffer& content, const GString& name, const Sink& take);
};
