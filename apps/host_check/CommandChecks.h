#pragma once

#include "plugin/boundary/hopbox_adaptor.h"

#include <QString>

class CheckReport;
class WatchedHost;

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
    void CheckKind(hopbox_command kind, uint64_t source);
    void CheckSettings(hopbox_command kind);
    void CheckSpreadsAndName(uint64_t command, hopbox_command kind);
    void CheckFailures(hopbox_command kind, uint64_t source);
    void CheckCancel(hopbox_command kind, uint64_t source);
    void CheckResult(hopbox_command kind, uint64_t source);
    void ExpectTaken(int32_t result, const char* operation, int32_t setting);
    uint64_t Make(hopbox_command kind, uint64_t source, const QString& output);
    [[nodiscard]] bool TellSource(hopbox_command kind, uint64_t command, uint64_t source);
    [[nodiscard]] bool TellSettings(uint64_t command);
    [[nodiscard]] bool TellBookSettings();
    [[nodiscard]] bool TellPages(uint64_t command, uint64_t document);
    template <class Operation, class... Arguments>
    [[nodiscard]] bool Tell(const char* name, Operation operation, Arguments... arguments);
    QString Reserve(hopbox_command kind, const char* purpose) const;

    const hopbox_adaptor& mAdaptor;
    const WatchedHost& mHost;
    const QString mFolder;
    CheckReport& mReport;
};
