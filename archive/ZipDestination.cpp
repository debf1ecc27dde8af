#include "archive/ZipDestination.h"

#include "foundation/files/FileSystem.h"
#include "foundation/system/GOwnedFile.h"
#include "foundation/system/GSystemError.h"
#include "foundation/system/GUniqueName.h"

#include <QDir>
#include <QRegularExpression>

#include <limits>

namespace Morvane
{
// Of our own form: what is found under such a name is taken away.
static QString makeTemporaryName()
{
    return QStringLiteral(".hopbox-%1.part").arg(MakeRandomName(12));
}

// What extractions that were killed have left in a folder.
static void removeLeftovers(const ZipFolder& folder)
{
    static const QRegularExpression ours(QStringLiteral("^\\.hopbox-[0-9a-z]{12}\\.part$"));
    const QString path = folder.getPath(QString());
    const QStringList wildcard = {QStringLiteral(".hopbox-*.part")};
    for (const QString& name : QDir(path).entryList(wildcard, QDir::Files | QDir::Hidden)) {
        if (ours.match(name).hasMatch())
            GOwnedFile::RemoveUnowned(GPathName(path + name));
    }
}

ZipDestination::ZipDestination(const QString& path) : mPath(QDir(path).absolutePath())
{
    mFiles.setLogInterface(this);
}

ZipDestination::~ZipDestination() = default;

QString ZipDestination::getPath(const QStringList& parts) const
{
    return parts.isEmpty() ? mPath : QDir(mPath).filePath(parts.join(QLatin1Char('/')));
}

bool ZipDestination::makeFolder(const QStringList& parts, int mode)
{
    return goTo(parts, true) && (mLevels.back().folder->addMode(mode) || failBySystem());
}

qint64 ZipDestination::getFreeSpace()
{
    qint64 bytes = 0;
    return mFiles.getFreeSpace(mPath, &bytes) ? bytes : std::numeric_limits<qint64>::max();
}

// The file handler was given a path through the open folder, which tells people nothing.
void ZipDestination::log(LogLevel level, const QString& source, const QString& message) noexcept
{
    QString text = message;
    QStringList parts;
    for (size_t depth = 1; depth < mLevels.size(); ++depth)
        parts.append(mLevels[depth].name);
    if (!mLevels.empty())
        text.replace(mLevels.back().folder->getPath(QString()), getPath(parts) + QLatin1Char('/'));
    mLog.log(level, source, text);
}

// Called before anything else is asked of the system.
bool ZipDestination::failBySystem()
{
    mReason = GetReasonText(GetLastSystemError());
    return false;
}

bool ZipDestination::goTo(const QStringList& parts, bool isMaking)
{
    if (mLevels.empty() && !openRoot(isMaking))
        return false;
    size_t common = 0;
    while (common < static_cast<size_t>(parts.size()) && common + 1 < mLevels.size() &&
           mLevels[common + 1].name == parts.at(static_cast<int>(common)))
        ++common;
    mLevels.resize(common + 1);
    for (const QString& name : parts.mid(static_cast<int>(common))) {
        if (!descend(name, isMaking))
            return false;
    }
    return true;
}

bool ZipDestination::openRoot(bool isMaking)
{
    if (isMaking && !QDir().mkpath(mPath))
        return failBySystem();
    std::unique_ptr<ZipFolder> root = ZipFolder::openRoot(mPath);
    if (root == nullptr)
        return failBySystem();
    mLevels.push_back({QString(), std::move(root)});
    return true;
}

bool ZipDestination::descend(const QString& name, bool isMaking)
{
    const ZipFolder& parent = *mLevels.back().folder;
    const bool isMade = isMaking && parent.makeFolder(name);
    const boost::system::error_code makeError = GetLastSystemError();
    std::unique_ptr<ZipFolder> folder = parent.openFolder(name);
    if (folder == nullptr) {
        // What is not there could not be made, and that is why.
        const boost::system::error_code openError = GetLastSystemError();
        const bool isMissing = openError == boost::system::errc::no_such_file_or_directory;
        mReason = GetReasonText(isMaking && isMissing ? makeError : openError);
        return false;
    }
    mLevels.push_back({name, std::move(folder)});
    if (isMade) {
        QStringList parts;
        for (size_t level = 1; level < mLevels.size(); ++level)
            parts.append(mLevels[level].name);
        mMadeFolders.push_back(parts);
    }
    return true;
}

void ZipDestination::removeMadeFolders()
{
    for (auto made = mMadeFolders.rbegin(); made != mMadeFolders.rend(); ++made)
        static_cast<void>(remove(*made));  // one that is in use by now stays
    mMadeFolders.clear();
}

bool ZipDestination::remove(const QStringList& parts)
{
    if (parts.isEmpty() || !goTo(parts.mid(0, parts.size() - 1), false))
        return false;
    const ZipFolder& folder = *mLevels.back().folder;
    FileIdentity identity;
    switch (folder.look(parts.last(), identity)) {
        case ZipFolder::Found::File:
        case ZipFolder::Found::ReadOnlyFile:
        case ZipFolder::Found::Link:
            return mFiles.removeFileAlone(folder.getPath(parts.last()));
        default:
            return folder.removeFolder(parts.last());
    }
}

void ZipDestination::startAnew()
{
    mWritten.clear();
    mMadeFolders.clear();
    closeFolders();
}

void ZipDestination::closeFolders()
{
    mLevels.clear();
}

ZipTarget::ZipTarget(ZipDestination& destination) : mDestination(destination) {}

ZipTarget::~ZipTarget()
{
    mFile.reset();
    removeTemporary();
}

ZipFolder& ZipTarget::getFolder() const
{
    return *mDestination.mLevels.back().folder;
}

ZipTarget::Result ZipTarget::begin(const QString& name, int entryIndex)
{
    mName = name;
    mEntryIndex = entryIndex;
    bool isFree = false;
    const Result looked = lookAtTarget(isFree);
    if (looked != Result::Done)
        return looked;
    mFile = getFolder().makeNameless();
    return mFile != nullptr || makeTemporary() ? Result::Done : Result::CannotMake;
}

ZipTarget::Result ZipTarget::lookAtTarget(bool& isFree) const
{
    FileIdentity identity;
    const ZipFolder::Found found = getFolder().look(mName, identity);
    isFree = found == ZipFolder::Found::Nothing;
    if (isFree)
        return Result::Done;
    if (found != ZipFolder::Found::File && found != ZipFolder::Found::Link) {
        mDestination.mReason = found == ZipFolder::Found::ReadOnlyFile
                                   ? QStringLiteral("a file that is read-only has the name")
                                   : QStringLiteral("something that is no file has the name");
        return Result::CannotMake;
    }
    const auto written = mDestination.mWritten.find(identity);
    const bool isOther = written != mDestination.mWritten.end() && written->second != mEntryIndex;
    return isOther ? Result::TakenByOther : Result::Done;
}

// Fails at once where it is not the name that stands in the way.
bool ZipTarget::makeTemporary()
{
    FileIdentity identity;
    clearFolder();
    do {
        mTemporaryName = makeTemporaryName();
        mFile = getFolder().makeFile(mTemporaryName);
        if (mFile != nullptr) {
            mOwner = mFile->own();
            return true;
        }
        mDestination.failBySystem();
    } while (getFolder().look(mTemporaryName, identity) != ZipFolder::Found::Nothing);
    mTemporaryName.clear();
    return false;
}

// Once for each folder, as long as it is open.
void ZipTarget::clearFolder()
{
    ZipDestination::Level& level = mDestination.mLevels.back();
    if (!level.isCleared)
        removeLeftovers(*level.folder);
    level.isCleared = true;
}

bool ZipTarget::commit()
{
    mDestination.mReason.clear();
    const std::optional<FileIdentity> identity = mFile->getIdentity();
    const bool isInPlace = identity.has_value() ? putInPlace() : mDestination.failBySystem();
    mFile.reset();
    if (isInPlace)
        mDestination.mWritten[*identity] = mEntryIndex;
    return isInPlace;
}

// A file without a name gets its own at once where that is free; a taken one has to be replaced by name.
bool ZipTarget::putInPlace()
{
    if (mTemporaryName.isEmpty()) {
        if (getFolder().giveName(*mFile, mName))
            return closeInPlace();
        clearFolder();
        mTemporaryName = makeTemporaryName();
        mOwner = mFile->own();
        if (!getFolder().giveName(*mFile, mTemporaryName)) {
            mTemporaryName.clear();
            return mDestination.failBySystem();
        }
    }
    bool isFree = false;
    if (!ZipFolder::keep(*mFile) || !mFile->close())
        return mDestination.failBySystem();
    if (lookAtTarget(isFree) != Result::Done)
        return false;
    const bool isInPlace = isFree ? mDestination.mFiles.renameFile(getFolder().getPath(mTemporaryName),
                                                                   getFolder().getPath(mName))
                                  : getFolder().replaceFile(mTemporaryName, mName);
    if (!isInPlace)
        return mDestination.failBySystem();
    mTemporaryName.clear();
    return true;
}

// Some file systems tell only now that bytes were lost.
bool ZipTarget::closeInPlace()
{
    if (mFile->close())
        return true;
    mDestination.failBySystem();
    static_cast<void>(
        mDestination.mFiles.removeFileAlone(getFolder().getPath(mName)));  // it has failed already
    return false;
}

void ZipTarget::removeTemporary()
{
    if (!mTemporaryName.isEmpty())
        static_cast<void>(mDestination.mFiles.removeFile(getFolder().getPath(mTemporaryName)));
    mTemporaryName.clear();
}
}  // namespace Morvane
