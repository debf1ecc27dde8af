#pragma once

#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/ipc/GSharedSegment.h"

#include <cstddef>
#include <cstdint>

// An object of the system's (a mutex, a semaphore) in a segment of its own: magic, layout version, the object
// in the C library's form. Whoever comes first sets it up.
template <typename Object>
class PSharedObject
{
public:
    // `setUp` is called with the memory of an object that nobody has set up yet. Raises with
    // GErrorCode::cCreateSemaphore when the segment can't be had or holds something else.
    template <typename SetUp>
    PSharedObject(const GString& name, GSharedSegment::Mode mode, uint32_t magic, const SetUp& setUp)
    try : mSegment(name, cSegmentSize, mode, [&](uint8_t* data) {
        Content* const content = reinterpret_cast<Content*>(data);
        if (content->magic == 0) {
            setUp(&content->object);
            content->version = cVersion;
            content->magic = magic;
        }
        if (content->magic != magic || content->version != cVersion)
            RaiseSegmentError(QStringLiteral("The shared segment \"%1\" is damaged."), name);
    }) {
    } catch (const GException& error) {
        throw GCustomException(GErrorCode::cCreateSemaphore, error.GetDescription());
    }

    Object* Get() const { return &reinterpret_cast<Content*>(mSegment.GetData())->object; }

private:
    struct Content
    {
        uint32_t magic;
        uint32_t version;
        Object object;
    };

    static constexpr size_t cSegmentSize = 64;
    static constexpr uint32_t cVersion = 1;
    static_assert(sizeof(Content) <= cSegmentSize, "the object must fit into its segment");

    GSharedSegment mSegment;
};
