#include "foundation/core/GPathName.h"

#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/core/GPathNameRules.h"

#include <QStringList>

namespace
{
const QLatin1Char cSeparator('/');
const QLatin1String cShare("//");
const QLatin1String cHere(".");
const QLatin1String cUp("..");
const QLatin1String cStepUp("../");

[[noreturn]] void RaiseIllegalPath(const GString& path)
{
    throw GCustomException(GErrorCode::cIllegalPath,
                           QStringLiteral("The path \"%1\" is not a legal one.").arg(path));
}

// Whether the name stands for a folder known from elsewhere instead of naming it.
bool IsSymbolic(const QStringRef& name)
{
    return name.size() <= cUp.size() && (name == cHere || name == cUp);
}

// Whether the tidy relative path begins with a step up.
bool LeadsUp(const GString& relativePath)
{
    return relativePath == cUp || relativePath.startsWith(cStepUp);
}

// Raises on a name that no file can bear. Gives whether the path is tidy as it stands.
bool CheckNames(const GString& portable, int rootLength, const GString& original)
{
    // A root of a server and a share has names that are checked like any other.
    bool isTidy = true;
    for (int begin = portable.startsWith(cShare) ? 0 : rootLength; begin <= portable.size();) {
        const int separator = portable.indexOf(cSeparator, begin);
        const int end = separator < 0 ? portable.size() : separator;
        const QStringRef name(&portable, begin, end - begin);
        const bool isSymbolic = IsSymbolic(name);
        if (!isSymbolic && !GPathNameRules::IsLegalName(name))
            RaiseIllegalPath(original);
        isTidy = isTidy && !isSymbolic && !name.isEmpty();
        begin = end + 1;
    }
    return isTidy;
}

// Takes one name of a path into the tidy names before it.
void AppendName(QStringList& names, const GString& name, bool isAbsolute)
{
    if (name.isEmpty() || name == cHere)
        return;
    const bool hasNameBefore = !names.isEmpty() && names.last() != cUp;
    if (name == cUp && hasNameBefore)
        names.removeLast();
    else if (name != cUp || !isAbsolute)
        names.append(name);
}

GString GetTidyRoot(const GString& portablePath, int rootLength)
{
    GString root = portablePath.left(rootLength);
    if (rootLength > 0 && !root.endsWith(cSeparator))
        root.append(cSeparator);
    return root;
}

// Where the dot of the extension stands in a leaf, or the leaf's length when it has none.
int GetExtensionDot(const GString& leaf)
{
    const int dot = leaf.lastIndexOf(QLatin1Char('.'));
    return dot <= 0 || dot == leaf.size() - 1 ? leaf.size() : dot;
}
}  // namespace

GPathName::GPathName(const GString& nativeOrPortablePath)
{
    if (nativeOrPortablePath.isEmpty())
        return;
    const GString portable = GPathNameRules::ToPortable(nativeOrPortablePath);
    const int rootLength = GPathNameRules::GetRootLength(portable);
    if (rootLength < 0 || portable.isEmpty())
        RaiseIllegalPath(nativeOrPortablePath);
    if (CheckNames(portable, rootLength, nativeOrPortablePath)) {
        mPath = portable;
        mRootLength = rootLength;
        return;
    }
    const GString root = GetTidyRoot(portable, rootLength);
    QStringList names;
    for (const GString& name : portable.mid(rootLength).split(cSeparator))
        AppendName(names, name, rootLength > 0);
    mPath = root + names.join(cSeparator);
    mRootLength = root.size();
    if (mPath.isEmpty())
        mPath = cHere;
}

bool GPathName::IsLegal(const QStringRef& nativeOrPortablePath)
{
    if (GPathNameRules::IsPlainlyLegal(nativeOrPortablePath))
        return true;
    try {
        const GPathName path(nativeOrPortablePath.toString());
        return true;
    } catch (const GCustomException&) {
        return false;
    }
}

GString GPathName::GetNativePath() const
{
    return GPathNameRules::ToNative(mPath);
}

GString GPathName::GetSystemPath() const
{
    return GPathNameRules::ToSystem(mPath);
}

GString GPathName::GetLeaf() const
{
    return mPath.mid(qMax(mRootLength, mPath.lastIndexOf(cSeparator) + 1));
}

GString GPathName::GetLeafWithoutExtension() const
{
    const GString leaf = GetLeaf();
    return leaf.left(GetExtensionDot(leaf));
}

GString GPathName::GetExtension() const
{
    const GString leaf = GetLeaf();
    return leaf.mid(GetExtensionDot(leaf) + 1);
}

GPathName GPathName::WithExtension(const GString& extension) const
{
    const GString leaf = GetLeaf();
    if (leaf.isEmpty() || IsSymbolic(QStringRef(&leaf)) ||
        GPathNameRules::ToPortable(extension).contains(cSeparator))
        RaiseIllegalPath(mPath + QLatin1Char('.') + extension);
    GString path = mPath.left(mPath.size() - leaf.size() + GetExtensionDot(leaf));
    if (!extension.isEmpty())
        path += QLatin1Char('.') + extension;
    return GPathName(path);
}

GPathName GPathName::GetParent() const
{
    const GString leaf = GetLeaf();
    if (leaf.isEmpty() || IsSymbolic(QStringRef(&leaf)))
        return GPathName();
    return GPathName(mPath.left(mPath.size() - leaf.size()));
}

GPathName GPathName::GetChild(const GString& leafOrRelative) const
{
    const GPathName relative(leafOrRelative);
    if (relative.IsEmpty() || relative.IsAbsolute() || relative.mPath == cHere || LeadsUp(relative.mPath))
        RaiseIllegalPath(leafOrRelative);
    if (IsEmpty())
        return relative;
    return GPathName(IsRoot() ? mPath + relative.mPath : mPath + cSeparator + relative.mPath);
}

bool GPathName::IsBelow(const GPathName& base) const
{
    if (base.IsEmpty() || mRootLength != base.mRootLength)
        return false;
    const GString folder = base.IsRoot() ? base.mPath : base.mPath + cSeparator;
    return mPath.size() > folder.size() && mPath.startsWith(folder, GPathNameRules::cCaseSensitivity) &&
           !LeadsUp(mPath.mid(folder.size()));
}

GPathName GPathName::GetRelativeTo(const GPathName& base) const
{
    if (!IsBelow(base)) {
        throw GCustomException(GErrorCode::cIllegalPath,
                               QStringLiteral("The path \"%1\" does not lie below \"%2\".")
                                   .arg(GetNativePath(), base.GetNativePath()));
    }
    return GPathName(mPath.mid(base.IsRoot() ? base.mPath.size() : base.mPath.size() + 1));
}

bool GPathName::operator==(const GPathName& other) const
{
    return mPath.compare(other.mPath, GPathNameRules::cCaseSensitivity) == 0;
}
