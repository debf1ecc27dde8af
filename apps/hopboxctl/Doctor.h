#pragma once

#include "foundation/core/GResult.h"

#include <QString>
#include <QVector>

#include <functional>

class HopboxRegistry;

// One look at everything that belongs to the user's Hopboxes, for "hopboxctl doctor".
namespace Doctor
{
struct Finding
{
    const char* kind;  // a word that stays the same, for programs
    QString text;      // what is wrong
    QString mend;      // the command that mends it, or what to do; empty when it is only worth knowing
    std::function<GResult()> fix;  // mends it where that can lose nothing; else empty
    bool isProblem = true;
};

// Each looks at one thing and changes nothing.
void LookAtRegistry(const HopboxRegistry& registry, QVector<Finding>& findings);
void LookAtHopboxes(const HopboxRegistry& registry, QVector<Finding>& findings);
void LookAtProjectFolders(const HopboxRegistry& registry, QVector<Finding>& findings);
void LookAtPlugInSettings(QVector<Finding>& findings);
void LookAtFolders(QVector<Finding>& findings);
void LookAtReceivers(const HopboxRegistry& registry, QVector<Finding>& findings);
void LookAtStarts(const HopboxRegistry& registry, QVector<Finding>& findings);
void LookAtJobOptions(const HopboxRegistry& registry, QVector<Finding>& findings);
void LookAtChannel(QVector<Finding>& findings);
void LookAtWorkFolder(QVector<Finding>& findings);
}  // namespace Doctor
