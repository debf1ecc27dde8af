#include "plugin/host/HostFault.h"

#include "foundation/core/GException.h"
#include "foundation/trace/GTrace.h"

#include <string>

GString HostFault::Describe()
{
    try {
        throw;
    } catch (const GException& error) {
        return error.GetDescription();
    } catch (const std::exception& error) {
        return GString::fromLocal8Bit(error.what());
    } catch (...) {
        return QStringLiteral("The host raised something that is no exception.");
    }
}

bool HostFault::Contain(const char* source, const std::function<void()>& calls) noexcept
{
    try {
        calls();
        return true;
    } catch (...) {
        GTrace::Error(QString::fromLatin1(source), Describe());
        return false;
    }
}

int32_t HostFault::CheckCount(int32_t count)
{
    constexpr int32_t cMost = 1'000'000;
    if (count < 0 || count > cMost)
        throw std::range_error("The host gave a count that can't be: " + std::to_string(count));
    return count;
}
