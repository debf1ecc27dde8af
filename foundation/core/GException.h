#pragma once

#include "foundation/core/GString.h"

#include <boost/exception/exception.hpp>

#include <cstdint>
#include <exception>

// An error with a numeric code and a description that a person can read. The base of everything that the
// foundation throws; it is caught at the boundaries of a step, where the description becomes the error text.
class GException : public virtual boost::exception, public virtual std::exception
{
public:
    int32_t GetCode() const { return mCode; }
    const GString& GetDescription() const { return mDescription; }

    // The description in UTF-8; lives as long as the exception.
    const char* what() const noexcept override { return mWhat.constData(); }

protected:
    GException(int32_t code, const GString& description);

private:
    int32_t mCode;
    GString mDescription;
    GBuffer mWhat;
};

// An error that is described only by its code: the description is a general text, the same for every cause.
class GSimpleException : public GException
{
public:
    GSimpleException(int32_t code, const GString& description);
};

// An error with a text of its own: what was tried, on what, and the system's reason.
class GCustomException : public GException
{
public:
    GCustomException(int32_t code, const GString& description);
};
