#include "foundation/core/GFileOutputStream.h"

#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"

#include <QDir>

GFileOutputStream::GFileOutputStream(const GString& path) : mFile(path)
{
    Check(mFile.open(QIODevice::WriteOnly | QIODevice::Truncate));
}

void GFileOutputStream::Write(const char* bytes, int count)
{
    Check(mFile.write(bytes, count) == count);
}

void GFileOutputStream::Close()
{
    if (!mFile.isOpen())
        return;
    Check(mFile.flush());
    mFile.close();
    Check(mFile.error() == QFileDevice::NoError);
}

void GFileOutputStream::Check(bool isDone) const
{
    if (isDone)
        return;
    throw GCustomException(GErrorCode::cFile,
                           QStringLiteral("The file \"%1\" could not be written: %2")
                               .arg(QDir::toNativeSeparators(mFile.fileName()), mFile.errorString()));
}
