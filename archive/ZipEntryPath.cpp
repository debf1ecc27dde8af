#include "archive/ZipEntryPath.h"

#include <algorithm>

namespace Morvane
{
namespace
{
bool hasDriveLetter(const QString& name)
{
    const ushort first = name.at(0).toLower().unicode();
    return name.size() >= 2 && first >= 'a' && first <= 'z' && name.at(1) == QLatin1Char(':');
}

// Whether Windows would open a device under the name. It looks at what stands before the first dot, without
// blanks at its end, and takes the superscript digits for digits.
bool isDeviceName(const QString& name)
{
    static const QStringList plain = {QStringLiteral("CON"),    QStringLiteral("PRN"),
                                      QStringLiteral("AUX"),    QStringLiteral("NUL"),
                                      QStringLiteral("CONIN$"), QStringLiteral("CONOUT$")};
    static const QString digits = QStringLiteral("0123456789\u00B9\u00B2\u00B3");
    const auto isEnd = [](QChar character) { return character == u'.' || character == u':'; };
    const auto end = std::find_if(name.begin(), name.end(), isEnd);
    QString stem = name.left(static_cast<int>(end - name.begin())).toUpper();
    while (stem.endsWith(QLatin1Char(' ')))
        stem.chop(1);
    const bool isPort = stem.startsWith(QLatin1String("COM")) || stem.startsWith(QLatin1String("LPT"));
    return plain.contains(stem) || (isPort && stem.size() == 4 && digits.contains(stem.at(3)));
}

QString findRefusal(const QString& name, const QStringList& parts)
{
    if (name.isEmpty())
        return QStringLiteral("it has no name");
    if (name.contains(QChar::Null))
        return QStringLiteral("its name holds a NUL");
    if (name.startsWith(QLatin1Char('/')) || hasDriveLetter(name))
        return QStringLiteral("its name is an absolute path");
    if (parts.contains(QStringLiteral("..")))
        return QStringLiteral("its name leads out of the destination folder");
    if (std::any_of(parts.begin(), parts.end(), isDeviceName))
        return QStringLiteral("its name is that of a device");
    if (!std::all_of(parts.begin(), parts.end(), canHoldName))
        return QStringLiteral("the file system can't hold its name");
    return {};
}
}  // namespace

ZipEntryPath::ZipEntryPath(const QString& name)
{
    for (const QString& part : name.split(QLatin1Char('/'))) {
        if (!part.isEmpty() && part != QLatin1String("."))
            parts.append(part);
    }
    refusal = findRefusal(name, parts);
}
}  // namespace Morvane
