#include "foundation/system/GLockByFile.h"

#include <QThread>

static constexpr int cMostDenials = 20;

GLockByFile::GLockByFile(const GPathName& path, GLockType type, GLockWait wait) : mFile(path)
{
    int denials = 0;
    for (;;) {
        const GLockFile::Result result = mFile.TryLock(type);
        if (result == GLockFile::Result::cLocked)
            return;
        if (result == GLockFile::Result::cDenied &&
            (wait == GLockWait::cTryOnce || ++denials == cMostDenials))
            RaiseLockError(path, QStringLiteral("access is denied"));
        if (wait == GLockWait::cTryOnce)
            return;
        QThread::msleep(cPause);
    }
}
