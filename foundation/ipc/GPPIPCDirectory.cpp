#include "foundation/ipc/GPPIPCDirectory.h"

#include "foundation/core/GErrorCodes.h"
#include "foundation/ipc/GSharedSegment.h"

#include <QtGlobal>

#include <algorithm>
#include <atomic>

namespace
{
constexpr uint32_t cMagic = 0x4450564D;
constexpr uint32_t cVersion = 1;

// The segment as it lies in memory. The count is stored last, so that a process that dies at any moment
// leaves whole pairs.
struct Layout
{
    uint32_t magic;
    uint32_t version;
    std::atomic<uint32_t> count;
    GPPIPCDirectory::Pair pairs[GPPIPCDirectory::cMostPairs];
};
static_assert(sizeof(Layout) == GPPIPCDirectory::cSize, "the directory's layout is fixed");
static_assert(std::atomic<uint32_t>::is_always_lock_free, "the count is shared between processes");
static_assert(Q_BYTE_ORDER == Q_LITTLE_ENDIAN, "the layout is little-endian");

Layout& GetLayout(uint8_t* data)
{
    return *reinterpret_cast<Layout*>(data);
}
}  // namespace

void GPPIPCDirectory::Prepare(uint8_t* data)
{
    const Layout& layout = GetLayout(data);
    if (layout.magic == 0 && layout.version == 0 && layout.count == 0)
        MakeEmpty(data);
}

void GPPIPCDirectory::MakeEmpty(uint8_t* data)
{
    Layout& layout = GetLayout(data);
    layout.count.store(0, std::memory_order_release);
    layout.version = cVersion;
    layout.magic = cMagic;
}

uint32_t GPPIPCDirectory::GetCheckedCount() const
{
    const Layout& layout = GetLayout(mData);
    const uint32_t count = layout.count.load(std::memory_order_acquire);
    if (layout.magic != cMagic || layout.version != cVersion || count > cMostPairs)
        throw GDamagedObject(GErrorCode::cSegmentHeader,
                             QStringLiteral("The header of the message channel's directory is damaged."));
    return count;
}

std::vector<GPPIPCDirectory::Pair> GPPIPCDirectory::GetPairs() const
{
    const uint32_t count = GetCheckedCount();
    std::vector<Pair> pairs;
    for (uint32_t index = 0; index < count; ++index) {
        const Pair pair = GetLayout(mData).pairs[index];
        const bool isNamed = pair.process != 0 && pair.receiver != 0;
        if (isNamed && std::find(pairs.cbegin(), pairs.cend(), pair) == pairs.cend())
            pairs.push_back(pair);
    }
    return pairs;
}

bool GPPIPCDirectory::Add(const Pair& pair)
{
    Remove(pair);
    const uint32_t count = GetCheckedCount();
    if (count == cMostPairs)
        return false;
    Layout& layout = GetLayout(mData);
    layout.pairs[count] = pair;
    layout.count.store(count + 1, std::memory_order_release);
    return true;
}

void GPPIPCDirectory::Remove(const Pair& pair)
{
    Layout& layout = GetLayout(mData);
    uint32_t count = GetCheckedCount();
    for (uint32_t index = count; index-- > 0;) {
        if (!(layout.pairs[index] == pair))
            continue;
        layout.pairs[index] = layout.pairs[count - 1];
        layout.count.store(--count, std::memory_order_release);
    }
}
