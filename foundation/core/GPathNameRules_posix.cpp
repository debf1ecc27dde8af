#include "foundation/core/GPathNameRules.h"

const Qt::CaseSensitivity GPathNameRules::cCaseSensitivity = Qt::CaseSensitive;

GString GPathNameRules::ToPortable(const GString& nativeOrPortablePath)
{
    return nativeOrPortablePath;
}

int GPathNameRules::GetRootLength(const GString& portablePath)
{
    return portablePath.startsWith(QLatin1Char('/')) ? 1 : 0;
}

bool GPathNameRules::IsLegalName(const QStringRef& name)
{
    return !name.contains(QChar(0));
}

bool GPathNameRules::IsPlainlyLegal(const QStringRef& path)
{
    return IsLegalName(path);
}

GString GPathNameRules::ToNative(const GString& portablePath)
{
    return portablePath;
}

GString GPathNameRules::ToSystem(const GString& portablePath)
{
    return portablePath;
}
