#pragma once

#include <QString>
#include <QTemporaryDir>

// A root of its own for everything that the system keeps: while one lives, MORVANE_ROOT names its folder, so
// that a test meets neither the user's files nor another test's. Child processes inherit it.
class Sandbox
{
public:
    Sandbox();
    ~Sandbox();
    Sandbox(const Sandbox&) = delete;
    Sandbox& operator=(const Sandbox&) = delete;

    // The absolute path of the root, or of a name below it, with '/' separators.
    QString GetPath() const;
    QString GetPath(const QString& relative) const;

private:
    QTemporaryDir mFolder;
    QByteArray mPreviousRoot;
};
