#include "export/ProducedOutput.h"

#include "foundation/files/FileSystem.h"
#include "foundation/trace/GTrace.h"

#include <QDir>
#include <QFile>

namespace
{
using Morvane::FileSystem::ItemKind;

const QByteArray cPDFMark = QByteArrayLiteral("%PDF-");

// Asked before anything is opened: a pipe in the place of a file would not answer.
bool IsKind(const GPathName& path, ItemKind kind)
{
    return Morvane::FileSystem::getItemKind(path.GetPortablePath()) == kind;
}

bool Report(bool isThere, const GPathName& path)
{
    if (!isThere)
        GTrace::Error(
            QStringLiteral("ProducedOutput"),
            QStringLiteral("The host's command reported success, but left nothing usable at \"%1\".")
                .arg(path.GetNativePath()));
    return isThere;
}
}  // namespace

bool ProducedOutput::IsPDF(const GPathName& path)
{
    QFile file(path.GetNativePath());
    return Report(IsKind(path, ItemKind::File) && file.open(QIODevice::ReadOnly) &&
                      file.read(cPDFMark.size()) == cPDFMark,
                  path);
}

bool ProducedOutput::IsFilledFolder(const GPathName& path)
{
    const QDir::Filters everything = QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System;
    return Report(IsKind(path, ItemKind::Folder) && !QDir(path.GetNativePath()).isEmpty(everything), path);
}
