#pragma once

#include <QFile>
#include <QString>

// While one lives, the small volume has only so many bytes left.
class FullVolume
{
public:
    explicit FullVolume(qint64 left);
    FullVolume(const FullVolume&) = delete;
    FullVolume& operator=(const FullVolume&) = delete;
    ~FullVolume();

    // The root of a drive of a few megabytes that nobody else uses, "S:/", by the environment's
    // HOPBOX_SMALL_VOLUME; empty where there is none.
    static QString GetFolder();

private:
    QFile mFilling;
};
