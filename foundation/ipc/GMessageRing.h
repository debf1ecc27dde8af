#pragma once

#include "foundation/core/GString.h"

#include <cstddef>
#include <cstdint>
#include <vector>

// A queue of messages laid out in memory: a header and a ring. What the bytes mean is in
// docs/formats/channel.md. Only the layout: whoever shares the memory holds the queue's lock around each
// call.
//
// The memory is taken for hostile. No call reads or writes outside it, whatever it holds.
class GMessageRing
{
public:
    static constexpr size_t cHeaderSize = 64;
    static constexpr size_t cLeastCapacity = 64;
    static constexpr size_t cEntryHeaderSize = 4;

    // Who takes the messages out.
    struct Owner
    {
        uint32_t processID;
        uint64_t startTime;
    };

    enum class PutResult
    {
        Done,
        Full,      // it would fit into the empty queue
        TooLarge,  // it would not
        Closed,    // nothing more is put in
        Damaged    // the positions make no sense; the owner's next Take puts them right
    };

    // Makes an empty queue of all the memory, which begins at a multiple of eight.
    static GMessageRing Make(uint8_t* data, size_t size, const Owner& owner);

    // Takes over a queue that is there. Raises with GErrorCode::cSegmentHeader when its header does not
    // check.
    static GMessageRing Open(uint8_t* data, size_t size);

    PutResult Put(const GBuffer& message);

    // Takes out everything that is in the queue, in the order in which it was put in. A damaged rest is
    // dropped; `isDamaged` then becomes true, and the queue is empty and usable.
    std::vector<GBuffer> TakeAll(bool* isDamaged);

    // From now on nothing can be put in.
    void Close();

    Owner GetOwner() const;

private:
    GMessageRing(uint8_t* data, size_t capacity) : mData(data), mCapacity(capacity) {}

    // Copy to and from a place of the ring, over its end where need be; give the place behind.
    size_t CopyIn(size_t place, const void* bytes, size_t length);
    size_t CopyOut(size_t place, void* bytes, size_t length) const;

    uint8_t* mData;
    size_t mCapacity;  // as it was when the header was checked; what the header says later does not count
};
