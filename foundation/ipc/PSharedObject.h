#pragma once

#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/ipc/GSharedSegment.h"
#include "foundation/system/GProcessInfo.h"

#include <cstddef>
#include <cstdint>

// An object of the system (a mutex, a semaphore) in a segment of its own: magic, layout version, the number
// of the machine's start, the number of the segment's file, the object in the C library's form. The first
// process that uses it sets it up.
//
// The system looks after such an object only in the place where it was set up, and only until the machine
// stops. An object that is older than the machine's last start, or that was copied, may be held by somebody
// who will never release it: so it is set up again.
template <typename Object>
class PSharedObject
{
public:
    // `setUp` is called with the memory of an object that has to be set up. Raises with
    // GErrorCode::cCreateSemaphore when the segment is not available, a GDamagedObject when it holds
    // something else.
    template <typename SetUp>
    PSharedObject(const GString& name, GSharedSegment::Mode mode, uint32_t magic, const SetUp& setUp)
    try : mSegment(name, cSegmentSize, mode, [&](uint8_t* data, uint64_t identity) {
        Content* const content = reinterpret_cast<Content*>(data);
        const uint64_t start = GProcessInfo::GetMachineStart();
        if (content->magic != 0 && (content->magic != magic || content->version != cVersion))
            RaiseSegmentDamage(QStringLiteral("The shared segment \"%1\" is damaged."), name);
        if (content->magic == magic && content->machineStart == start && content->file == identity)
            return;
        content->magic = 0;
        setUp(&content->object);
        content->version = cVersion;
        content->machineStart = start;
        content->file = identity;
        content->magic = magic;
    }) {
    } catch (const GDamagedObject& error) {
        throw GDamagedObject(GErrorCode::cCreateSemaphore, error.GetDescription());
    } catch (const GException& error) {
        throw GCustomException(GErrorCode::cCreateSemaphore, error.GetDescription());
    }

    Object* Get() const { return &reinterpret_cast<Content*>(mSegment.GetData())->object; }
    const GSharedSegment& GetSegment() const { return mSegment; }

private:
    struct Content
    {
        uint32_t magic;
        uint32_t version;
        uint64_t machineStart;
        uint64_t file;
        Object object;
    };

    static constexpr size_t cSegmentSize = 64;
    static constexpr uint32_t cVersion = 2;
    static_assert(sizeof(Content) <= cSegmentSize, "the object must fit into its segment");

    GSharedSegment mSegment;
};
