#pragma once

#include "foundation/core/GInputStream.h"

#include <vector>

// Reads another stream through a buffer. The reader can look ahead, push bytes back, and go back to a point
// that was set before.
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

    // A stream over a clone of the source, with the bytes that are buffered here, but without the roll-back
    // point.
    std::unique_ptr<GInputStream> CreateClone() const override { return CreateBufferedClone(); }
    std::unique_ptr<GBufferedInputStream> CreateBufferedClone() const;

    // Makes at least `least` of the next bytes available, or all that are left if there are fewer. Gives how
    // many can be looked at, which may be more. They are at GetAhead until the next call of any function but
    // Skip.
    int LookAhead(int least)
    {
        const int available = static_cast<int>(mEnd - mBegin);
        return available >= least ? available : Fill(least);
    }
    const char* GetAhead() const { return mBuffer.data() + mBegin; }

    // Skips bytes that LookAhead has made available.
    void Skip(int count) { mBegin += static_cast<size_t>(count); }

    // Pushes bytes back: they are read next, before the rest.
    void Unread(const char* bytes, int count);

    // From now on keeps what is read, until RollBack. A new point replaces the earlier one.
    void SetRollBackPoint();

    // Goes back to the roll-back point, which is then forgotten. False when there is none.
    [[nodiscard]] bool RollBack();

    // How many bytes of the source are before the next one; bytes that were pushed back count as not read.
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
    size_t mRollBackPoint = 0;  // not after mBegin
    bool mHasRollBackPoint = false;
    int64_t mRead = 0;  // bytes taken from the source
};
