#include "foundation/core/GException.h"
#include "foundation/ipc/GPPIPCDirectory.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>

// The directory's segment as somebody else left it: it is refused, or it takes a pair in and gives it back.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const auto words = std::make_unique<uint32_t[]>(GPPIPCDirectory::cSize / sizeof(uint32_t));
    uint8_t* const segment = reinterpret_cast<uint8_t*>(words.get());
    std::memcpy(segment, data, std::min(size, GPPIPCDirectory::cSize));
    GPPIPCDirectory::Prepare(segment);
    GPPIPCDirectory directory(segment);
    const GPPIPCDirectory::Pair own{4711, 1};
    try {
        directory.Remove(own);
        const size_t before = directory.GetPairs().size();
        const bool isAdded = directory.Add(own);
        if (directory.GetPairs().size() != before + (isAdded ? 1 : 0))
            std::abort();
        directory.Remove(own);
        if (directory.GetPairs().size() != before)
            std::abort();
    } catch (const GException&) {
    }
    return 0;
}
