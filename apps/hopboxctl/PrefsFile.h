#pragma once

#include "foundation/prefs/GPrefGroups.h"

#include <QJsonObject>
#include <QString>

// A settings file as a person deals with it: groups and keys are named by their shown names (see
// PrefsOutput::GetShownName).
class PrefsFile
{
public:
    enum class Access
    {
        cOwn,
        cShared
    };

    // Reads what can be read of the file, in the encoding that it tells. Raises a GException when it can't be
    // opened.
    explicit PrefsFile(const QString& path);

    const GPrefGroups& GetGroups() const { return mGroups; }

    // The value; null when there is none.
    const GString* Find(const QString& group, const QString& key) const;

    // Whether the file could not be read whole; where that begins, for people: file, line and byte.
    bool IsDamaged() const { return mDamagePosition >= 0; }
    QString DescribeDamage() const;
    QJsonObject GetDamageJson() const;

    // The line of a file in which the byte lies, from 1 on.
    static int GetLine(const QString& path, int64_t position);

    // Sets one value and writes the file, in UTF-16; makes the file where there is none. A shared file is
    // changed under its lock. Raises a GException when the file can't be read or written, and leaves a
    // damaged one as it is, since writing it would lose what could not be read.
    static void Set(const QString& path, const QString& group, const QString& key, const QString& value,
                    Access access);

private:
    QString mPath;
    GPrefGroups mGroups;
    int64_t mDamagePosition = -1;
};
