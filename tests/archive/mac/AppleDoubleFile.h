#pragma once

#include <QByteArray>
#include <QFile>
#include <QtEndian>

#include <gtest/gtest.h>

// Bytes of AppleDouble files for tests.
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

inline QString WriteFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
    file.write(bytes);
    return path;
}
