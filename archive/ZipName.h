#pragma once

#include <QByteArray>
#include <QString>

namespace Morvane
{
// How the name of an entry is stored: in the code page of the PC (OEM), and also in the name field, an extra
// field of our own. docs/formats/zip-name-field.md has the layout.
namespace ZipName
{
// A name or an extra field with more bytes is refused.
constexpr int cMaximumSize = 65536;

// The name in the OEM code page. A character that is not in the page becomes "_", never a similar character;
// backslashes become "/".
QByteArray encodeZipName(const QString& name);

// The name of an entry from its raw bytes and its extra field. It is the name in the name field; without that
// field, the raw name, read as UTF-8 if it is valid UTF-8, and in the OEM code page otherwise. Backslashes
// become "/", on every system.
QString decodeZipName(const QByteArray& rawName, const QByteArray& extraField);

// The name field for a name.
QByteArray createExtraField(const QString& name);

// The name that an extra field holds in a name field; empty when there is none. The rest of the field may
// hold anything.
QString parseExtraField(const QByteArray& extraField);
}  // namespace ZipName
}  // namespace Morvane
