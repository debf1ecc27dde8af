#pragma once

#include "foundation/trace/GTrace.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/Test.h"

#include <QtEndian>

#include <memory>

inline QByteArray BigEndian32(quint32 number)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(number, bytes.data());
    return bytes;
}

// A file with a resource fork entry of no bytes and a Finder entry of the given bytes.
inline QByteArray MakeAppleDouble(const QByteArray& finderInfo)
{
    const QByteArray entries = BigEndian32(2) + BigEndian32(50) + BigEndian32(0) + BigEndian32(9) +
                               BigEndian32(50) + BigEndian32(static_cast<quint32>(finderInfo.size()));
    return BigEndian32(0x00051607) + BigEndian32(0x00020000) + QByteArray("Mac OS X        ") +
           QByteArray("\0\2", 2) + entries + finderInfo;
}

// A folder for the files of a test, and a log that keeps what the Mac layer reports.
class MacTest : public testing::Test
{
protected:
    MacTest() { GTrace::SetLogger(mLog); }
    ~MacTest() override { GTrace::SetLogger(nullptr); }

    QString At(const char* relative) const { return mSandbox.GetPath(QString::fromUtf8(relative)); }

    QString Write(const char* relative, const QByteArray& bytes) const
    {
        EXPECT_TRUE(WriteFile(At(relative), bytes)) << relative;
        return At(relative);
    }

    std::string TakeErrors() { return mLog->TakeErrors().join(QLatin1Char('\n')).toStdString(); }

private:
    Sandbox mSandbox;
    std::shared_ptr<LogRecorder> mLog = std::make_shared<LogRecorder>();
};
