#pragma once

#include "archive/ZipHelper.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/Test.h"

#include <QVector>

#include <cstdint>

// One entry of an archive that a test builds byte by byte, with whatever lies the test wants in it.
struct RawEntry
{
    QByteArray name;
    QByteArray content;  // as it stands in the archive
    int method = 0;
    int flags = 0;
    int madeBy = 20;
    uint32_t attributes = 0;
    QByteArray extraField = {};
    uint32_t dosTime = 0x50210000;
    qint64 declaredSize = -1;  // -1: the content's
    qint64 crc = -1;           // -1: that of the content
};

// A zip archive of these entries.
QByteArray BuildArchive(const QVector<RawEntry>& entries);

// An honest entry with deflated content.
RawEntry MakeDeflated(const QByteArray& name, const QByteArray& content);

// Makes what ReadTree would give.
void WriteTree(const QString& folder, const QMap<QString, QByteArray>& tree);

// Runs a line of the shell in a folder; gives its output, or fails the test.
QByteArray RunShell(const QString& folder, const QString& line);

// An archive, the folder that it is extracted into, and the errors that are told.
class ArchiveTest : public testing::Test
{
protected:
    ArchiveTest() { mRun.log = &mLog; }

    void Build(const QVector<RawEntry>& entries) const { WriteFile(mArchive, BuildArchive(entries)); }
    QString GetTarget(const char* name) const { return mTarget + QLatin1Char('/') + QString::fromUtf8(name); }

    bool Extract(ZipOnError onError = ZipOnError::GoOn, ZipPaths paths = ZipPaths::Keep, int mode = 0,
                 const QString& password = {})
    {
        return ZipHelper::extractFiles(mArchive, mTarget, paths, password, onError, mode, mRun);
    }

    Sandbox mSandbox;
    const QString mArchive = mSandbox.GetPath("archive.zip"_q);
    const QString mTarget = mSandbox.GetPath("target"_q);
    LogRecorder mLog;
    ZipRun mRun;
};
