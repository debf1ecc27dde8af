#pragma once

#include <QString>

#include <cstdint>

class CheckReport;
class WatchedHost;
struct hopbox_adaptor;

// The commands of an adaptor: what they make, what they refuse, and what they leave behind when they fail or
// are cancelled.
class CommandChecks
{
public:
    // The folder stays as long as this, and holds job options; what is written goes below it.
    CommandChecks(const hopbox_adaptor& adaptor, const WatchedHost& host, const QString& folder,
                  CheckReport& report);

    // With the sample open.
    void Run();

private:
    void CheckSettings(uint64_t command);
    void CheckExport(uint64_t document);
    void CheckPackage(uint64_t document);
    void CheckFailures(uint64_t document);
    void CheckCancel(uint64_t command, const QString& output);
    uint64_t MakeExport(uint64_t document, const QString& output);
    uint64_t MakePackage(uint64_t document, const QString& output);

    const hopbox_adaptor& mAdaptor;
    const WatchedHost& mHost;
    const QString mFolder;
    CheckReport& mReport;
};
