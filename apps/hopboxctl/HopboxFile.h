#pragma once

#include "hopbox/HopboxRegistryEntry.h"

// A Hopbox in one file, to be carried to another user or computer: a zip archive that holds the registry
// record without its paths ("Hopbox/Record", as in the registry, in UTF-8), the project archive
// ("Hopbox/Project.hopbox") and, where there is one, the icon ("Hopbox/Icon" with the ending of its file).
//
// Such a file is taken as hostile: nothing of it is used before all of it was looked at. Failures raise a
// GException.
namespace HopboxFile
{
// Writes the Hopbox of the record. The file appears whole, in place of one that was there.
void Write(const HopboxRecord& record, const GPathName& file);

// What a file holds, extracted into a folder.
struct Content
{
    HopboxRecord record;  // without paths
    GPathName archive;
    GPathName icon;  // empty where there is none
};

// Extracts a file into a folder that is empty. Raises when it is no such file, or an export to its Hopbox
// could not work.
Content Read(const GPathName& file, const GPathName& folder);
}  // namespace HopboxFile
