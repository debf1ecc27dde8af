#pragma once

#include "foundation/prefs/GPrefSharedFileModule.h"

// The plug-in's own settings file, which several hosts of one user may have open at the same time.
//
// Changes stay in memory until a flush, as in every module. Unlike the shared file of all programs, a flush
// uses ChangeUnderLock: no change of two hosts is lost, and if both changed the same key, the later flush
// wins.
class PlugInPrefModule : public GPrefSharedFileModule
{
public:
    // Reads the file; a failure is logged, and the module starts empty. Writes UTF-16.
    explicit PlugInPrefModule(const GPathName& path);

    void WriteDict() override;
};
