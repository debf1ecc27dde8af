#pragma once

#include "apps/host_check/TextTaker.h"

#include <QString>

class CheckReport;
class WatchedHost;
struct hopbox_adaptor;

// The operations of an adaptor one by one, each with what it has to do and with what it has to refuse.
class TableChecks
{
public:
    // The folder is empty and stays as long as this; what is written goes below it.
    TableChecks(const hopbox_adaptor& adaptor, const WatchedHost& host, const QString& folder,
                CheckReport& report);

    // What the table holds, and the host before anything is open. False when it can't be used at all.
    [[nodiscard]] bool CheckTable();

    // With the sample open.
    void CheckDocument();
    void CheckBook();

    // A document that is not saved comes to the front, and stays there.
    void CheckSaving();

    // Closes everything.
    void CheckClosing();

    // After the rest: what came back, and what was given with which answer.
    void CheckHandles();

private:
    void ExpectNothingOpen();
    void CheckOpening();
    void CheckPages(uint64_t document);
    void CheckRanges(uint64_t document);
    void ExpectOneText(const char* operation, int32_t result, const TextTaker& taker, bool isPath);

    const hopbox_adaptor& mAdaptor;
    const WatchedHost& mHost;
    const QString mFolder;
    CheckReport& mReport;
};
