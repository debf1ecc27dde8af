#pragma once

#include "foundation/prefs/GPrefGroups.h"
#include "foundation/prefs/GPrefSharedFileModule.h"

// The plug-in's own settings file, which several hosts of one user may have open at the same time.
//
// Changes stay in memory until a flush, as in every module. A flush takes the file's lock, reads the file
// again, makes this module's own changes in it and writes that: of what two hosts changed nothing is lost,
// and of one key the later flush stays.
class PlugInPrefModule : public GPrefSharedFileModule
{
public:
    // Reads the file; a failure of that is logged, and the module starts empty. Writes UTF-16.
    explicit PlugInPrefModule(const GPathName& path);

    void ReadDict() override;
    void WriteDict() override;

    // Makes a change to the file as it is now, together with what this module has not flushed yet, with
    // nobody else's change between reading and writing. When it raises, what was not flushed still isn't.
    void Change(const std::function<void(GPrefModule&)>& change);

private:
    GPrefGroups mStored;  // what the file held when it was last read or written here
};
