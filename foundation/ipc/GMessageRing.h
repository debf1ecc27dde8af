#pragma once

#include "foundation/core/GString.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <vector>

// A queue of messages laid out in memory: a header and a ring. What the bytes mean is in
// docs/formats/channel.md. This class is only the layout: who puts messages in, withdraws them or closes the
// queue must hold the queue's lock; the one who takes messages out needs no lock.
//
// The content of the memory can't be trusted. Whatever it is, no call reads or writes outside the memory.
class GMessageRing
{
public:
    static constexpr size_t cHeaderSize = 64;
    static constexpr size_t cLeastCapacity = 64;
    static constexpr size_t cEntryHeaderSize = 4;
    static constexpr size_t cMostNotice = 65536;

    // Who takes the messages out.
    struct Owner
    {
        uint32_t processID;
        uint64_t startTime;
        uint64_t keeper = 0;  // who takes over the messages that a dead owner left; 0: nobody
        uint64_t number = 0;  // of this queue; no other one has the same
        GBuffer notice = {};  // what the owner lets senders know, at most cMostNotice bytes
    };

    struct Entry
    {
        GBuffer message;
        uint64_t position;  // where it is, in bytes since the queue was made
        uint64_t end;
    };

    enum class PutResult
    {
        Done,
        DoneAsFirst,  // and the queue was empty: its owner may be asleep
        Full,         // it would fit into the empty queue
        TooLarge,     // it would not
        Closed,       // nothing more is put in
        Unsure,       // closed by somebody who did not wait for the lock: it may or may not come out
        Damaged       // the positions make no sense; the owner's next Peek corrects them
    };

    // Makes an empty queue that uses all of the memory; the owner's notice is stored after the ring. The
    // memory must begin at a multiple of eight.
    static GMessageRing Make(uint8_t* data, size_t size, const Owner& owner);

    // Takes over an existing queue. Raises a GDamagedObject with GErrorCode::cSegmentHeader when its header
    // is not valid.
    static GMessageRing Open(uint8_t* data, size_t size);

    PutResult Put(const GBuffer& message);

    // Gives the first messages of the queue, at most `most`, and leaves them in it; none of them can be
    // withdrawn then. If a length makes no sense, the rest is dropped and `isDamaged` becomes true; the queue
    // can still be used. Peek, Forget and GiveBack are only for the one who takes messages out.
    std::vector<Entry> Peek(size_t most, bool* isDamaged);

    // Takes out everything up to an entry's end.
    void Forget(uint64_t end);

    // Undoes Peek for these entries: their senders may withdraw them until the next Peek.
    void GiveBack(const std::vector<Entry>& entries);

    enum class Withdrawal
    {
        Done,      // the message never comes out
        TakenOut,  // it was forgotten: the one who takes messages out has it
        TakenUp    // Peek gave it; it is not known yet whether it is forgotten or given back
    };

    // Withdraws a message that was put in; `end` is the place after it.
    Withdrawal Withdraw(const GBuffer& message, uint64_t end);

    bool IsEmpty() const;

    // The bytes that the queue holds, and those that it has room for. At most the capacity.
    size_t GetFill() const;
    size_t GetCapacity() const { return mCapacity; }

    // The place after the last message, in bytes since the queue was made; and whether everything before such
    // a place has been taken out.
    uint64_t GetEnd() const;
    bool HasForgotten(uint64_t end) const;

    // From now on nothing can be put in.
    void Close();

    Owner GetOwner() const;

private:
    GMessageRing(uint8_t* data, size_t capacity, size_t noticeSize)
        : mData(data), mCapacity(capacity), mNoticeSize(noticeSize)
    {
    }

    // Copy to and from a place of the ring, across its end if needed; give the place after the bytes.
    size_t CopyIn(size_t place, const void* bytes, size_t length);
    size_t CopyOut(size_t place, void* bytes, size_t length) const;

    // The place of a position in the ring, and the place that is so many bytes after another; at most the
    // capacity.
    size_t GetPlace(uint64_t position) const;
    size_t Behind(size_t place, size_t count) const;

    // The state of the entry that begins at a place.
    std::atomic<uint8_t>& GetState(size_t place) const;
    uint32_t ReadLength(size_t place) const;
    [[nodiscard]] bool TakeUp(size_t place);
    uint64_t LookAgain(uint64_t read);

    uint8_t* mData;
    // As they were when the header was checked; what the header says later does not count.
    size_t mCapacity;
    size_t mNoticeSize;
};
