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
        GFileSystemBase::DropFolder(GPathName(mFolder));
    } catch (const GException&) {
        // A path that is none was never made.
    }
}

GResult PackageFolder::Make()
{
    mIsMade = !mFolder.isEmpty() && QDir().mkpath(mFolder) && QDir(mFolder).isEmpty();
    return mIsMade ? GResult::Success()
                   : GResult::Failure(
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

GResult PackageFolder::AddFile(const QString& source, const QString& subfolder)
{
    if (mFiles.contains(source))
        return GResult::Success();
    if (mRunner.IsCancelled())
        return GResult::Cancellation();
    const QString name = ReserveName(subfolder, QFileInfo(source).fileName());
    const QString target = mFolder + QLatin1Char('/') + name;
    QFile file(source);
    if (!QDir(mFolder).mkpath(subfolder) || !file.copy(target))
        return GResult::Failure(
            QStringLiteral("\"%1\" can't be copied to \"%2\": %3.").arg(source, target, file.errorString()));
    // A copy of a read-only file could not be removed with the package on every system.
    QFile::setPermissions(target, file.permissions() | QFile::ReadOwner | QFile::WriteOwner);
    mFiles.insert(source, name);
    return GResult::Success();
}

GResult PackageFolder::AddFonts(const DocumentInfo& info)
{
    for (const DocumentFont& font : info.fonts) {
        for (const QString& file : font.FindFiles()) {
            const GResult result = AddFile(file, cFontFolder);
            if (!result.HasSucceeded())
                return result;
        }
    }
    return GResult::Success();
}

GResult PackageFolder::AddProfiles(const DocumentInfo& info)
{
    if (info.profiles.isEmpty())
        return GResult::Success();
    for (const ColorProfile& profile : mRunner.GetProfiles()) {
        if (!info.profiles.contains(profile.name))
            continue;
        const GResult result = AddFile(profile.path, cProfileFolder);
        if (!result.HasSucceeded())
            return result;
    }
    return GResult::Success();
}

GResult PackageFolder::AddLinks(const DocumentInfo& info)
{
    for (const DocumentLink& link : info.links) {
        if (link.isMissing && !mSettings.goesOnWithoutLinks)
            return GResult::Failure(QStringLiteral("The linked file \"%1\" is missing.").arg(link.path));
        const GResult result = link.isMissing ? GResult::Success() : AddFile(link.path, cImageFolder);
        if (!result.HasSucceeded())
            return result;
    }
    return GResult::Success();
}

// The document as it stands, byte by byte, but for its links: to the copies of what they lead to, or to where
// they led where there is no copy.
GResult PackageFolder::WriteDocument(const ScribusDocument& document, const QString& name)
{
    QByteArray text;
    bool isPacked = false;
    const GResult read = SlaFile::Read(document.GetContentPath(), text, isPacked);
    if (!read.HasSucceeded())
        return read;
    if (FileStamp::Of(document.GetContentPath()) != document.GetStamp())
        return GResult::Failure(
            QStringLiteral("\"%1\" was changed while it was packaged.").arg(document.GetName()));
    const QDir start = QFileInfo(document.GetContentPath()).absoluteDir();
    const QByteArray copy = SlaLinks::RewriteLinks(text, [&](const QString& link) {
        const QString path = QDir::cleanPath(start.absoluteFilePath(link));
        return mFiles.value(path, path);
    });
    return SlaFile::Write(mFolder + QLatin1Char('/') + name, copy, isPacked);
}

GResult PackageFolder::AddDocument(ScribusDocument& document)
{
    if (mDocuments.contains(document.GetPath()))
        return GResult::Success();
    const DocumentInfo* info = document.GetInfo();
    if (info == nullptr)
        return GResult::Failure(document.GetError());
    const DocumentInfo described = *info;
    const QString name = ReserveName({}, document.GetName());
    GResult result = GResult::Success();
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

GResult PackageFolder::Finish()
{
    mIsFinished = !mRunner.IsCancelled();
    return mIsFinished ? GResult::Success() : GResult::Cancellation();
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
