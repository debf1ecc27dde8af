#pragma once

#include "foundation/core/GAttachments.h"

#include <cstdint>
#include <memory>

class GSubject;

// An object that is told what happens to a subject. It must detach itself before it is deleted.
class GObserver
{
public:
    virtual ~GObserver();

    // Called by the subject. Each subject defines what its notification numbers mean.
    virtual void Update(GSubject& subject, int32_t notification) = 0;
};

// An object that can be observed. Used by one thread.
class GSubject
{
public:
    GSubject();
    virtual ~GSubject();
    GSubject(const GSubject&) = delete;
    GSubject& operator=(const GSubject&) = delete;

    // May be called from within Update: an observer that is attached there is told from the next notification
    // on; an observer that is detached there is told nothing more. Attaching twice has no further effect.
    void Attach(GObserver& observer);
    void Detach(const GObserver& observer);

    // Tells each observer, in the order in which they were attached. An observer may delete the subject: the
    // observers after it are not told. An exception from an observer goes to the caller, and the observers
    // after it are not told.
    void Notify(int32_t notification);

private:
    std::shared_ptr<GAttachments<GObserver>> mObservers;  // a running notification holds it, too
};
