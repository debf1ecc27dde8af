#include "apps/printer_processor/Options.h"

#include "foundation/core/GException.h"

#include <QDir>

#include <limits>

namespace
{
bool ParseCount(const QString& text, int& count)
{
    bool isNumber = false;
    count = text.toInt(&isNumber);
    return isNumber && count > 0;
}

bool ParseSeconds(const QString& text, int& milliseconds)
{
    bool isNumber = false;
    const double seconds = text.toDouble(&isNumber);
    if (!isNumber || !(seconds > 0) || seconds > std::numeric_limits<int>::max() / 1000)
        return false;
    milliseconds = qMax(1, static_cast<int>(seconds * 1000));
    return true;
}

bool ParseFolder(const QString& text, GPathName& folder)
{
    if (text.isEmpty())
        return false;
    try {
        folder = GPathName(QDir::current().absoluteFilePath(text));
        return true;
    } catch (const GException&) {
        return false;
    }
}

bool Take(const QString& option, const QString& value, Options& options)
{
    if (option == QLatin1String("--inbox"))
        return ParseFolder(value, options.inbox);
    if (option == QLatin1String("--count"))
        return ParseCount(value, options.count);
    if (option == QLatin1String("--timeout"))
        return ParseSeconds(value, options.milliseconds);
    return false;
}
}  // namespace

std::optional<Options> Options::Parse(const QStringList& arguments)
{
    Options options;
    for (int at = 0; at < arguments.size(); at += 2) {
        if (at + 1 == arguments.size() || !Take(arguments.at(at), arguments.at(at + 1), options))
            return {};
    }
    return options;
}
