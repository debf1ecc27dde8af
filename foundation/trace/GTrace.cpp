#include "foundation/trace/GTrace.h"

#include <atomic>
#include <exception>
#include <map>
#include <mutex>
#include <vector>

using Morvane::ILogInterface;
using Morvane::LogLevel;

namespace
{
struct TraceState
{
    std::mutex mutex;  // guards all but isOn; never held while a logger or a callback runs
    std::shared_ptr<ILogInterface> logger;
    std::map<int, GAssertCallback> callbacks;
    int lastNumber = 0;
    std::atomic<bool> isOn{false};  // whether a logger is installed
};

// Never destroyed: threads and destructors of statics may trace until the process is gone.
TraceState& GetState()
{
    static auto* const state = new TraceState;
    return *state;
}

std::vector<GAssertCallback> GetCallbacks()
{
    TraceState& state = GetState();
    const std::lock_guard<std::mutex> guard(state.mutex);
    std::vector<GAssertCallback> callbacks;
    for (const auto& entry : state.callbacks)
        callbacks.push_back(entry.second);
    return callbacks;
}
}  // namespace

std::shared_ptr<ILogInterface> GTrace::SetLogger(std::shared_ptr<ILogInterface> logger) noexcept
{
    TraceState& state = GetState();
    const std::lock_guard<std::mutex> guard(state.mutex);
    state.logger.swap(logger);
    state.isOn = state.logger != nullptr;
    return logger;
}

std::shared_ptr<ILogInterface> GTrace::GetLogger() noexcept
{
    TraceState& state = GetState();
    const std::lock_guard<std::mutex> guard(state.mutex);
    return state.logger;
}

bool GTrace::IsOn() noexcept
{
    return GetState().isOn;
}

void GTrace::Debug(const GString& source, const GString& message) noexcept
{
    Log(LogLevel::Debug, source, message);
}

void GTrace::Error(const GString& source, const GString& message) noexcept
{
    Log(LogLevel::Error, source, message);
}

void GTrace::Assert(const GString& source, const GString& message) noexcept
{
    Log(LogLevel::Assert, source, message);
    try {
        for (const GAssertCallback& callback : GetCallbacks()) {
            try {
                callback(source, message);
            } catch (const std::exception& error) {
                Error(QStringLiteral("GTrace::Assert"), QString::fromUtf8(error.what()));
            } catch (...) {
                Error(QStringLiteral("GTrace::Assert"),
                      QStringLiteral("a callback threw something that is no exception"));
            }
        }
    } catch (...) {
        Log(LogLevel::Error, source, message);
    }
}

int GTrace::AddAssertCallback(GAssertCallback callback)
{
    TraceState& state = GetState();
    const std::lock_guard<std::mutex> guard(state.mutex);
    state.callbacks.emplace(++state.lastNumber, std::move(callback));
    return state.lastNumber;
}

void GTrace::RemoveAssertCallback(int number) noexcept
{
    TraceState& state = GetState();
    std::map<int, GAssertCallback>::node_type
        removed;  // destroyed after the lock is gone: it runs others' code
    const std::lock_guard<std::mutex> guard(state.mutex);
    removed = state.callbacks.extract(number);
}

void GTrace::Log(LogLevel level, const GString& source, const GString& message) noexcept
{
    if (!IsOn())
        return;
    if (const std::shared_ptr<ILogInterface> logger = GetLogger())
        logger->log(level, source, message);
}
