#include "foundation/core/GBufferedInputStream.h"

#include <algorithm>
#include <cstring>

GBufferedInputStream::GBufferedInputStream(GInputStream& source, int size)
    : mSource(source), mBuffer(static_cast<size_t>(std::max(size, 1))), mSize(mBuffer.size())
{
}

GBufferedInputStream::GBufferedInputStream(std::unique_ptr<GInputStream> source, int size)
    : mOwned(std::move(source)),
      mSource(*mOwned),
      mBuffer(static_cast<size_t>(std::max(size, 1))),
      mSize(mBuffer.size())
{
}

int GBufferedInputStream::Read(char* bytes, int count)
{
    int total = 0;
    while (total < count) {
        const int available = std::min(LookAhead(1), count - total);
        if (available == 0)
            break;
        std::memcpy(bytes + total, GetAhead(), static_cast<size_t>(available));
        Skip(available);
        total += available;
    }
    return total;
}

void GBufferedInputStream::Reset()
{
    mSource.Reset();
    mBegin = mEnd = 0;
    mHasRollBackPoint = false;
    mRead = 0;
}

std::unique_ptr<GBufferedInputStream> GBufferedInputStream::CreateBufferedClone() const
{
    auto clone = std::make_unique<GBufferedInputStream>(mSource.CreateClone(), static_cast<int>(mSize));
    clone->mBuffer = mBuffer;
    clone->mBegin = mBegin;
    clone->mEnd = mEnd;
    clone->mRead = mRead;
    return clone;
}

void GBufferedInputStream::Unread(const char* bytes, int count)
{
    const auto length = static_cast<size_t>(count);
    if (mBegin < length) {
        const size_t missing = length - mBegin;
        mBuffer.insert(mBuffer.begin(), missing, '\0');
        mBegin += missing;
        mEnd += missing;
        mRollBackPoint += missing;
    }
    mBegin -= length;
    std::memcpy(mBuffer.data() + mBegin, bytes, length);
    mRollBackPoint = std::min(mRollBackPoint, mBegin);
}

void GBufferedInputStream::SetRollBackPoint()
{
    mRollBackPoint = mBegin;
    mHasRollBackPoint = true;
}

bool GBufferedInputStream::RollBack()
{
    if (!mHasRollBackPoint)
        return false;
    mBegin = mRollBackPoint;
    mHasRollBackPoint = false;
    return true;
}

// Moves what has to be kept to the front and reads behind it.
int GBufferedInputStream::Fill(int least)
{
    const size_t kept = GetKept();
    const size_t length = mEnd - kept;
    std::memmove(mBuffer.data(), mBuffer.data() + kept, length);
    mBegin -= kept;
    mRollBackPoint = 0;
    mEnd = length;
    const size_t wanted = std::max(mBegin + static_cast<size_t>(least), mSize);
    if (mBuffer.size() < wanted)
        mBuffer.resize(std::max(wanted, mHasRollBackPoint ? mBuffer.size() * 2 : wanted));
    const int count = mSource.Read(mBuffer.data() + mEnd, static_cast<int>(mBuffer.size() - mEnd));
    mEnd += static_cast<size_t>(count);
    mRead += count;
    return static_cast<int>(mEnd - mBegin);
}
