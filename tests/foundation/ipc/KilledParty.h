#pragma once

#include <QString>
#include <QStringList>

#include <cstdint>
#include <memory>

// A second process of the test in a role, without a line to it, that is killed when it goes out of scope.
// Quick to make where the system lets a process be doubled.
class KilledParty
{
public:
    KilledParty(const QString& role, const QStringList& arguments);
    ~KilledParty();
    KilledParty(const KilledParty&) = delete;
    KilledParty& operator=(const KilledParty&) = delete;

    uint32_t GetID() const;

private:
    struct Process;

    std::unique_ptr<Process> mProcess;
};
