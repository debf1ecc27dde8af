#pragma once

#include "apps/hopboxctl/Command.h"
#include "foundation/trace/ILogInterface.h"

#include <atomic>

// A log that shows what the layers below report to whoever runs the program.
class ErrorPrinter : public Morvane::ILogInterface
{
public:
    void log(Morvane::LogLevel level, const QString&, const QString& message) noexcept override
    {
        if (level == Morvane::LogLevel::Debug)
            return;
        mHasErrors = true;
        PrintError(message);
    }

    bool hasErrors() const { return mHasErrors; }

private:
    std::atomic<bool> mHasErrors{false};
};
