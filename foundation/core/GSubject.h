#pragma once

#include "foundation/core/GAttachments.h"

#include <cstdint>
#include <memory>

class GSubject;

// Who wants to know what happens to a subject. Detaches itself before it ends.
class GObserver
{
public:
    virtual ~GObserver();

    // The subject reports; what a notification number means is the subject's to say.
    virtual void Update(GSubject& subject, int32_t notification) = 0;
};

// What can be observed. Used by one thread.
class GSubject
{
public:
    GSubject();
    virtual ~GSubject();
    GSubject(const GSubject&) = delete;
    GSubject& operator=(const GSubject&) = delete;

    // May be called from within Update: an observer attached there is told from the next notification on, one
    // detached there is told nothing more. Attaching twice is attaching once.
    void Attach(GObserver& observer);
    void Detach(const GObserver& observer);

    // Tells each observer, in the order in which they were attached. An observer may end the subject: those
    // behind it are not told. What an observer throws goes to the caller, and those behind it are not told.
    void Notify(int32_t notification);

private:
    std::shared_ptr<GAttachments<GObserver>> mObservers;  // a notification under way holds it too
};
