#include "foundation/system/GDurableFile.h"

#include "foundation/system/GProcessInfo.h"
#include "foundation/system/GSystemError.h"
#include "foundation/system/GUniqueName.h"

#include <QCryptographicHash>
#include <QDir>
#include <QRegularExpression>
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

const GDurableFile::Maker& GDurableFile::Maker::GetOwn()
{
    static const Maker own = [] {
        const QByteArray id = QSysInfo::machineUniqueId();
        const QByteArray name = id.isEmpty() ? QSysInfo::machineHostName().toUtf8() : id;
        const QByteArray digest = QCryptographicHash::hash(name, QCryptographicHash::Sha256).toHex();
        const uint32_t number = GProcessInfo::GetOwnProcessID();
        return Maker{number, GProcessInfo::GetStartTime(number), QString::fromLatin1(digest.left(8))};
    }();
    return own;
}

// What the names of the target's temporary files begin with: its own name, or, where that would leave no room
// for the rest, the beginning of it and a digest of it all.
GString GDurableFile::GetTemporaryStem() const
{
    constexpr int cMostBytes = 190;  // of the 255 that file systems take
    constexpr int cBeginning = 40;   // characters
    constexpr int cDigest = 16;
    const GString leaf = mTarget.GetLeaf();
    if (leaf.toUtf8().size() <= cMostBytes)
        return leaf;
    GString beginning = leaf.left(cBeginning);
    if (beginning.at(beginning.size() - 1).isHighSurrogate())
        beginning.chop(1);
    const QByteArray digest = QCryptographicHash::hash(leaf.toUtf8(), QCryptographicHash::Sha256).toHex();
    return beginning + QLatin1Char('~') + QString::fromLatin1(digest.left(cDigest));
}

GPathName GDurableFile::MakeTemporaryName() const
{
    const Maker& own = Maker::GetOwn();
    const GString suffix = QStringLiteral(".%1-%2-%3-%4.new")
                               .arg(QString::number(own.process), QString::number(own.startTime, 16),
                                    own.machine, MakeRandomName(6));
    const GString folder = mTarget.GetPortablePath().chopped(mTarget.GetLeaf().size());
    return GPathName(folder + GetTemporaryStem() + suffix);
}

void GDurableFile::RemoveLeftovers() const
{
    static const QRegularExpression cSuffix(
        QStringLiteral("^\\.([0-9]+)-([0-9a-f]+)-([0-9a-f]{8})-[0-9a-z]{6}\\.new(\\.old)?$"));
    const QStringList wildcards = {QStringLiteral("*.new"), QStringLiteral("*.new.old")};
    const GString stem = GetTemporaryStem();
    const QDir folder(QFileInfo(mTarget.GetNativePath()).absolutePath());
    for (const GString& name : folder.entryList(wildcards, QDir::Files | QDir::Hidden)) {
        if (!name.startsWith(stem))
            continue;
        const QRegularExpressionMatch match = cSuffix.match(name.mid(stem.size()));
        if (!match.hasMatch())
            continue;
        RemoveLeftover(
            GPathName(folder.absoluteFilePath(name)),
            {match.captured(1).toUInt(), match.captured(2).toULongLong(nullptr, 16), match.captured(3)});
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
