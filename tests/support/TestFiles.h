#pragma once

#include <QFile>
#include <QMap>

// The path of a program of this build, by its file's name. Needs a QCoreApplication.
QString GetProgramPath(const char* name);

// The bytes of a file; "none" when it can't be read.
QByteArray ReadFile(const QString& path);

// Makes the file hold just the bytes, and the folders above it. False when that fails.
bool WriteFile(const QString& path, const QByteArray& content);

// The same with a program that its owner may run.
bool WriteProgram(const QString& path, const QByteArray& content);

// The names of all that is in a folder itself, in order.
QStringList ListFolder(const QString& folder);

// Every file below a folder with its content, and every folder with a '/' at its end, by relative path.
QMap<QString, QByteArray> ReadTree(const QString& folder);
