#include "apps/hopboxctl/HopboxOptions.h"

#include "apps/hopboxctl/Command.h"
#include "apps/hopboxctl/HopboxOutput.h"
#include "apps/hopboxctl/JobOptionsCheck.h"

#include <QDir>
#include <QFileInfo>

bool HopboxOptions::IsUsable(const QString& what, const QString& text)
{
    if (!text.contains(QLatin1Char('\n')) && !text.contains(QLatin1Char('\r')))
        return true;
    PrintError(QStringLiteral("%1 may hold no line break: \"%2\".").arg(what, HopboxOutput::GetShown(text)));
    return false;
}

bool HopboxOptions::IsFile(const QString& option, const QString& path)
{
    if (!IsUsable(option, path))
        return false;
    const QFileInfo file(path);
    if (file.isFile() && file.isReadable())
        return true;
    PrintError(QStringLiteral("%1: there is no file \"%2\" that can be read.")
                   .arg(option, HopboxOutput::GetShown(path)));
    return false;
}

bool HopboxOptions::AreJobOptions(const QString& option, const QString& path)
{
    if (!IsFile(option, path))
        return false;
    const QString fault = JobOptionsCheck::FindFault(path);
    if (fault.isEmpty())
        return true;
    PrintError(QStringLiteral("%1: \"%2\" can't be used: %3.")
                   .arg(option, HopboxOutput::GetShown(path), HopboxOutput::GetShown(fault)));
    return false;
}

GPathName HopboxOptions::GetAbsolute(const QString& path)
{
    return path.isEmpty() ? GPathName() : GPathName(QDir::cleanPath(QDir::current().absoluteFilePath(path)));
}
