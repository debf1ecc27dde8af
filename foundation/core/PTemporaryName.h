#pragma once

#include "foundation/core/GString.h"

#include <cstdint>
#include <optional>

// The name that a file has until it takes its target's place (GDurableFile):
// STEM.PROCESS-START-MACHINE-RANDOM.new. In a replacement in two steps, the old file has the same name with
// ".old" added (PReplacedFile). The stem is the target's own name or, if that leaves no room for the rest,
// its beginning and a digest. Case does not count. Any thread.
struct PTemporaryName
{
    // The process that made the file. On Windows several machines may share a folder, and each has its own
    // processes.
    struct Maker
    {
        uint32_t process;
        uint64_t startTime;
        GString machine;  // 8 hexadecimal digits
    };

    // Names are leaves, without a folder. `random`: 6 digits and small letters.
    static GString Make(const GString& target, const Maker& maker, const GString& random);

    // What a temporary name of the target says; none for every other name, also for names of another target.
    static std::optional<PTemporaryName> Read(const GString& name, const GString& target);

    static GString GetStem(const GString& target);

    Maker maker;
    bool isOld;
};
