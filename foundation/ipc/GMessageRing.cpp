#include "foundation/ipc/GMessageRing.h"

#include "foundation/core/GErrorCodes.h"
#include "foundation/ipc/GSharedSegment.h"

#include <QtGlobal>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <limits>

namespace
{
constexpr uint32_t cMagic = 0x5150564D;
constexpr uint32_t cVersion = 3;

// The header as it lies in memory. The atomics keep the order of stores: a process that dies at any moment
// leaves a position that was raised only when the bytes before it were there.
// Positions count the bytes since the queue was made. No queue gets so far, and none is near the end of the
// numbers.
constexpr uint64_t cMostPosition = uint64_t{1} << 62;

struct Header
{
    std::atomic<uint32_t> magic;
    uint32_t version;
    uint32_t processID;
    std::atomic<uint32_t> isClosed;
    uint64_t startTime;
    uint32_t capacity;
    uint32_t noticeSize;
    std::atomic<uint64_t> readPosition;
    std::atomic<uint64_t> writePosition;
    uint64_t keeper;
    uint64_t number;
};
// What becomes of an entry stands in the two upper bits of its length's last byte.
constexpr size_t cStateOffset = 3;
constexpr uint8_t cTakenUp = 0x80;    // by whoever takes out; it can't be withdrawn
constexpr uint8_t cWithdrawn = 0x40;  // by its sender; it does not come out
constexpr uint8_t cLengthBits = 0x3F;
constexpr size_t cMostMessage = (size_t{1} << 30) - 1;

static_assert(std::atomic<uint8_t>::is_always_lock_free && sizeof(std::atomic<uint8_t>) == 1,
              "the state is shared between processes");
static_assert(sizeof(Header) == GMessageRing::cHeaderSize, "the header's layout is fixed");
static_assert(std::atomic<uint64_t>::is_always_lock_free, "positions are shared between processes");
static_assert(Q_BYTE_ORDER == Q_LITTLE_ENDIAN, "the layout is little-endian");

Header& GetHeader(uint8_t* data)
{
    return *reinterpret_cast<Header*>(data);
}
}  // namespace

GMessageRing GMessageRing::Make(uint8_t* data, size_t size, const Owner& owner)
{
    constexpr size_t cMostCapacity = std::numeric_limits<uint32_t>::max();
    const size_t noticeSize = static_cast<size_t>(owner.notice.size());
    const size_t capacity = std::min(size - cHeaderSize - noticeSize, cMostCapacity);
    Header& header = GetHeader(data);
    header.magic.store(0, std::memory_order_release);
    std::fill_n(data + sizeof header.magic, cHeaderSize - sizeof header.magic, uint8_t(0));
    header.version = cVersion;
    header.processID = owner.processID;
    header.startTime = owner.startTime;
    header.keeper = owner.keeper;
    header.number = owner.number;
    header.capacity = static_cast<uint32_t>(capacity);
    header.noticeSize = static_cast<uint32_t>(noticeSize);
    std::memcpy(data + cHeaderSize + capacity, owner.notice.constData(), noticeSize);
    header.magic.store(cMagic, std::memory_order_release);
    return GMessageRing(data, capacity, noticeSize);
}

GMessageRing GMessageRing::Open(uint8_t* data, size_t size)
{
    const bool hasHeader = size >= cHeaderSize + cLeastCapacity;
    const Header& header = GetHeader(data);
    const size_t capacity = hasHeader ? header.capacity : 0;
    const size_t noticeSize = hasHeader ? header.noticeSize : 0;
    if (!hasHeader || header.magic.load(std::memory_order_acquire) != cMagic || header.version != cVersion ||
        capacity < cLeastCapacity || capacity > size - cHeaderSize ||
        noticeSize > size - cHeaderSize - capacity || noticeSize > cMostNotice ||
        header.readPosition > cMostPosition || header.writePosition > cMostPosition)
        throw GDamagedObject(GErrorCode::cSegmentHeader,
                             QStringLiteral("The header of a message queue is damaged."));
    return GMessageRing(data, capacity, noticeSize);
}

GMessageRing::PutResult GMessageRing::Put(const GBuffer& message)
{
    Header& header = GetHeader(mData);
    const uint64_t write = header.writePosition.load(std::memory_order_relaxed);
    const uint64_t held = write - header.readPosition.load(std::memory_order_acquire);
    const uint32_t length = static_cast<uint32_t>(message.size());
    const uint64_t needed = cEntryHeaderSize + static_cast<uint64_t>(length);
    if (header.isClosed.load(std::memory_order_relaxed) != 0)
        return PutResult::Closed;
    if (needed > mCapacity || length > cMostMessage)
        return PutResult::TooLarge;
    if (held > mCapacity)
        return PutResult::Damaged;
    if (needed > mCapacity - held)
        return PutResult::Full;
    const size_t place = CopyIn(GetPlace(write), &length, sizeof length);
    CopyIn(place, message.constData(), length);
    header.writePosition.store(write + needed, std::memory_order_seq_cst);
    if (header.isClosed.load(std::memory_order_seq_cst) != 0)
        return PutResult::Unsure;
    // Asked again: the owner may have emptied the queue, and looked for more, since the first look.
    const bool isFirst = header.readPosition.load(std::memory_order_seq_cst) == write;
    return isFirst ? PutResult::DoneAsFirst : PutResult::Done;
}

std::vector<GMessageRing::Entry> GMessageRing::Peek(size_t most, bool* isDamaged)
{
    Header& header = GetHeader(mData);
    uint64_t read = header.readPosition.load(std::memory_order_relaxed);
    uint64_t write = header.writePosition.load(std::memory_order_acquire);
    if (read == write)
        write = LookAgain(read);
    std::vector<Entry> entries;
    *isDamaged = write - read > mCapacity;
    while (!*isDamaged && read != write && entries.size() < most) {
        const uint64_t held = write - read;
        const size_t place = GetPlace(read);
        const uint32_t length = held >= cEntryHeaderSize ? ReadLength(place) : 0;
        *isDamaged = held < cEntryHeaderSize || length > held - cEntryHeaderSize;
        if (*isDamaged)
            break;
        const uint64_t end = read + cEntryHeaderSize + length;
        if (TakeUp(place)) {
            entries.push_back({GBuffer(static_cast<int>(length), Qt::Uninitialized), read, end});
            CopyOut(Behind(place, cEntryHeaderSize), entries.back().message.data(), length);
        } else if (entries.empty()) {
            Forget(end);
        }
        read = end;
    }
    // What stands before the damage is taken out first; the next call meets the damage again.
    if (*isDamaged && entries.empty())
        Forget(write);
    return entries;
}

// Who finds nothing goes to sleep, and a sender wakes him who finds the queue empty. Both must not miss each
// other, and only the order of this store and this load, against those of Put, sees to that. Who finds
// something looks again anyway, and need not pay for it.
uint64_t GMessageRing::LookAgain(uint64_t read)
{
    Header& header = GetHeader(mData);
    header.readPosition.store(read, std::memory_order_seq_cst);
    return header.writePosition.load(std::memory_order_seq_cst);
}

// The sender who sees this may put his bytes in the place of those that were copied out.
void GMessageRing::Forget(uint64_t end)
{
    GetHeader(mData).readPosition.store(end, std::memory_order_release);
}

void GMessageRing::GiveBack(const std::vector<Entry>& entries)
{
    for (const Entry& entry : entries)
        GetState(GetPlace(entry.position)).fetch_and(cLengthBits);
}

// Nobody else puts anything into the place of the message meanwhile, as that takes the lock.
GMessageRing::Withdrawal GMessageRing::Withdraw(const GBuffer& message, uint64_t end)
{
    const uint64_t length = static_cast<uint64_t>(message.size());
    uint8_t state = static_cast<uint8_t>(length >> 24);
    std::atomic<uint8_t>& shared = GetState(GetPlace(end - length - cEntryHeaderSize));
    if (HasForgotten(end))
        return Withdrawal::TakenOut;
    if (shared.compare_exchange_strong(state, state | cWithdrawn))
        return Withdrawal::Done;
    return HasForgotten(end) ? Withdrawal::TakenOut : Withdrawal::TakenUp;
}

size_t GMessageRing::GetPlace(uint64_t position) const
{
    return static_cast<size_t>(position % mCapacity);
}

// Divides nothing, as that takes as long as the rest of a look.
size_t GMessageRing::Behind(size_t place, size_t count) const
{
    const size_t left = mCapacity - place;
    return count < left ? place + count : count - left;
}

std::atomic<uint8_t>& GMessageRing::GetState(size_t place) const
{
    return *reinterpret_cast<std::atomic<uint8_t>*>(mData + cHeaderSize + Behind(place, cStateOffset));
}

uint32_t GMessageRing::ReadLength(size_t place) const
{
    uint8_t bytes[cStateOffset];  // one by one: a number put together in memory is slow to read back
    CopyOut(place, bytes, sizeof bytes);
    const uint32_t last = GetState(place) & cLengthBits;
    return bytes[0] | uint32_t{bytes[1]} << 8 | uint32_t{bytes[2]} << 16 | last << 24;
}

// False when its sender has withdrawn it.
bool GMessageRing::TakeUp(size_t place)
{
    std::atomic<uint8_t>& shared = GetState(place);
    uint8_t state = shared;
    while ((state & cWithdrawn) == 0) {
        if (shared.compare_exchange_weak(state, state | cTakenUp))
            return true;
    }
    return false;
}

bool GMessageRing::IsEmpty() const
{
    const Header& header = GetHeader(mData);
    return header.readPosition == header.writePosition;
}

uint64_t GMessageRing::GetEnd() const
{
    return GetHeader(mData).writePosition;
}

bool GMessageRing::HasForgotten(uint64_t end) const
{
    return GetHeader(mData).readPosition >= end;
}

size_t GMessageRing::GetFill() const
{
    const Header& header = GetHeader(mData);
    const uint64_t held = header.writePosition - header.readPosition;
    return static_cast<size_t>(std::min<uint64_t>(held, mCapacity));
}

void GMessageRing::Close()
{
    GetHeader(mData).isClosed.store(1, std::memory_order_seq_cst);
}

GMessageRing::Owner GMessageRing::GetOwner() const
{
    const Header& header = GetHeader(mData);
    const auto* const notice = reinterpret_cast<const char*>(mData + cHeaderSize + mCapacity);
    return {header.processID, header.startTime, header.keeper, header.number,
            GBuffer(notice, static_cast<int>(mNoticeSize))};
}

size_t GMessageRing::CopyIn(size_t place, const void* bytes, size_t length)
{
    const size_t first = mCapacity - place;
    uint8_t* const ring = mData + cHeaderSize;
    if (length < first) {
        std::memcpy(ring + place, bytes, length);
        return place + length;
    }
    std::memcpy(ring + place, bytes, first);
    std::memcpy(ring, static_cast<const uint8_t*>(bytes) + first, length - first);
    return length - first;
}

size_t GMessageRing::CopyOut(size_t place, void* bytes, size_t length) const
{
    const size_t first = mCapacity - place;
    const uint8_t* const ring = mData + cHeaderSize;
    if (length < first) {
        std::memcpy(bytes, ring + place, length);
        return place + length;
    }
    std::memcpy(bytes, ring + place, first);
    std::memcpy(static_cast<uint8_t*>(bytes) + first, ring, length - first);
    return length - first;
}
