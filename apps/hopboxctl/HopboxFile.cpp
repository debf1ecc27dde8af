#include "apps/hopboxctl/HopboxFile.h"

#include "apps/hopboxctl/Command.h"
#include "apps/hopboxctl/HopboxOutput.h"
#include "apps/hopboxctl/JobOptionsCheck.h"
#include "archive/ZipHelper.h"
#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/core/GFileOutputStream.h"
#include "foundation/core/SharedFile.h"
#include "foundation/prefs/GPrefMemoryModule.h"
#include "hopbox/HopboxProject.h"
#include "hopbox/TemporaryFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

using Morvane::ZipArchiver;
using Morvane::ZipNames;
using Morvane::ZipStart;

namespace
{
const QString cFolder = QStringLiteral("Hopbox");
const QString cRecord = QStringLiteral("Hopbox/Record");
const QString cProject = QStringLiteral("Hopbox/Project.hopbox");
const QString cIcon = QStringLiteral("Hopbox/Icon");

constexpr int cLevel = 6;
constexpr qint64 cMostBytes = qint64(1) << 30;
constexpr qint64 cMostRecordBytes = 1 << 20;
constexpr qint64 cMostEntries = 8;

[[noreturn]] void Fail(const QString& text)
{
    throw GCustomException(GErrorCode::cFile, text);
}

void WriteRecord(const HopboxRecord& record, const GPathName& path)
{
    HopboxRecord carried = record;
    carried.entry.applicationPath = GPathName();
    carried.entry.contextFilePath = GPathName();
    carried.entry.hopboxIconPath = GPathName();
    GFileOutputStream stream(path.GetNativePath());
    const QByteArray text = carried.ToText().toUtf8();
    stream.Write(text.constData(), text.size());
    stream.Close();
}

HopboxRecord ReadRecord(const GPathName& path)
{
    HopboxRecord record;
    QByteArray text;
    const bool isThere = !IsFileMissing(path.GetNativePath());
    const GResult read =
        isThere ? ReadSharedFile(path.GetNativePath(), cMostRecordBytes, &text) : GResult::Success();
    if (!read.HasSucceeded())
        Fail(QStringLiteral("Its record can't be read: %1.").arg(read.GetReason()));
    if (!isThere || !record.FromText(QString::fromUtf8(text)))
        Fail(QStringLiteral("It holds no Hopbox."));
    return record;
}

// What would keep an export from working.
QString FindFault(const GPathName& archive)
{
    HopboxProject project(archive);
    GPrefMemoryModule settings;
    const TemporaryFolder folder;
    GPathName jobOptions;
    const GResult read = project.ReadSettings(settings).Then(
        [&] { return project.ExtractJobOptions(folder.GetPathName(), jobOptions); });
    if (!read.HasSucceeded())
        return read.GetReason();
    const QString fault = JobOptionsCheck::FindFault(jobOptions.GetNativePath());
    return fault.isEmpty() ? QString() : QStringLiteral("Its job options can't be used: %1.").arg(fault);
}

GPathName FindIcon(const GPathName& folder)
{
    const QStringList icons = QDir(folder.GetChild(cFolder).GetNativePath())
                                  .entryList({QStringLiteral("Icon*")}, QDir::Files | QDir::NoSymLinks);
    return icons.isEmpty() ? GPathName() : folder.GetChild(cFolder).GetChild(icons.first());
}

// Raises for one that can't be read, and says that one is missing.
bool IsIconThere(const GPathName& icon)
{
    if (icon.IsEmpty())
        return false;
    QFile file(icon.GetNativePath());
    GString reason;
    const FileOpening opening = OpenSharedForReading(file, cNoLargestFile, reason);
    if (opening == FileOpening::cRefused)
        Fail(QStringLiteral("The icon \"%1\" can't be read: %2").arg(icon.GetNativePath(), reason));
    if (opening == FileOpening::cMissing)
        PrintWarning(HopboxOutput::GetShown(
            QStringLiteral("The icon \"%1\" is not there and is left out.").arg(icon.GetNativePath())));
    return opening == FileOpening::cOpen;
}
}  // namespace

void HopboxFile::Write(const HopboxRecord& record, const GPathName& file)
{
    const TemporaryFolder folder;
    const GPathName recordPath = folder.GetPathName().GetChild(QStringLiteral("Record"));
    WriteRecord(record, recordPath);
    ZipArchiver archiver(file.GetPortablePath());
    const auto check = [&archiver](bool isDone) {
        if (!isDone)
            Fail(archiver.GetLastError());
    };
    const auto add = [&](const GPathName& source, const QString& name) {
        check(archiver.AddFile(source.GetPortablePath(), name, ZipArchiver::cStartLevel, ZipNames::Plain,
                               QString()));
    };
    check(archiver.StartWriting(ZipStart::Create, QString(), cLevel));
    add(recordPath, cRecord);
    add(record.entry.contextFilePath, cProject);
    const GPathName& icon = record.entry.hopboxIconPath;
    if (IsIconThere(icon))
        add(icon, cIcon + QLatin1Char('.') + QFileInfo(icon.GetNativePath()).suffix());
    check(archiver.FinishWriting());
}

HopboxFile::Content HopboxFile::Read(const GPathName& file, const GPathName& folder)
{
    ZipRun run;
    run.limits.totalBytes = cMostBytes;
    run.limits.entryCount = cMostEntries;
    if (!ZipHelper::extractFiles(file.GetPortablePath(), folder.GetPortablePath(), ZipPaths::Keep, QString(),
                                 ZipOnError::Stop, 0, run))
        Fail(QStringLiteral("It is no file that \"hopboxctl export\" makes."));
    Content content = {ReadRecord(folder.GetChild(cRecord)), folder.GetChild(cProject), FindIcon(folder)};
    const QString fault = FindFault(content.archive);
    if (!fault.isEmpty())
        Fail(fault);
    return content;
}
