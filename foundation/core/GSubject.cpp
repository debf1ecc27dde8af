#include "foundation/core/GSubject.h"

GObserver::~GObserver() = default;

GSubject::GSubject() : mObservers(std::make_shared<GAttachments<GObserver>>()) {}

GSubject::~GSubject()
{
    mObservers->DetachAll();
}

void GSubject::Attach(GObserver& observer)
{
    mObservers->Attach(observer);
}

void GSubject::Detach(const GObserver& observer)
{
    mObservers->Detach(observer);
}

void GSubject::Notify(int32_t notification)
{
    const std::shared_ptr<GAttachments<GObserver>> observers = mObservers;
    observers->CallEach([&](GObserver& observer) { observer.Update(*this, notification); });
}
