#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>

class GDurableFile;

namespace Morvane
{
class ZipInput;

// What the zip library writes an archive through. An error is not forgotten, whatever the library makes of
// it: after one, nothing more is written, and hasFailed() stays true.
//
// The bytes written last stay in memory for a while. The library goes back to the header of an entry when it
// has written the content, and finds it there more often than not.
class ZipOutput
{
public:
    explicit ZipOutput(GDurableFile& file) : mFile(file) {}

    // The library's handle on an archive; null when it can't be made. The handle writes through this object.
    void* create();

    // The same for an archive that goes on where the directory of another begins, which is open and outlives
    // the handle. Its entries are to be here already.
    void* append(ZipInput& old);

    // Writes bytes at the end.
    [[nodiscard]] bool write(const char* bytes, int count);

    // Writes over two bytes that are written, a number of the zip format.
    void patch(qint64 offset, uint16_t number);

    // From here on everything stays in memory until flush(), and the bytes from here on can be changed there.
    void holdBack();
    char* getHeldBack() { return mBuffer.data(); }
    int getHeldBackSize() const { return mBuffer.size(); }

    // Hands on what is still in memory. False when anything could not be written since the beginning.
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
