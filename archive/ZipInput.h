#pragma once

#include "archive/ZipCipher.h"

#include <QByteArray>
#include <QString>

#include <array>
#include <optional>

class QIODevice;

namespace Morvane
{
// The zip library reads an archive through this class: a device with a cache of two blocks. The library reads
// the directory of an archive one byte at a time, and jumps between the directory and the data. With one
// block for each, both are fast.
//
// The library does not check the end of an archive, so it is shown an end of the form that it expects: see
// ZipDirectory.
class ZipInput
{
public:
    // Reads from an open device that can seek and outlives this object.
    explicit ZipInput(QIODevice& device);

    // The library's handle on the archive; null when the device holds no zip archive. The handle reads
    // through this object.
    void* open();

    // Reads up to `size` bytes at an offset, without moving the library's position. Gives the number of bytes
    // read.
    int readAt(qint64 offset, char* bytes, int size);

    qint64 getSize() const { return mSize; }

    // From here on the archive ends with these bytes from that offset on, whatever the device holds there.
    void endWith(qint64 offset, const QByteArray& end);

    // Whether the device has ever given fewer bytes than it has, and why.
    bool hasFailed() const { return !mReason.isEmpty(); }
    const QString& getReason() const { return mReason; }

    // From now on the library gets the encrypted content at the offset in decrypted form, without the bytes
    // that the encryption has put before it. The library must read it once and in order. Gives the check
    // byte, which shows whether the password is right; nothing when there is no content.
    std::optional<uint8_t> beginDecryption(qint64 offset, const QByteArray& password);
    void endDecryption() { mCipher.reset(); }

private:
    struct Block
    {
        qint64 offset = -1;
        QByteArray bytes;
    };

    static unsigned long readNext(void* self, void* stream, void* bytes, unsigned long size);
    static int seek(void* self, void* stream, unsigned long long offset, int origin);

    int readDecrypted(char* bytes, int size);
    const Block& getBlock(qint64 offset);
    void fill(Block& block);

    QIODevice& mDevice;
    qint64 mSize;  // that of the device, or with the end in its place
    QByteArray mEnd;
    qint64 mPosition = 0;
    QString mReason;
    std::array<Block, 2> mBlocks;
    size_t mLastUsed = 0;
    std::optional<ZipCipher> mCipher;
    qint64 mDecryptedUpTo = 0;
};
}  // namespace Morvane
