#include "foundation/prefs/GFolderSubstitution.h"

#include "foundation/system/GFileSystemBase.h"

static const QLatin1Char cSeparator('/');

GFolderSubstitution::GFolderSubstitution(const GString& variable, int32_t specialPath)
    : mVariable(variable), mSpecialPath(specialPath)
{
}

bool GFolderSubstitution::IsResponsible(Kind kind) const
{
    return kind == Kind::cPathName;
}

GString GFolderSubstitution::InsertVariables(const GString& text) const
{
    const GPathName path(text);
    if (!path.IsAbsolute())
        return text;
    const GPathName folder = GFileSystemBase::GetSpecialPath(mSpecialPath);
    if (path == folder)
        return mVariable;
    return path.IsBelow(folder) ? mVariable + cSeparator + path.GetRelativeTo(folder).GetPortablePath()
                                : text;
}

GString GFolderSubstitution::ReplaceVariables(const GString& text) const
{
    if (!text.startsWith(mVariable))
        return text;
    const GPathName folder = GFileSystemBase::GetSpecialPath(mSpecialPath);
    if (text.size() == mVariable.size())
        return folder.GetNativePath();
    const bool isBelow = text.at(mVariable.size()) == cSeparator;
    return isBelow ? folder.GetChild(text.mid(mVariable.size() + 1)).GetNativePath() : text;
}
