#pragma once

#include "foundation/prefs/GPrefGroups.h"

#include <QJsonObject>
#include <QString>

// The content of a settings file for people and for programs. Groups and keys come sorted; values that hold a
// dictionary or a list are unfolded, and so are those within them.
namespace PrefsOutput
{
// A name as a person reads and types it: in UTF-8 where it is that, else each byte as the character of its
// number.
QString GetShownName(const GBuffer& name);

// One line an entry, with the unfolded ones below, indented; control characters show as escapes.
QString GetText(const GPrefGroups& groups);

// One object of groups, each an object of keys; dictionaries are objects, lists are arrays.
QJsonObject GetJson(const GPrefGroups& groups);
}  // namespace PrefsOutput
