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

QString PackageFolder::ReserveName(const QString& subfolder, const QString& wantedName)
{
    const QString prefix = subfolder.isEmpty() ? QString() : subfolder + QLatin1Char('/');
    const QFileInfo wanted(wantedName);
    QString name = prefix + wantedName;
    for (int number = 2; mTakenNames.contains(name.toLower()); ++number) {
        const QString ending = wanted.completeSuffix();
        name = prefix + QStringLiteral("%1-%2").arg(wanted.baseName()).arg(number) +
               (ending.isEmpty() ? ending : QLatin1Char('.') + ending);
    }
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

QString PackageFolder::MakeReport() const
{
    QStringList lines{QStringLiteral("Package Report"), QString()};
    for (const Entry& entry : mEntries)
        ReportDocument(entry, lines);
    return lines.join(QLatin1Char('\n')) + QLatin1Char('\n');
}

void PackageFolder::ReportDocument(const Entry& entry, QStringList& lines) const
{
    const DocumentInfo& info = entry.info;
    const QString indent = QStringLiteral("  ");
    const auto addGroup = [&](const QString& title, const QStringList& items) {
        lines << QStringLiteral("%1: %2").arg(title).arg(items.size());
        for (const QString& item : items)
            lines << indent + item;
        lines << QString();
    };
    const auto describe = [&](const QString& what, const QString& file, bool isMissing) {
        const QString where = mFiles.value(file);
        return isMissing         ? QStringLiteral("%1 - MISSING").arg(what)
               : where.isEmpty() ? QStringLiteral("%1 - not copied").arg(what)
                                 : QStringLiteral("%1 - %2").arg(what, where);
    };
    QStringList pages;
    for (const DocumentPage& page : info.pages)
        pages << QStringLiteral("%1: %2 x %3 pt").arg(page.number).arg(page.width).arg(page.height);
    QStringList fonts;
    for (const DocumentFont& font : info.fonts)
        fonts << describe(font.name, font.file, font.isMissing);
    QStringList links;
    for (const DocumentLink& link : info.links)
        links << describe(link.path, link.path, link.isMissing);
    lines << QStringLiteral("Document: %1").arg(entry.name) << QStringLiteral("Title: %1").arg(info.title)
          << QString();
    addGroup(QStringLiteral("Pages"), pages);
    addGroup(QStringLiteral("Fonts"), fonts);
    addGroup(QStringLiteral("Links"), links);
    addGroup(QStringLiteral("Colours"), info.colors);
    addGroup(QStringLiteral("Colour profiles"), info.profiles);
}
