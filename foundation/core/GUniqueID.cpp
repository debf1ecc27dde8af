#include "foundation/core/GUniqueID.h"

#include <QUuid>

#include <algorithm>

namespace
{
constexpr int cByteCount = 16;

bool IsHexDigit(QChar character)
{
    const ushort unit = character.unicode();
    return (unit >= '0' && unit <= '9') || (unit >= 'A' && unit <= 'F') || (unit >= 'a' && unit <= 'f');
}
}  // namespace

GUniqueID::GUniqueID() : GUniqueID(GBuffer(cByteCount, '\0')) {}

GUniqueID::GUniqueID(const GBuffer& bytes) : mBytes(bytes) {}

GUniqueID GUniqueID::Create()
{
    return GUniqueID(QUuid::createUuid().toRfc4122());
}

GUniqueID GUniqueID::FromHexText(const GString& text)
{
    if (text.size() != 2 * cByteCount || !std::all_of(text.begin(), text.end(), IsHexDigit))
        return GUniqueID();
    return GUniqueID(GBuffer::fromHex(text.toLatin1()));
}

GString GUniqueID::GetHexText() const
{
    return GString::fromLatin1(mBytes.toHex().toUpper());
}

bool GUniqueID::IsNull() const
{
    return *this == GUniqueID();
}
