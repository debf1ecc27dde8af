#pragma once

#include "foundation/core/GInputStream.h"

#include <vector>

// Reads another stream through a buffer, lets its reader look ahead and push bytes back, and goes back to a
// point that was set before.
class GBufferedInputStream : public GInputStream
{
public:
    static constexpr int cDefaultSize = 1024;

    // Reads from `source`, which outlives this stream or belongs to it. The buffer has `size` bytes; it grows
    // only for what is looked at, pushed back or kept for a roll-back beyond that.
    explicit GBufferedInputStream(GInputStream& source, int size = cDefaultSize);
    explicit GBufferedInputStream(std::unique_ptr<GInputStream> source, int size = cDefaultSize);

    int Read(char* bytes, int count) override;

    // Goes back to the first byte of the source; forgets what was pushed back and the roll-back point.
    void Reset() override;

    // A stream over a clone of the source, with what is buffered here; the roll-back point is not taken
    // along.
    std::unique_ptr<GInputStream> CreateClone() const override { return CreateBufferedClone(); }
    std::unique_ptr<GBufferedInputStream> CreateBufferedClone() const;

    // Has the next `least` bytes at hand, or as many as there are; gives how many can be looked at, which may
    // be more. They are at GetAhead until the next call of anything but Skip.
    int LookAhead(int least)
    {
        const int available = static_cast<int>(mEnd - mBegin);
        return available >= least ? available : Fill(least);
    }
    const char* GetAhead() const { return mBuffer.data() + mBegin; }

    // Passes over bytes that LookAhead showed.
    void Skip(int count) { mBegin += static_cast<size_t>(count); }

    // Puts bytes in front of what comes next.
    void Unread(const char* bytes, int count);

    // From now on keeps what is read, until RollBack. A later point replaces an earlier.
    void SetRollBackPoint();

    // Goes back to the roll-back point, which is then forgotten. False when there is none.
    [[nodiscard]] bool RollBack();

    // How many bytes of the source lie before the next one; bytes that were pushed back count as unread
    // again.
    int64_t GetPosition() const { return mRead - static_cast<int64_t>(mEnd - mBegin); }

private:
    int Fill(int least);
    size_t GetKept() const { return mHasRollBackPoint ? mRollBackPoint : mBegin; }

    std::unique_ptr<GInputStream> mOwned;
    GInputStream& mSource;
    std::vector<char> mBuffer;
    size_t mSize;
    size_t mBegin = 0;  // the next byte; the bytes from here to mEnd are still to be read
    size_t mEnd = 0;
    size_t mRollBackPoint = 0;  // not behind mBegin
    bool mHasRollBackPoint = false;
    int64_t mRead = 0;  // bytes taken from the source
};
