#pragma once

#include "foundation/core/GPathName.h"

#include <QJsonObject>
#include <QStringList>
#include <QVector>

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
    QString jobOptionsName;
    qint64 jobOptionsSize = 0;
    int build = 0;
    QVector<Finding> problems;  // the Hopbox can't be used
    QVector<Finding> notes;     // it can
};
