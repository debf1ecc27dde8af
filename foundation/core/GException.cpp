#include "foundation/core/GException.h"

GException::GException(int32_t code, const GString& description)
    : mCode(code), mDescription(description), mWhat(description.toUtf8())
{
}

GSimpleException::GSimpleException(int32_t code, const GString& description) : GException(code, description)
{
}

GCustomException::GCustomException(int32_t code, const GString& description) : GException(code, description)
{
}
