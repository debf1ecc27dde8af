#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>

class GDurableFile;

namespace Morvane
{
class ZipInput;

// The zip library writes an archive through this class. An error is kept, whatever the library does with it:
// after an error nothing more is written, and hasFailed() stays true.
//
// The bytes written last stay in memory for a while. The library goes back to the header of an entry when it
// has written the content, and the header is usually still in memory.
class ZipOutput
{
public:
    explicit ZipOutput(GDurableFile& file) : mFile(file) {}

    // The library's handle on an archive; null when it can't be made. The handle writes through this object.
    void* create();

    // The same for adding to an old archive: the new entries begin where the old archive's directory begins.
    // The old archive is open and outlives the handle. Its entries must have been written here already.
    void* append(ZipInput& old);

    // Writes bytes at the end.
    [[nodiscard]] bool write(const char* bytes, int count);

    // Replaces two bytes that are already written, which are a number of the zip format.
    void patch(qint64 offset, uint16_t number);

    // From now on everything that is written stays in memory until flush(), and can be changed there.
    void holdBack();
    char* getHeldBack() { return mBuffer.data(); }
    int getHeldBackSize() const { return mBuffer.size(); }

    // Writes to the file what is still in memory. False if any write has failed since the beginning.
    [[nodiscard]] bool flush();

    bool hasFailed() const { return !mReason.isEmpty(); }
    const QString& getReason() const { return mReason; }

    qint64 getPosition() const { return mPosition; }

private:
    static unsigned long readOld(void* self, void* stream, void* bytes, unsigned long size);
    static unsigned long writeNext(void* self, void* stream, const void* bytes, unsigned long size);
    static int seek(void* self, void* stream, unsigned long long offset, int origin);

    void* openHandle(int mode);
    qint64 getBufferEnd() const { return mBufferStart + mBuffer.size(); }
    [[nodiscard]] bool writeThrough(qint64 offset, const char* bytes, int count);

    GDurableFile& mFile;
    ZipInput* mOld = nullptr;
    qint64 mPosition = 0;
    qint64 mBufferStart = 0;  // where the buffer's bytes belong
    QByteArray mBuffer;
    bool mIsHoldingBack = false;
    QString mReason;
};
}  // namespace Morvane
