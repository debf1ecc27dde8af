#include "foundation/core/GUniqueID.h"

#include <QUuid>

GUniqueID::GUniqueID(const GBuffer& bytes) : mBytes(bytes) {}

GUniqueID GUniqueID::Create()
{
    return GUniqueID(QUuid::createUuid().toRfc4122());
}

GString GUniqueID::GetHexText() const
{
    return GString::fromLatin1(mBytes.toHex().toUpper());
}
