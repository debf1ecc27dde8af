#include "archive/ZipOutput.h"

#include "archive/ZipInput.h"
#include "foundation/core/GException.h"
#include "foundation/system/GDurableFile.h"

#include <quazip/zip.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <limits>

namespace Morvane
{
static constexpr int cBufferSize = 256 * 1024;

void* ZipOutput::create()
{
    return openHandle(APPEND_STATUS_CREATE);
}

void* ZipOutput::append(ZipInput& old)
{
    mOld = &old;
    return openHandle(APPEND_STATUS_ADDINZIP);
}

void* ZipOutput::openHandle(int mode)
{
    zlib_filefunc64_def functions{};
    functions.zopen64_file = [](void* self, void*, int) { return self; };
    functions.zread_file = readOld;
    functions.zwrite_file = writeNext;
    functions.ztell64_file = [](void* self, void*) {
        return static_cast<ZPOS64_T>(static_cast<ZipOutput*>(self)->mPosition);
    };
    functions.zseek64_file = seek;
    functions.zclose_file = [](void*, void*) { return 0; };
    functions.zerror_file = [](void* self, void*) {
        return static_cast<ZipOutput*>(self)->hasFailed() ? 1 : 0;
    };
    functions.zfakeclose_file = [](void*, void*) { return 0; };
    functions.opaque = this;
    mBuffer.reserve(cBufferSize);
    return zipOpen2_64(this, mode, nullptr, &functions);
}

bool ZipOutput::write(const char* bytes, int count)
{
    // What lies before the buffer is on its way already.
    const int before =
        static_cast<int>(std::max<qint64>(std::min<qint64>(mBufferStart - mPosition, count), 0));
    if (before > 0 && !writeThrough(mPosition, bytes, before))
        return false;
    mPosition += before;
    bytes += before;
    count -= before;
    const bool isApart = mPosition > getBufferEnd();
    const bool isFull = !mIsHoldingBack && mPosition + count > mBufferStart + cBufferSize;
    if ((isApart || isFull) && !flush())
        return false;
    if (mBuffer.isEmpty())
        mBufferStart = mPosition;
    if (count > cBufferSize && !mIsHoldingBack) {
        const bool isWritten = writeThrough(mPosition, bytes, count);
        mPosition += count;
        mBufferStart = mPosition;
        return isWritten;
    }
    const int offset = static_cast<int>(mPosition - mBufferStart);
    mBuffer.resize(std::max(mBuffer.size(), offset + count));
    std::memcpy(mBuffer.data() + offset, bytes, static_cast<size_t>(count));
    mPosition += count;
    return !hasFailed();
}

void ZipOutput::patch(qint64 offset, uint16_t number)
{
    const qint64 position = mPosition;
    const char bytes[] = {static_cast<char>(number), static_cast<char>(number >> 8)};
    mPosition = offset;
    static_cast<void>(write(bytes, sizeof bytes));  // a failure stays: hasFailed()
    mPosition = position;
}

void ZipOutput::holdBack()
{
    static_cast<void>(flush());  // a failure stays: hasFailed()
    mIsHoldingBack = true;
}

bool ZipOutput::flush()
{
    const bool isWritten = writeThrough(mBufferStart, mBuffer.constData(), mBuffer.size());
    mBufferStart = getBufferEnd();
    mBuffer.resize(0);  // keeps the memory
    return isWritten;
}

bool ZipOutput::writeThrough(qint64 offset, const char* bytes, int count)
{
    if (hasFailed())
        return false;
    try {
        mFile.WriteAt(offset, bytes, count);
        return true;
    } catch (const GException& error) {
        mReason = error.GetDescription();
        return false;
    }
}

uLong ZipOutput::readOld(void* self, void*, void* bytes, uLong size)
{
    ZipOutput& output = *static_cast<ZipOutput*>(self);
    if (output.mOld == nullptr)
        return 0;
    const int count = output.mOld->readAt(output.mPosition, static_cast<char*>(bytes),
                                          static_cast<int>(std::min<uLong>(size, INT_MAX)));
    output.mPosition += count;
    return static_cast<uLong>(count);
}

uLong ZipOutput::writeNext(void* self, void*, const void* bytes, uLong size)
{
    ZipOutput& output = *static_cast<ZipOutput*>(self);
    if (size > INT_MAX || !output.write(static_cast<const char*>(bytes), static_cast<int>(size)))
        return 0;
    return size;
}

int ZipOutput::seek(void* self, void*, ZPOS64_T offset, int origin)
{
    ZipOutput& output = *static_cast<ZipOutput*>(self);
    ZPOS64_T position = offset;
    if (origin == ZLIB_FILEFUNC_SEEK_CUR)
        position = static_cast<ZPOS64_T>(output.mPosition) + offset;
    else if (origin == ZLIB_FILEFUNC_SEEK_END)
        position = static_cast<ZPOS64_T>(output.mOld != nullptr ? output.mOld->getSize() : output.mPosition) -
                   offset;
    if (position > static_cast<ZPOS64_T>(std::numeric_limits<qint64>::max()))
        return -1;
    output.mPosition = static_cast<qint64>(position);
    return 0;
}
}  // namespace Morvane
