#include "export/JobOptionsFolder.h"

#include "foundation/system/GFileSystemBase.h"

#include <QDir>
#include <QRegularExpression>

const GString JobOptionsFolder::cPlacedName = QStringLiteral("Morvane_Hopbox_PDF.joboptions");

const GPathName& JobOptionsFolder::GetPath()
{
    static const GPathName path = GFileSystemBase::GetSpecialPath(GSpecialPath::cHostSettingsParent)
                                      .GetChild(QStringLiteral("Adobe/Adobe PDF/Settings"));
    return path;
}

bool JobOptionsFolder::IsPlacedFile(const GPathName& path)
{
    static const QRegularExpression name(
        QStringLiteral("\\AMorvane_Hopbox_PDF(_[0-9a-z]{5})?\\.joboptions\\z"));
    return path.GetParent() == GetPath() && name.match(path.GetLeaf()).hasMatch();
}

void JobOptionsFolder::RemovePlacedFile(const GPathName& path)
{
    GFileSystemBase::DropFile(path);
    // A copy is made under a passing name, the file's own with an ending.
    const QStringList passing = {path.GetLeaf() + QStringLiteral(".????????.new")};
    const QDir folder(GetPath().GetNativePath());
    for (const QString& leaf : folder.entryList(passing, QDir::Files | QDir::Hidden | QDir::System))
        GFileSystemBase::DropFile(GetPath().GetChild(leaf));
}
