#include "foundation/core/GPathNameRules.h"

#include <algorithm>

const Qt::CaseSensitivity GPathNameRules::cCaseSensitivity = Qt::CaseInsensitive;

namespace
{
const QLatin1String cLongPrefix("//?/");
const QLatin1String cLongSharePrefix("//?/UNC/");
const QLatin1String cSharePrefix("//");

bool IsDriveLetter(QChar character)
{
    const ushort lower = character.unicode() | 0x20;
    return lower >= 'a' && lower <= 'z';
}

// The root of "//server/share/…": both names must be there.
int GetShareRootLength(const GString& path)
{
    const int serverEnd = path.indexOf(QLatin1Char('/'), 2);
    if (serverEnd <= 2 || serverEnd + 1 >= path.size())
        return -1;
    const int shareEnd = path.indexOf(QLatin1Char('/'), serverEnd + 1);
    if (shareEnd == serverEnd + 1)
        return -1;
    const GString server = path.mid(2, serverEnd - 2);
    if (server == QLatin1String(".") || server == QLatin1String("?"))
        return -1;
    return shareEnd < 0 ? path.size() : shareEnd + 1;
}

bool IsReserved(QChar character)
{
    return character < QLatin1Char(' ') || QStringLiteral("<>:\"|?*").contains(character);
}
}  // namespace

GString GPathNameRules::ToPortable(const GString& nativeOrPortablePath)
{
    GString path = nativeOrPortablePath;
    path.replace(QLatin1Char('\\'), QLatin1Char('/'));
    if (path.startsWith(cLongSharePrefix, Qt::CaseInsensitive))
        return cSharePrefix + path.mid(cLongSharePrefix.size());
    if (path.startsWith(cLongPrefix))
        return path.mid(cLongPrefix.size());
    return path;
}

int GPathNameRules::GetRootLength(const GString& portablePath)
{
    if (portablePath.startsWith(cSharePrefix))
        return GetShareRootLength(portablePath);
    if (portablePath.startsWith(QLatin1Char('/')))
        return 1;
    if (portablePath.size() >= 2 && portablePath.at(1) == QLatin1Char(':') &&
        IsDriveLetter(portablePath.at(0)))
        return portablePath.size() >= 3 && portablePath.at(2) == QLatin1Char('/') ? 3 : -1;
    return 0;
}

bool GPathNameRules::IsLegalName(const QStringRef& name)
{
    // The system drops a dot or a blank at the end and so reaches another file.
    const bool endsOpen = name.endsWith(QLatin1Char('.')) || name.endsWith(QLatin1Char(' '));
    return !endsOpen && std::none_of(name.begin(), name.end(), IsReserved);
}

bool GPathNameRules::IsPlainlyLegal(const QStringRef&)
{
    return false;
}

GString GPathNameRules::ToNative(const GString& portablePath)
{
    GString path = portablePath;
    return path.replace(QLatin1Char('/'), QLatin1Char('\\'));
}

GString GPathNameRules::ToSystem(const GString& portablePath)
{
    if (portablePath.startsWith(cSharePrefix))
        return ToNative(cLongSharePrefix + portablePath.mid(cSharePrefix.size()));
    if (GetRootLength(portablePath) == 3)
        return ToNative(cLongPrefix + portablePath);
    return ToNative(portablePath);
}
