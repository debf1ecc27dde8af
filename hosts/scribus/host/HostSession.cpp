#include "hosts/scribus/host/HostSession.h"

#include "hosts/scribus/host/HostBooks.h"
#include "hosts/scribus/host/HostObject.h"
#include "hosts/scribus/host/ScribusHost.h"

namespace
{
class Application : public HostObject<IApplication>
{
public:
    explicit Application(ScribusHost& host) : mHost(host) {}

    HostPtr<IActionManager> QueryActionManager() const override
    {
        IActionManager* manager = mHost.GetActionManager();
        if (manager != nullptr)
            manager->AddRef();
        return HostPtr<IActionManager>::Adopt(manager);
    }

private:
    ScribusHost& mHost;
};

class Session : public HostObject<ISession>
{
public:
    explicit Session(ScribusHost& host) : mHost(host) {}

    HostPtr<IApplication> QueryApplication() const override
    {
        return MakeHostObject<Application, IApplication>(mHost);
    }

    HostPtr<IBookManager> QueryBookManager() const override { return HostBooks::MakeManager(mHost); }

private:
    ScribusHost& mHost;
};

class Units : public HostObject<IUnitOfMeasureSettings>
{
public:
    explicit Units(ClassID unit) : mUnit(unit) {}
    ClassID GetHorizontalUnit() const override { return mUnit; }

private:
    ClassID mUnit;
};

class ModalUtils : public HostObject<IModalUtils>
{
public:
    explicit ModalUtils(ScribusHost& host) : mHost(host) {}
    ModalToken AcquireModalToken() override { return mHost.AcquireModalToken(); }
    void HandBackModalToken(ModalToken token) override { mHost.HandBackModalToken(token); }

private:
    ScribusHost& mHost;
};
}  // namespace

HostPtr<ISession> HostSession::MakeSession(ScribusHost& host)
{
    return MakeHostObject<Session, ISession>(host);
}

HostPtr<IUnitOfMeasureSettings> HostSession::MakeUnits(ClassID unit)
{
    return MakeHostObject<Units, IUnitOfMeasureSettings>(unit);
}

HostPtr<IModalUtils> HostSession::MakeModalUtils(ScribusHost& host)
{
    return MakeHostObject<ModalUtils, IModalUtils>(host);
}
