#include "archive/ZipDestination.h"

#include <QCoreApplication>
#include <QDir>

#include <atomic>

namespace Morvane
{
ZipDestination::ZipDestination(const QString& path) : mPath(QDir(path).absolutePath()) {}

ZipDestination::~ZipDestination() = default;

QString ZipDestination::getPath(const QStringList& parts) const
{
    return parts.isEmpty() ? mPath : QDir(mPath).filePath(parts.join(QLatin1Char('/')));
}

bool ZipDestination::makeFolder(const QStringList& parts, int mode)
{
    return goTo(parts, true) && mLevels.back().folder->addMode(mode);
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
        return false;
    std::unique_ptr<ZipFolder> root = ZipFolder::openRoot(mPath);
    if (root == nullptr)
        return false;
    mLevels.push_back({QString(), std::move(root)});
    return true;
}

bool ZipDestination::descend(const QString& name, bool isMaking)
{
    const ZipFolder& parent = *mLevels.back().folder;
    const bool isMade = isMaking && parent.makeFolder(name);
    std::unique_ptr<ZipFolder> folder = parent.openFolder(name);
    if (folder == nullptr)
        return false;
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
        remove(*made);
    mMadeFolders.clear();
}

bool ZipDestination::remove(const QStringList& parts)
{
    if (parts.isEmpty() || !goTo(parts.mid(0, parts.size() - 1), false))
        return false;
    const ZipFolder& folder = *mLevels.back().folder;
    return folder.removeFile(parts.last()) || folder.removeFolder(parts.last());
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
    if (mFile == nullptr)
        return;
    mFile.reset();
    getFolder().removeFile(mWrittenName);
}

ZipFolder& ZipTarget::getFolder() const
{
    return *mDestination.mLevels.back().folder;
}

ZipTarget::Result ZipTarget::begin(const QString& name, int entryIndex)
{
    mName = name;
    mEntryIndex = entryIndex;
    mWrittenName = name;
    mFile = getFolder().makeFile(name);
    if (mFile != nullptr)
        return Result::Done;
    FileIdentity identity;
    const ZipFolder::Found found = getFolder().look(name, identity);
    if (found != ZipFolder::Found::File && found != ZipFolder::Found::Link)
        return Result::CannotMake;
    const auto written = mDestination.mWritten.find(identity);
    if (written != mDestination.mWritten.end() && written->second != entryIndex)
        return Result::TakenByOther;
    return beginBeside() ? Result::Done : Result::CannotMake;
}

// Fails at once where it is not the name that stands in the way.
bool ZipTarget::beginBeside()
{
    static std::atomic<unsigned> lastNumber{0};
    FileIdentity identity;
    do {
        mWrittenName =
            QStringLiteral(".%1-%2.part").arg(QCoreApplication::applicationPid()).arg(++lastNumber);
        mFile = getFolder().makeFile(mWrittenName);
    } while (mFile == nullptr && getFolder().look(mWrittenName, identity) != ZipFolder::Found::Nothing);
    return mFile != nullptr;
}

bool ZipTarget::commit()
{
    const FileIdentity identity = mFile->getIdentity();
    const bool isClosed = mFile->close();
    mFile.reset();
    const bool isInPlace =
        isClosed && (mWrittenName == mName || getFolder().replaceFile(mWrittenName, mName));
    if (!isInPlace) {
        getFolder().removeFile(mWrittenName);
        return false;
    }
    mDestination.mWritten[identity] = mEntryIndex;
    return true;
}
}  // namespace Morvane
