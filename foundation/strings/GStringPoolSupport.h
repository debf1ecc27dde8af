#pragma once

#include "foundation/core/GPathName.h"

#include <cstddef>
#include <cstdint>

// A row of a static table: a code and a text of 8-bit characters that ends with a zero. The code
// cNextStringCode means the code of the row before plus one; in the first row it means 0.
struct GStringPoolDataStruct
{
    uint32_t code;
    const char* text;
};

constexpr uint32_t cNextStringCode = 0xFFFFFFFF;

// Fills the string pool: from static tables, and from string files in a folder. For the main thread.
class GStringPoolSupport
{
public:
    // Registers a static table for a language. A code that the language has already keeps its text, so that
    // registering a table twice changes nothing. With `isHex` the texts are the hexadecimal digits of their
    // bytes; otherwise a line break in them becomes CR LF. Raises a GCustomException with
    // GErrorCode::cIllegalArgument when the encoding is not known.
    static void AddStringPoolData(const GString& language, const GString& encodingName,
                                  const GStringPoolDataStruct* rows, size_t count, bool isHex = false);

    // Sets where string files are and which of them are used; forgets the results for other parameters. Reads
    // nothing yet.
    static void ReadStringFiles(const GPathName& folder, const GString& prefix, int32_t lowestVersion,
                                int32_t highestVersion, int32_t versionLength);

    // Whether a file holds strings of a language, by its name alone. The case of letters doesn't count. The
    // extension is "LNG"; the name begins with the prefix, then come `versionLength` characters of a version
    // from the lowest to the highest (a text that is not a number is version 0); the language is somewhere in
    // the name.
    static bool IsStringFile(const GPathName& path, const GString& prefix, int32_t lowestVersion,
                             int32_t highestVersion, int32_t versionLength, const GString& language);

    // Reads the files of a language from the folder that ReadStringFiles named, in the order of their names;
    // what they hold replaces the texts that the language has. Gives how many were read: none when the folder
    // is missing or was never named.
    static int ReadDefaultStringFile(const GString& language);

    // Undoes ReadStringFiles and forgets its results.
    static void ForgetStringFiles();

private:
    static bool sDefaultStringFileParamsSet;
};
