#include "tests/support/faults/FullVolume.h"

#include <QByteArray>
#include <QStorageInfo>

#include <gtest/gtest.h>

static constexpr qint64 cLargest = 100 * 1024 * 1024;

FullVolume::FullVolume(qint64 left) : mFilling(GetFolder() + QStringLiteral("filling"))
{
    EXPECT_TRUE(mFilling.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    const auto countRest = [left] { return QStorageInfo(GetFolder()).bytesFree() - left; };
    for (qint64 rest = countRest(); rest > 0 && rest < cLargest; rest = countRest())
        mFilling.write(QByteArray(static_cast<int>(rest), 'f'));
    EXPECT_LE(countRest(), 0) << "The volume is too large to be filled.";
}

FullVolume::~FullVolume()
{
    EXPECT_TRUE(mFilling.remove());
}

QString FullVolume::GetFolder()
{
    return QString::fromLocal8Bit(qgetenv("HOPBOX_SMALL_VOLUME"));
}
