#pragma once

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
    bool CheckTable();

    // With the sample open.
    void CheckDocument();
    void CheckBook();
    void CheckCommands();
    void CheckApplication();

private:
    void CheckPages(uint64_t document);
    void CheckRanges(uint64_t document);
    void CheckSettings(uint64_t command);
    void CheckExport(uint64_t document);
    void CheckPackage(uint64_t document);
    uint64_t MakeExport(uint64_t document, const QString& output);
    void ExpectOneText(const char* operation, int32_t result, const class TextTaker& taker, bool isPath);

    const hopbox_adaptor& mAdaptor;
    const WatchedHost& mHost;
    const QString mFolder;
    CheckReport& mReport;
};
