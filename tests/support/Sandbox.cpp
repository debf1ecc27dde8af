#include "tests/support/Sandbox.h"

#include <QDir>

#include <gtest/gtest.h>

static const char* const cRootVariable = "MORVANE_ROOT";

Sandbox::Sandbox() : mPreviousRoot(qgetenv(cRootVariable))
{
    if (!mFolder.isValid())
        ADD_FAILURE() << "No temporary folder: " << mFolder.errorString().toStdString();
    qputenv(cRootVariable, QDir::toNativeSeparators(GetPath()).toLocal8Bit());
}

Sandbox::~Sandbox()
{
    if (mPreviousRoot.isEmpty())
        qunsetenv(cRootVariable);
    else
        qputenv(cRootVariable, mPreviousRoot);
}

QString Sandbox::GetPath() const
{
    return QDir(mFolder.path()).absolutePath();
}

QString Sandbox::GetPath(const QString& relative) const
{
    return QDir(mFolder.path()).absoluteFilePath(relative);
}
