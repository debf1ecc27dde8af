#include "foundation/ipc/GPPIPCAddresses.h"

#include <QStringList>

#include <algorithm>

GPPIPCAddresses::GPPIPCAddresses(const GBuffer& bytes)
{
    for (const GBuffer& name : bytes.split('\0')) {
        if (!name.isEmpty())
            mNames.push_back(GString::fromUtf8(name));
    }
}

GBuffer GPPIPCAddresses::Encode() const
{
    GBuffer bytes;
    for (const GString& name : mNames)
        bytes += name.toUtf8() + '\0';
    return bytes;
}

bool GPPIPCAddresses::Accepts(const GString& name) const
{
    return mNames.empty() || name.isEmpty() ||
           std::find(mNames.cbegin(), mNames.cend(), name) != mNames.cend();
}

GString GPPIPCAddresses::GetText() const
{
    QStringList texts;
    for (const GString& name : mNames)
        texts.append(QStringLiteral("\"%1\"").arg(name));
    return texts.join(QLatin1String(", "));
}
