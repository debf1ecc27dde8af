#include "TestFiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>

QString GetProgramPath(const char* name)
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/../bin/") + QString::fromLatin1(name);
}

QByteArray ReadFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("none");
}

bool WriteFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    return QDir().mkpath(QFileInfo(path).absolutePath()) && file.open(QIODevice::WriteOnly) &&
           file.write(content) == content.size();
}

bool WriteProgram(const QString& path, const QByteArray& content)
{
    return WriteFile(path, content) &&
           QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

QStringList ListFolder(const QString& folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

QMap<QString, QByteArray> ReadTree(const QString& folder)
{
    QMap<QString, QByteArray> tree;
    const QDir root(folder);
    QDirIterator items(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
    while (items.hasNext()) {
        const QString name = root.relativeFilePath(items.next());
        if (items.fileInfo().isDir() && !items.fileInfo().isSymLink())
            tree[name + QLatin1Char('/')] = QByteArray();
        else
            tree[name] = ReadFile(items.filePath());
    }
    return tree;
}
