#include "foundation/files/FolderEntries.h"

#include "foundation/files/CompanionFile.h"

#include <QDir>

#include <algorithm>

QStringList Morvane::listEntries(const QString& folder, FileSystem::Error* error)
{
    QStringList names;
    *error = FileSystem::listFolder(folder, &names);
    return names;
}

QStringList Morvane::listSortedEntries(const QString& folder, FileSystem::Error* error)
{
    QStringList names = listEntries(folder, error);
    if (*error == boost::system::errc::no_such_file_or_directory)
        error->clear();
    std::sort(names.begin(), names.end());
    return names;
}

QStringList Morvane::listEntriesToCarry(const QString& folder, FileSystem::Error* error)
{
    QStringList carried;
    QStringList names = listEntries(folder, error);
    std::sort(names.begin(), names.end());
    for (const QString& name : names) {
        const QString path = QDir(folder).filePath(name);
        if (!isCompanion(name) && FileSystem::getItemKind(path) != FileSystem::ItemKind::Folder)
            carried.append(QFileInfo(getCompanionPath(path)).fileName());
    }
    std::sort(carried.begin(), carried.end());
    const auto isCarried = [&carried](const QString& name) {
        return std::binary_search(carried.cbegin(), carried.cend(), name);
    };
    names.erase(std::remove_if(names.begin(), names.end(), isCarried), names.end());
    return names;
}

Morvane::FileSystem::Error Morvane::visitFiles(const QString& folder,
                                               const std::function<void(const QString&)>& visit)
{
    FileSystem::Error first;
    for (const QString& name : listSortedEntries(folder, &first)) {
        const QString path = QDir(folder).filePath(name);
        FileSystem::Error error;
        if (FileSystem::getItemKind(path, &error) == FileSystem::ItemKind::Folder)
            error = visitFiles(path, visit);
        else
            visit(path);
        if (!first)
            first = error;
    }
    return first;
}

bool Morvane::matchesWildcard(const QString& name, const QString& wildcard)
{
    return QDir::match(wildcard, name);
}

bool Morvane::matchesAnyWildcard(const QString& name, const QStringList& wildcards)
{
    return QDir::match(wildcards, name);
}
