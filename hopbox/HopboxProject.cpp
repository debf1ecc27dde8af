#include "hopbox/HopboxProject.h"

#include "archive/ZipArchive.h"
#include "archive/ZipArchiver.h"
#include "archive/ZipExtraction.h"
#include "foundation/core/GFileOutputStream.h"
#include "foundation/core/GMemoryInputStream.h"
#include "foundation/core/GStringSupport.h"
#include "foundation/prefs/GDictListReader.h"
#include "foundation/prefs/GPrefMemoryModule.h"
#include "foundation/system/GDamagedCopies.h"
#include "foundation/trace/GTrace.h"
#include "hopbox/HopboxFolder.h"
#include "hopbox/TemporaryFolder.h"

#include <QFileInfo>

#include <functional>
#include <utility>

using Morvane::ZipArchive;
using Morvane::ZipArchiver;
using Morvane::ZipLimits;
using Morvane::ZipNames;
using Morvane::ZipStart;

namespace
{
const QLatin1String cSettingsEntry("Project/Project.prefs");
const QLatin1String cJobOptionsFolder("PrinterFiles/");

// What WriteSettings carries over from one archive to the next at most.
constexpr qint64 cMaximumArchiveSize = 1 << 30;  // bytes
constexpr int cCompressionLevel = 6;
constexpr int cOwnRights = 0600;  // what is extracted is replaced by the next export

// The archives' password in clear, for as long as it is in use.
GString GetPassword()
{
    return GStringSupport::DeScramble(QStringLiteral("EIEYhAVA-KI5E_[eV6H6&=q1j@TmR"));
}

bool IsSettings(const ZipArchive& archive)
{
    return archive.GetCurrentFileName() == cSettingsEntry;
}

bool IsJobOptions(const ZipArchive& archive)
{
    return !archive.getCurrentEntry().isFolder() && archive.GetCurrentFileName().contains(cJobOptionsFolder);
}

// Where the current entry of an archive comes to lie below a folder.
GPathName GetExtractedPath(const ZipArchive& archive, const GPathName& folder)
{
    const QStringList parts = Morvane::findTarget(archive.getCurrentEntry(), false);
    return folder.GetChild(parts.join(QLatin1Char('/')));
}

// Extracts the current entry below a folder.
GResult Extract(ZipArchive& archive, const GPathName& folder, GPathName& extracted)
{
    if (!archive.ExtractCurrentFile(folder.GetPortablePath(), GetPassword(), cOwnRights))
        return GResult::Failure(archive.GetLastError());
    return GResult::Catch([&] { extracted = GetExtractedPath(archive, folder); });
}

// Whether anything of a settings document can be read; `damage` becomes the byte where it is damaged, or -1.
bool IsDocument(const GBuffer& bytes, int64_t* damage)
{
    GMemoryInputStream stream(bytes);
    GDictListReader<GBuffer, GBuffer, GString> reader;
    GPrefGroups groups;
    const bool isRead = reader.Read(stream, GEncoding::GetUTF16LittleEndian(), groups);
    *damage = reader.GetDamagePosition();
    return isRead || groups.GetCount() > 0;
}

GResult WriteSettingsFile(const GPrefModule& settings, const GPathName& path)
{
    return GResult::Catch([&] {
        GFileOutputStream stream(path.GetNativePath());
        settings.GetPrefsDataToStream(stream, GEncoding::GetUTF16LittleEndian());
        stream.Close();
    });
}
}  // namespace

// A project archive on its way; the old one stays until Finish.
class HopboxProject::Writer
{
public:
    explicit Writer(const GPathName& archive) : mArchiver(archive.GetPortablePath()) {}

    // Begins with the settings. The step adds the rest, and has a folder to work in.
    template <typename AddRest>
    GResult Fill(const GPrefModule& settings, const AddRest& addRest)
    {
        return GResult::Catch([&] {
            const TemporaryFolder folder;
            return Start().Then([&] { return AddSettings(settings, folder.GetPathName()); }).Then([&] {
                return addRest(folder.GetPathName());
            });
        });
    }

    GResult AddFile(const GPathName& source, const GString& name)
    {
        return Check(mArchiver.AddFile(source.GetPortablePath(), name, ZipArchiver::cStartLevel,
                                       ZipNames::NameField, GString()));
    }

    GResult AddJobOptions(const GPathName& source)
    {
        return AddFile(source, cJobOptionsFolder + HopboxFolder::MakeName(source.GetLeaf()));
    }

    GResult End() { return Check(mArchiver.EndWriting()); }
    GResult Finish() { return Check(mArchiver.FinishWriting()); }

private:
    GResult Start()
    {
        return Check(mArchiver.StartWriting(ZipStart::Create, GetPassword(), cCompressionLevel));
    }

    GResult AddSettings(const GPrefModule& settings, const GPathName& folder)
    {
        const GPathName path = folder.GetChild(QStringLiteral("Project.prefs"));
        return WriteSettingsFile(settings, path).Then([&] { return AddFile(path, cSettingsEntry); });
    }

    GResult Check(bool isDone) const
    {
        return isDone ? GResult::Success() : GResult::Failure(mArchiver.GetLastError());
    }

    ZipArchiver mArchiver;
};

namespace
{
// Hands out the files of an archive for another one, but for the settings and, where they are replaced, the
// job options, of which the first count. The old archive is closed again then: on Windows it could not be
// replaced otherwise.
GResult CopyOtherFiles(const GPathName& archivePath, const GPathName& folder, bool withJobOptions,
                       const std::function<GResult(const GPathName&, const GString&)>& add)
{
    bool isPassed = withJobOptions;
    ZipArchive archive(archivePath.GetPortablePath());
    ZipLimits limits;
    limits.totalBytes = cMaximumArchiveSize;
    archive.setLimits(limits);
    for (archive.StartIterate(); !archive.AtEnd(); archive.Next()) {
        if (archive.getCurrentEntry().isFolder() || IsSettings(archive))
            continue;
        if (!isPassed && IsJobOptions(archive)) {
            isPassed = true;
            continue;
        }
        GPathName file;
        const GResult copied =
            Extract(archive, folder.GetChild(GString::number(archive.GetCurrentIndex())), file).Then([&] {
                return add(file, archive.GetCurrentFileName());
            });
        if (!copied.HasSucceeded())
            return copied;
    }
    return archive.hasFailed() ? GResult::Failure(archive.GetLastError()) : GResult::Success();
}

GResult CheckSize(const GPathName& jobOptions)
{
    if (QFileInfo(jobOptions.GetNativePath()).size() <= HopboxProject::cMaximumJobOptionsSize)
        return GResult::Success();
    return GResult::Failure(
        QStringLiteral("The job options %1 are too large.").arg(jobOptions.GetNativePath()));
}
}  // namespace

const GBuffer& HopboxProject::GetPlugInGroup()
{
    static const GBuffer group = QByteArrayLiteral("PluginSettings");
    return group;
}

HopboxProject::HopboxProject(const GPathName& archive) : mPath(archive) {}
HopboxProject::~HopboxProject() = default;

GResult HopboxProject::ExtractJobOptions(const GPathName& folder, GPathName& jobOptions) const
{
    ZipArchive archive(mPath.GetPortablePath());
    ZipLimits limits;
    limits.entryBytes = cMaximumJobOptionsSize;
    archive.setLimits(limits);
    const GResult found = FindJobOptions(archive);
    const GResult extracted = found.Then([&] { return Extract(archive, folder, jobOptions); });
    if (found.HasSucceeded() && !extracted.HasSucceeded())
        archive.removeMadeFolders(folder.GetPortablePath());
    return extracted;
}

GResult HopboxProject::ReadSettings(GPrefModule& settings)
{
    ZipArchive archive(mPath.GetPortablePath());
    archive.setMemoryLimit(cMaximumSettingsSize);
    GBuffer text;
    return FindJobOptions(archive).Then([&] { return FindSettings(archive, text); }).Then([&] {
        if (!IsDocument(text, &mDamagePosition))
            return GResult::Failure(
                QStringLiteral("The project settings in %1 can't be read.").arg(mPath.GetNativePath()));
        settings.UpdateWith(GPrefMemoryModule(text, GEncoding::GetUTF16LittleEndian()));
        return GResult::Success();
    });
}

GResult HopboxProject::WriteSettings(const GPrefModule& settings)
{
    return Prepare(GPathName(), settings).Then([&] { return PutInPlace(); });
}

GResult HopboxProject::Replace(const GPathName& jobOptions, const GPrefModule& settings)
{
    return Prepare(jobOptions, settings).Then([&] { return PutInPlace(); });
}

// Empty job options stay as they are in the archive.
GResult HopboxProject::Prepare(const GPathName& jobOptions, const GPrefModule& settings)
{
    const bool keepsJobOptions = jobOptions.IsEmpty();
    auto writer = std::make_unique<Writer>(mPath);
    const auto addRest = [&](const GPathName& folder) {
        return (keepsJobOptions ? GResult::Success() : writer->AddJobOptions(jobOptions)).Then([&] {
            return CopyOtherFiles(
                mPath, folder, keepsJobOptions,
                [&](const GPathName& source, const GString& name) { return writer->AddFile(source, name); });
        });
    };
    return CheckSize(jobOptions)
        .Then([&] { return HasJobOptions(); })
        .Then([&] { return GResult::Catch([&] { KeepDamaged(); }); })
        .Then([&] { return writer->Fill(settings, addRest); })
        .Then([&] { return writer->End(); })
        .Then([&] {
            mPrepared = std::move(writer);
            return GResult::Success();
        });
}

GResult HopboxProject::PutInPlace()
{
    return std::exchange(mPrepared, nullptr)->Finish();
}

GResult HopboxProject::Create(const GPathName& jobOptions, const GPrefModule& settings) const
{
    Writer writer(mPath);
    return CheckSize(jobOptions)
        .Then([&] {
            return writer.Fill(settings, [&](const GPathName&) { return writer.AddJobOptions(jobOptions); });
        })
        .Then([&] { return writer.Finish(); });
}

// What can't be read whole is kept before it is replaced.
void HopboxProject::KeepDamaged() const
{
    ZipArchive archive(mPath.GetPortablePath());
    archive.setMemoryLimit(cMaximumSettingsSize);
    for (archive.StartIterate(); !archive.AtEnd() && !IsSettings(archive); archive.Next()) {
    }
    if (archive.AtEnd())
        return;
    const GBuffer text = archive.ExtractCurrentToMemory(GetPassword());
    int64_t damage = -1;
    static_cast<void>(IsDocument(text, &damage));  // the place says more
    if (!text.isNull() && (damage < 0 || text.isEmpty()))
        return;
    const GPathName copy = GDamagedCopies::Keep(mPath);
    GTrace::Error(QStringLiteral("HopboxProject::KeepDamaged"),
                  QStringLiteral("The settings in \"%1\" are damaged; the archive is kept as \"%2\".")
                      .arg(mPath.GetNativePath(), copy.GetNativePath()));
}

GResult HopboxProject::HasJobOptions() const
{
    ZipArchive archive(mPath.GetPortablePath());
    return FindJobOptions(archive);
}

// Leaves the archive on the job options.
GResult HopboxProject::FindJobOptions(ZipArchive& archive) const
{
    for (archive.StartIterate(); !archive.AtEnd(); archive.Next()) {
        if (IsJobOptions(archive))
            return GResult::Success();
    }
    if (archive.hasFailed())
        return GResult::Failure(archive.GetLastError());
    return GResult::Failure(QStringLiteral("There are no job options in %1.").arg(mPath.GetNativePath()));
}

GResult HopboxProject::FindSettings(ZipArchive& archive, GBuffer& text) const
{
    for (archive.StartIterate(); !archive.AtEnd(); archive.Next()) {
        if (!IsSettings(archive))
            continue;
        text = archive.ExtractCurrentToMemory(GetPassword());
        return text.isNull() ? GResult::Failure(archive.GetLastError()) : GResult::Success();
    }
    if (archive.hasFailed())
        return GResult::Failure(archive.GetLastError());
    return GResult::Failure(
        QStringLiteral("There are no project settings in %1.").arg(mPath.GetNativePath()));
}
