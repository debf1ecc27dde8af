#include "hosts/scribus/packages/PackageFolder.h"

#include "foundation/core/GException.h"
#include "foundation/system/GFileSystemBase.h"
#include "hosts/scribus/documents/ScribusDocument.h"
#include "hosts/scribus/runner/ScribusRunner.h"
#include "hosts/scribus/sla/SlaFile.h"
#include "hosts/scribus/sla/SlaLinks.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

static const QString cFontFolder = QStringLiteral("fonts");
static const QString cImageFolder = QStringLiteral("images");
static const QString cProfileFolder = QStringLiteral("profiles");

// A file system takes 255 bytes; a file that is being written has a longer name for a moment.
constexpr int cLongestName = 220;
constexpr int cLongestEnding = 20;

PackageFolder::PackageFolder(ScribusRunner& runner, const QString& folder, const PackageSettings& settings)
    : mRunner(runner), mFolder(QDir::cleanPath(folder)), mSettings(settings)
{
}

PackageFolder::~PackageFolder()
{
    if (!mIsMade || mIsFinished)
        return;
    try {
        GFileSystemBase::TryToRemoveFolder(GPathName(mFolder));
    } catch (const GException&) {
        // A path that is none was never made.
    }
}

CommandResult PackageFolder::Make()
{
    mIsMade = !mFolder.isEmpty() && QDir().mkpath(mFolder) && QDir(mFolder).isEmpty();
    return mIsMade ? CommandResult::Success()
                   : CommandResult::Failure(
                         QStringLiteral("The folder \"%1\" can't be made, or is not empty.").arg(mFolder));
}

// A name of the two parts that is no longer than the folder takes.
static QString MakeName(const QString& base, const QString& ending)
{
    QString cut = base;
    while (cut.toUtf8().size() + ending.toUtf8().size() > cLongestName && cut.size() > 1)
        cut.chop(cut.at(cut.size() - 1).isLowSurrogate() ? 2 : 1);
    return cut + ending;
}

QString PackageFolder::ReserveName(const QString& subfolder, const QString& wantedName)
{
    const QString prefix = subfolder.isEmpty() ? QString() : subfolder + QLatin1Char('/');
    const QFileInfo wanted(wantedName);
    QString ending = QLatin1Char('.') + wanted.completeSuffix();
    if (ending.size() > cLongestEnding)
        ending = QLatin1Char('.') + wanted.suffix();
    if (ending.size() == 1 || ending.size() > cLongestEnding)
        ending.clear();
    const QString base = wantedName.left(wantedName.size() - ending.size());
    QString name = prefix + MakeName(base, ending);
    for (int number = 2; mTakenNames.contains(name.toLower()); ++number)
        name = prefix + MakeName(base, QStringLiteral("-%1%2").arg(number).arg(ending));
    mTakenNames.insert(name.toLower());
    return name;
}

CommandResult PackageFolder::AddFile(const QString& source, const QString& subfolder)
{
    if (mFiles.contains(source))
        return CommandResult::Success();
    if (mRunner.IsCancelled())
        return CommandResult::Cancellation();
    const QString name = ReserveName(subfolder, QFileInfo(source).fileName());
    const QString target = mFolder + QLatin1Char('/') + name;
    QFile file(source);
    if (!QDir(mFolder).mkpath(subfolder) || !file.copy(target))
        return CommandResult::Failure(
            QStringLiteral("\"%1\" can't be copied to \"%2\": %3.").arg(source, target, file.errorString()));
    // A copy of a read-only file could not be removed with the package on every system.
    QFile::setPermissions(target, file.permissions() | QFile::ReadOwner | QFile::WriteOwner);
    mFiles.insert(source, name);
    return CommandResult::Success();
}

CommandResult PackageFolder::AddFonts(const DocumentInfo& info)
{
    for (const DocumentFont& font : info.fonts) {
        for (const QString& file : font.FindFiles()) {
            const CommandResult result = AddFile(file, cFontFolder);
            if (!result.HasSucceeded())
                return result;
        }
    }
    return CommandResult::Success();
}

CommandResult PackageFolder::AddProfiles(const DocumentInfo& info)
{
    if (info.profiles.isEmpty())
        return CommandResult::Success();
    for (const ColorProfile& profile : mRunner.GetProfiles()) {
        if (!info.profiles.contains(profile.name))
            continue;
        const CommandResult result = AddFile(profile.path, cProfileFolder);
        if (!result.HasSucceeded())
            return result;
    }
    return CommandResult::Success();
}

CommandResult PackageFolder::AddLinks(const DocumentInfo& info)
{
    for (const DocumentLink& link : info.links) {
        if (link.isMissing && !mSettings.goesOnWithoutLinks)
            return CommandResult::Failure(
                QStringLiteral("The linked file \"%1\" is missing.").arg(link.path));
        const CommandResult result =
            link.isMissing ? CommandResult::Success() : AddFile(link.path, cImageFolder);
        if (!result.HasSucceeded())
            return result;
    }
    return CommandResult::Success();
}

// The document as it stands, byte by byte, but for its links: to the copies of what they lead to, or to where
// they led where there is no copy.
CommandResult PackageFolder::WriteDocument(const ScribusDocument& document, const QString& name)
{
    QByteArray text;
    QString reason;
    bool isPacked = false;
    if (!SlaFile::Read(document.GetContentPath(), text, isPacked, reason))
        return CommandResult::Failure(reason);
    if (FileStamp::Take(document.GetContentPath()) != document.GetStamp())
        return CommandResult::Failure(
            QStringLiteral("\"%1\" was changed while it was packaged.").arg(document.GetName()));
    const QDir start = QFileInfo(document.GetContentPath()).absoluteDir();
    const QByteArray copy = SlaLinks::RewriteLinks(text, [&](const QString& link) {
        const QString path = QDir::cleanPath(start.absoluteFilePath(link));
        return mFiles.value(path, path);
    });
    if (!SlaFile::Write(mFolder + QLatin1Char('/') + name, copy, isPacked, reason))
        return CommandResult::Failure(reason);
    return CommandResult::Success();
}

CommandResult PackageFolder::AddDocument(ScribusDocument& document)
{
    if (mDocuments.contains(document.GetPath()))
        return CommandResult::Success();
    const DocumentInfo* info = document.GetInfo();
    if (info == nullptr)
        return CommandResult::Failure(document.GetError());
    const DocumentInfo described = *info;
    const QString name = ReserveName({}, document.GetName());
    CommandResult result = CommandResult::Success();
    if (mSettings.hasFonts)
        result = AddFonts(described);
    if (result.HasSucceeded() && mSettings.hasProfiles)
        result = AddProfiles(described);
    if (result.HasSucceeded() && mSettings.hasLinks)
        result = AddLinks(described);
    if (result.HasSucceeded())
        result = WriteDocument(document, name);
    mDocuments.insert(document.GetPath(), mFolder + QLatin1Char('/') + name);
    mEntries.append({name, described});
    return result;
}

CommandResult PackageFolder::Finish()
{
    mIsFinished = !mRunner.IsCancelled();
    return mIsFinished ? CommandResult::Success() : CommandResult::Cancellation();
}

QString PackageFolder::MakeReport(const PackageFacts& facts) const
{
    PackageReport report(facts, mFiles);
    for (const Entry& entry : mEntries) {
        QStringList missing = entry.info.profiles;
        for (const ColorProfile& profile : mRunner.GetProfiles())
            missing.removeAll(profile.name);
        report.AddDocument(entry.name, entry.info, missing);
    }
    return report.Finish();
}
