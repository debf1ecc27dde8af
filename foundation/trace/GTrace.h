#pragma once

#include "foundation/core/GString.h"
#include "foundation/trace/ILogInterface.h"

#include <functional>
#include <memory>

// What is called when an assertion does not hold, with the operation that reports it and its message.
using GAssertCallback = std::function<void(const GString& source, const GString& message)>;

// The process-wide trace: all code reports to it, and it passes each line to the installed logger. Without a
// logger it does nothing.
//
// Every operation may be called from any thread, also from a logger or a callback. None of them throws.
class GTrace
{
public:
    // Installs the logger, or none; gives the old one. A line that another thread is writing may still reach
    // the old logger, which lives until that line is written.
    static std::shared_ptr<Morvane::ILogInterface> SetLogger(
        std::shared_ptr<Morvane::ILogInterface> logger) noexcept;

    // The installed logger, or none.
    static std::shared_ptr<Morvane::ILogInterface> GetLogger() noexcept;

    // Whether a logger is installed: ask this before you build a message that takes time.
    static bool IsOn() noexcept;

    // `source` is the qualified name of the operation that reports, such as "GLockFile::Open".
    static void Debug(const GString& source, const GString& message) noexcept;
    static void Error(const GString& source, const GString& message) noexcept;

    // Reports that what cannot happen has happened: a line at the assertion level, then every callback in the
    // order in which they were added. Returns to the caller, which goes on as well as it can, because the
    // process belongs to the host.
    static void Assert(const GString& source, const GString& message) noexcept;

    // Adds a callback; gives the number under which it is removed. If a callback throws, that is logged and
    // not passed on.
    static int AddAssertCallback(GAssertCallback callback);

    // Removes a callback; a number that is not known is ignored. An assertion that is running on another
    // thread may still call it.
    static void RemoveAssertCallback(int number) noexcept;

private:
    static void Log(Morvane::LogLevel level, const GString& source, const GString& message) noexcept;
};
