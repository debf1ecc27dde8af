#pragma once

#include "foundation/core/GString.h"

#include <cstdint>
#include <optional>

// The name that a file has until it takes its target's place (GDurableFile):
// STEM.PROCESS-START-MACHINE-RANDOM.new. The old file of a replacement in two steps has the same with ".old"
// behind it (PReplacedFile). The stem is the target's own name, or, where that would leave no room for the
// rest, the beginning of it and a digest. Case does not count. Any thread.
struct PTemporaryName
{
    // Whom the name tells of. On Windows a folder may be shared by machines, each with its own processes.
    struct Maker
    {
        uint32_t process;
        uint64_t startTime;
        GString machine;  // 8 hexadecimal digits
    };

    // Names are leaves, without a folder. `random`: 6 digits and small letters.
    static GString Make(const GString& target, const Maker& maker, const GString& random);

    // What a name of the target says; none for every other name, also that of another target.
    static std::optional<PTemporaryName> Read(const GString& name, const GString& target);

    static GString GetStem(const GString& target);

    Maker maker;
    bool isOld;
};
