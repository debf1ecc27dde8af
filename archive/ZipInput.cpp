#include "archive/ZipInput.h"

#include <QIODevice>

#include <quazip/unzip.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <limits>
#include <type_traits>

namespace Morvane
{
static_assert(std::is_same_v<uLong, unsigned long>);

static constexpr int cBlockSize = 64 * 1024;

ZipInput::ZipInput(QIODevice& device) : mDevice(device), mSize(device.size()) {}

void* ZipInput::open()
{
    zlib_filefunc64_def functions{};
    functions.zopen64_file = [](void* self, void*, int) { return self; };
    functions.zread_file = readNext;
    functions.zwrite_file = [](void*, void*, const void*, uLong) { return uLong(0); };
    functions.ztell64_file = [](void* self, void*) {
        return static_cast<ZPOS64_T>(static_cast<ZipInput*>(self)->mPosition);
    };
    functions.zseek64_file = seek;
    functions.zclose_file = [](void*, void*) { return 0; };
    functions.zerror_file = [](void*, void*) { return 0; };
    functions.zfakeclose_file = [](void*, void*) { return 0; };
    functions.opaque = this;
    return unzOpen2_64(this, &functions);
}

int ZipInput::readAt(qint64 offset, char* bytes, int size)
{
    int done = 0;
    while (offset >= 0 && done < size && offset + done < mSize) {
        const Block& block = getBlock(offset + done);
        const int start = static_cast<int>(offset + done - block.offset);
        const int count = std::min(size - done, block.bytes.size() - start);
        if (count <= 0)
            break;
        std::memcpy(bytes + done, block.bytes.constData() + start, static_cast<size_t>(count));
        done += count;
    }
    return done;
}

uLong ZipInput::readNext(void* self, void*, void* bytes, uLong size)
{
    ZipInput& input = *static_cast<ZipInput*>(self);
    const int wanted = static_cast<int>(std::min<uLong>(size, INT_MAX));
    char* const target = static_cast<char*>(bytes);
    const int count = input.mCipher.has_value() ? input.readDecrypted(target, wanted)
                                                : input.readAt(input.mPosition, target, wanted);
    input.mPosition += count;
    return static_cast<uLong>(count);
}

std::optional<uint8_t> ZipInput::beginDecryption(qint64 offset, const QByteArray& password)
{
    char header[ZipCipher::cHeaderSize];
    if (readAt(offset, header, sizeof header) != sizeof header)
        return std::nullopt;
    mCipher.emplace(password);
    mCipher->decrypt(header, sizeof header);
    mDecryptedUpTo = offset;
    return static_cast<uint8_t>(header[sizeof header - 1]);
}

int ZipInput::readDecrypted(char* bytes, int size)
{
    if (mPosition != mDecryptedUpTo)
        return 0;
    const int count = readAt(mPosition + ZipCipher::cHeaderSize, bytes, size);
    mCipher->decrypt(bytes, count);
    mDecryptedUpTo += count;
    return count;
}

// An archive's own offsets end up here. A position behind the end is taken, as a file takes it: walking the
// extra fields steps there, and nothing can be read there. Steps back come as numbers that wrap around.
int ZipInput::seek(void* self, void*, ZPOS64_T offset, int origin)
{
    ZipInput& input = *static_cast<ZipInput*>(self);
    ZPOS64_T position = offset;
    if (origin == ZLIB_FILEFUNC_SEEK_CUR)
        position = static_cast<ZPOS64_T>(input.mPosition) + offset;
    else if (origin == ZLIB_FILEFUNC_SEEK_END)
        position = static_cast<ZPOS64_T>(input.mSize) - offset;
    if (position > static_cast<ZPOS64_T>(std::numeric_limits<qint64>::max()))
        return -1;
    input.mPosition = static_cast<qint64>(position);
    return 0;
}

const ZipInput::Block& ZipInput::getBlock(qint64 offset)
{
    const qint64 start = offset - offset % cBlockSize;
    for (size_t index = 0; index < mBlocks.size(); ++index) {
        if (mBlocks[index].offset == start) {
            mLastUsed = index;
            return mBlocks[index];
        }
    }
    mLastUsed = (mLastUsed + 1) % mBlocks.size();
    Block& block = mBlocks[mLastUsed];
    block.offset = start;
    fill(block);
    return block;
}

void ZipInput::fill(Block& block)
{
    const qint64 ownSize = mSize - mEnd.size();
    const int size =
        static_cast<int>(std::max<qint64>(std::min<qint64>(cBlockSize, ownSize - block.offset), 0));
    block.bytes.resize(size);
    int done = 0;
    qint64 count = mDevice.seek(block.offset) ? 1 : -1;
    while (count > 0 && done < size) {
        count = mDevice.read(block.bytes.data() + done, size - done);
        done += static_cast<int>(std::max<qint64>(count, 0));
    }
    block.bytes.resize(done);
    if (done < size) {
        // The next call that goes well takes the device's word back.
        mReason = count < 0 ? mDevice.errorString() : QStringLiteral("it has become shorter");
        return;
    }
    const qint64 endOffset = std::max<qint64>(block.offset - ownSize, 0);
    block.bytes += mEnd.mid(static_cast<int>(endOffset), cBlockSize - size);
}

void ZipInput::endWith(qint64 offset, const QByteArray& end)
{
    mEnd = end;
    mSize = offset + end.size();
    mBlocks = {};
}
}  // namespace Morvane
