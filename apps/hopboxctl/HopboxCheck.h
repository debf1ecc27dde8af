#pragma once

#include "foundation/core/GPathName.h"

#include <QJsonObject>
#include <QStringList>
#include <QVector>

#include <cstdint>

struct HopboxRegistryEntry;

// What was found out about one Hopbox: whether an export to it can work.
struct HopboxCheck
{
    enum class Kind
    {
        cNoArchive,
        cBadArchive,
        cDamagedSettings,
        cBadJobOptions,
        cNoIcon,
        cOddSetting,
        cNoApplication,
        cOfAnotherUser,
        cNotListed
    };

    struct Finding
    {
        Kind kind;
        QString text;
        QString setting;  // of cOddSetting
    };

    static HopboxCheck Make(const HopboxRegistryEntry& entry);

    GPathName archive;
    QJsonObject settings;
    int64_t damagePosition = -1;  // the byte of the settings where their damage begins; -1 when there is none
    QString jobOptionsName;
    qint64 jobOptionsSize = 0;
    int build = 0;
    QVector<Finding> problems;  // the Hopbox can't be used
    QVector<Finding> notes;     // it can
};
