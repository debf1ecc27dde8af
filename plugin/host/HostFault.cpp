#include "plugin/host/HostFault.h"

#include "foundation/core/GException.h"
#include "foundation/trace/GTrace.h"

GString HostFault::Describe()
{
    try {
        throw;
    } catch (const GException& error) {
        return error.GetDescription();
    } catch (const std::exception& error) {
        return GString::fromLocal8Bit(error.what());
    } catch (...) {
        return QStringLiteral(
            QT_TRANSLATE_NOOP("HostFault", "The host raised something that is no exception."));
    }
}

void HostFault::Contain(const char* source, const std::function<void()>& calls) noexcept
{
    try {
        calls();
    } catch (...) {
        GTrace::Error(QString::fromLatin1(source), Describe());
    }
}

int32_t HostFault::CheckCount(int32_t count)
{
    constexpr int32_t cMost = 1'000'000;
    if (count >= 0 && count <= cMost)
        return count;
    GTrace::Error(QStringLiteral("HostFault::CheckCount"), QString::number(count));
    throw std::range_error(QT_TRANSLATE_NOOP("HostFault", "The host gave a count that can't be."));
}
