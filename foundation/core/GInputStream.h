#pragma once

#include <cstdint>
#include <memory>

// Bytes that are read one after the other. Not for several threads at once.
class GInputStream
{
public:
    GInputStream() = default;
    virtual ~GInputStream() = default;
    GInputStream(const GInputStream&) = delete;
    GInputStream& operator=(const GInputStream&) = delete;

    // Reads up to `count` bytes and gives how many were read: fewer than asked for only where the data ends,
    // 0 at the end. Raises a GCustomException with GErrorCode::cFile when the source can't be read.
    virtual int Read(char* bytes, int count) = 0;

    // Goes back to the first byte.
    virtual void Reset() = 0;

    // A second stream over the same data, which begins at the current position of this one. After that the
    // two are independent.
    virtual std::unique_ptr<GInputStream> CreateClone() const = 0;
};
