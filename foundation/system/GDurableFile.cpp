#include "foundation/system/GDurableFile.h"

#include "foundation/system/GProcessInfo.h"
#include "foundation/system/GSystemError.h"
#include "foundation/system/GUniqueName.h"

#include <QCryptographicHash>
#include <QDir>
#include <QSysInfo>

static constexpr int cBufferSize = 64 * 1024;

GDurableFile::GDurableFile(const GPathName& target, Access access)
    : mTarget(FollowLinks(target)), mAccess(access)
{
    RemoveLeftovers();
    OpenTemporary();
    mBuffer.reserve(cBufferSize);
}

GResult GDurableFile::Replace(const GString& path, const GBuffer& content)
{
    return GResult::Catch([&] {
        GDurableFile file{GPathName(path)};
        file.Write(content.constData(), content.size());
        file.Commit();
    });
}

GDurableFile::~GDurableFile()
{
    RemoveTemporary();
}

void GDurableFile::Write(const char* bytes, int count)
{
    if (mBuffer.size() + count > cBufferSize)
        FlushBuffer();
    if (count >= cBufferSize)
        WriteNow(bytes, count);
    else
        mBuffer.append(bytes, count);
}

void GDurableFile::Prepare()
{
    FlushBuffer();
    FlushToDisk();
    GiveName();
}

void GDurableFile::Commit()
{
    Prepare();
    PutInPlace();
}

const PTemporaryName::Maker& GDurableFile::GetOwnMaker()
{
    static const PTemporaryName::Maker own = [] {
        const QByteArray id = QSysInfo::machineUniqueId();
        const QByteArray name = id.isEmpty() ? QSysInfo::machineHostName().toUtf8() : id;
        const QByteArray digest = QCryptographicHash::hash(name, QCryptographicHash::Sha256).toHex();
        const uint32_t number = GProcessInfo::GetOwnProcessID();
        return PTemporaryName::Maker{number, GProcessInfo::GetStartTime(number),
                                     QString::fromLatin1(digest.left(8))};
    }();
    return own;
}

GPathName GDurableFile::MakeTemporaryName() const
{
    const GString folder = mTarget.GetPortablePath().chopped(mTarget.GetLeaf().size());
    return GPathName(folder + PTemporaryName::Make(mTarget.GetLeaf(), GetOwnMaker(), MakeRandomName(6)));
}

void GDurableFile::RemoveLeftovers() const
{
    const QStringList wildcards = {QStringLiteral("*.new"), QStringLiteral("*.new.old")};
    const QDir folder(QFileInfo(mTarget.GetNativePath()).absolutePath());
    for (const GString& name : folder.entryList(wildcards, QDir::Files | QDir::Hidden)) {
        if (const std::optional<PTemporaryName> left = PTemporaryName::Read(name, mTarget.GetLeaf()))
            RemoveLeftover(GPathName(folder.absoluteFilePath(name)), left->maker);
    }
}

void GDurableFile::FlushBuffer()
{
    WriteNow(mBuffer.constData(), mBuffer.size());
    mBuffer.resize(0);  // keeps the memory
}

void GDurableFile::RaiseWriteError() const
{
    RaiseFileError(QStringLiteral("The file \"%1\" can't be written"), mTarget, GetLastSystemError());
}
