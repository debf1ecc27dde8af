#include "hopbox/TemporaryFolder.h"

#include "foundation/system/GFileSystemBase.h"
#include "foundation/system/GSystemError.h"
#include "foundation/system/GSystemFolders.h"
#include "foundation/system/GUniqueName.h"

#include <QDir>
#include <QRegularExpression>

namespace
{
const QString cPrefix = QStringLiteral("hopbox-");
const QString cSuffix = QStringLiteral(".owner");
constexpr int cRandomLength = 8;

GPathName GetParent()
{
    return GFileSystemBase::GetSpecialPath(GSpecialPath::cTemporary);
}

GPathName GetFolder(const GPathName& owner)
{
    GString path = owner.GetPortablePath();
    path.chop(cSuffix.size());
    return GPathName(path);
}

void RemoveLeftovers()
{
    static const QRegularExpression ours(QStringLiteral("^hopbox-[0-9a-z]{8}\\.owner$"));
    const GPathName parent = GetParent();
    const QStringList wildcard = {cPrefix + QLatin1Char('*') + cSuffix};
    for (const GString& name : QDir(parent.GetNativePath()).entryList(wildcard, QDir::Files | QDir::Hidden)) {
        if (!ours.match(name).hasMatch())
            continue;
        const GPathName owner = parent.GetChild(name);
        GOwnedFile::RemoveUnowned(owner,
                                  [&] { return GFileSystemBase::TryToRemoveFolder(GetFolder(owner)); });
    }
}

GPathName MakeOwnerPath()
{
    return GetParent().GetChild(cPrefix + MakeRandomName(cRandomLength) + cSuffix);
}
}  // namespace

TemporaryFolder::TemporaryFolder() : mOwner(MakeOwnerPath), mPath(GetFolder(mOwner.GetPathName()))
{
    RemoveLeftovers();
    if (!GSystemFolders::MakeFolder(mPath))
        RaiseFileError(QStringLiteral("The folder \"%1\" can't be made"), mPath, GetLastSystemError());
}

TemporaryFolder::~TemporaryFolder()
{
    if (!GFileSystemBase::TryToRemoveFolder(mPath))
        mOwner.Disown();  // by the file beside it the next one finds the folder
}
