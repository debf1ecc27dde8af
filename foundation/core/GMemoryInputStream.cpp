#include "foundation/core/GMemoryInputStream.h"

#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"

#include <algorithm>
#include <cstring>
#include <limits>

GMemoryInputStream::GMemoryInputStream(const GBuffer& bytes) : mBytes(bytes) {}

std::unique_ptr<GMemoryInputStream> GMemoryInputStream::CreateOnText(const GString& text)
{
    if (text.size() > std::numeric_limits<int>::max() / 2)
        throw GSimpleException(GErrorCode::cIllegalArgument, QStringLiteral("The text is too long."));
    return std::make_unique<GMemoryInputStream>(
        GBuffer::fromRawData(reinterpret_cast<const char*>(text.constData()), text.size() * 2));
}

int GMemoryInputStream::Read(char* bytes, int count)
{
    const int available = std::min(count, mBytes.size() - mPosition);
    if (available <= 0)
        return 0;
    std::memcpy(bytes, mBytes.constData() + mPosition, static_cast<size_t>(available));
    mPosition += available;
    return available;
}

void GMemoryInputStream::Reset()
{
    mPosition = 0;
}

std::unique_ptr<GInputStream> GMemoryInputStream::CreateClone() const
{
    auto clone = std::make_unique<GMemoryInputStream>(mBytes);
    clone->mPosition = mPosition;
    return clone;
}
