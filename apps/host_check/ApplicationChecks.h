#pragma once

class CheckReport;
class WatchedHost;
struct hopbox_adaptor;

// What an adaptor has for the application itself: units, the modal state, alerts, actions and their menus.
class ApplicationChecks
{
public:
    ApplicationChecks(const hopbox_adaptor& adaptor, const WatchedHost& host, CheckReport& report)
        : mAdaptor(adaptor), mHost(host), mReport(report)
    {
    }

    void Run();

    // With the plug-in started: its actions are known, so that a further start adds none.
    void CheckStarted();

private:
    void CheckUnit();
    void CheckModalState();
    void ExpectResting(const char* operation, int wanted);
    void CheckAlerts();
    void CheckActions();
    bool HasMenus() const;
    bool HasMenuOf(int action) const;
    int IsActionKnown(int action) const;

    const hopbox_adaptor& mAdaptor;
    const WatchedHost& mHost;
    CheckReport& mReport;
};
