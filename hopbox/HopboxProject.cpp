#include "hopbox/HopboxProject.h"

#include "archive/ZipArchive.h"
#include "archive/ZipArchiver.h"
#include "archive/ZipExtraction.h"
#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
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
    return !archive.GetCurrentEntry().isFolder() && archive.GetCurrentFileName().contains(cJobOptionsFolder);
}

// Where the current entry of an archive comes to lie below a folder.
GPathName GetExtractedPath(const ZipArchive& archive, const GPathName& folder)
{
    const QStringList parts = Morvane::findTarget(archive.GetCurrentEntry(), false);
    return folder.GetChild(parts.join(QLatin1Char('/')));
}

// Extracts the current entry below a folder. Raises when it is refused.
GPathName Extract(ZipArchive& archive, const GPathName& folder)
{
    if (!archive.ExtractCurrentFile(folder.GetPortablePath(), GetPassword(), cOwnRights))
        throw GCustomException(GErrorCode::cFile, archive.GetLastError());
    return GetExtractedPath(archive, folder);
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

GPathName WriteSettingsFile(const GPrefModule& settings, const GPathName& folder)
{
    const GPathName path = folder.GetChild(QStringLiteral("Project.prefs"));
    GFileOutputStream stream(path.GetNativePath());
    settings.GetPrefsDataToStream(stream, GEncoding::GetUTF16LittleEndian());
    stream.Close();
    return path;
}

}  // namespace

// A project archive on its way. Every step raises when it fails, and the old archive then stays.
class HopboxProject::Writer
{
public:
    explicit Writer(const GPathName& archive) : mArchiver(archive.GetPortablePath())
    {
        Check(mArchiver.StartWriting(ZipStart::Create, GetPassword(), cCompressionLevel));
    }

    void AddFile(const GPathName& source, const GString& name)
    {
        Check(mArchiver.AddFile(source.GetPortablePath(), name, ZipArchiver::cStartLevel, ZipNames::NameField,
                                GString()));
    }

    void AddJobOptions(const GPathName& source)
    {
        AddFile(source, cJobOptionsFolder + HopboxFolder::MakeName(source.GetLeaf()));
    }

    void End() { Check(mArchiver.EndWriting()); }
    void Finish() { Check(mArchiver.FinishWriting()); }

private:
    void Check(bool isDone) const
    {
        if (!isDone)
            throw GCustomException(GErrorCode::cFile, mArchiver.GetLastError());
    }

    ZipArchiver mArchiver;
};

namespace
{
// Hands out the files of an archive for another one, but for the settings and, where they are replaced, the
// job options, of which the first count. The old archive is closed again then: on Windows it could not be
// replaced otherwise.
void CopyOtherFiles(const GPathName& archivePath, const GPathName& folder, bool withJobOptions,
                    const std::function<void(const GPathName&, const GString&)>& add)
{
    bool isPassed = withJobOptions;
    ZipArchive archive(archivePath.GetPortablePath());
    ZipLimits limits;
    limits.totalBytes = cMaximumArchiveSize;
    archive.SetLimits(limits);
    for (archive.StartIterate(); !archive.AtEnd(); archive.Next()) {
        if (archive.GetCurrentEntry().isFolder() || IsSettings(archive))
            continue;
        if (!isPassed && IsJobOptions(archive)) {
            isPassed = true;
            continue;
        }
        const GString number = GString::number(archive.GetCurrentIndex());
        add(Extract(archive, folder.GetChild(number)), archive.GetCurrentFileName());
    }
    if (archive.HasFailed())
        throw GCustomException(GErrorCode::cFile, archive.GetLastError());
}
}  // namespace

const GBuffer& HopboxProject::GetPlugInGroup()
{
    static const GBuffer group = QByteArrayLiteral("PluginSettings");
    return group;
}

HopboxProject::HopboxProject(const GPathName& archive) : mPath(archive) {}
HopboxProject::~HopboxProject() = default;

bool HopboxProject::ExtractJobOptions(const GPathName& folder, GPathName& jobOptions)
{
    ZipArchive archive(mPath.GetPortablePath());
    ZipLimits limits;
    limits.entryBytes = cMaximumJobOptionsSize;
    archive.SetLimits(limits);
    if (!FindJobOptions(archive))
        return false;
    try {
        jobOptions = Extract(archive, folder);
        return true;
    } catch (const GException& error) {
        archive.removeMadeFolders(folder.GetPortablePath());
        return Fail(error.GetDescription());
    }
}

bool HopboxProject::ReadSettings(GPrefModule& settings)
{
    ZipArchive archive(mPath.GetPortablePath());
    archive.SetMemoryLimit(cMaximumSettingsSize);
    GBuffer text;
    if (!FindJobOptions(archive) || !FindSettings(archive, text))
        return false;
    if (!IsDocument(text, &mDamagePosition))
        return Fail(QStringLiteral("The project settings in %1 can't be read.").arg(mPath.GetNativePath()));
    settings.UpdateWith(GPrefMemoryModule(text, GEncoding::GetUTF16LittleEndian()));
    return true;
}

bool HopboxProject::WriteSettings(const GPrefModule& settings)
{
    return Prepare(GPathName(), settings) && PutInPlace();
}

bool HopboxProject::Replace(const GPathName& jobOptions, const GPrefModule& settings)
{
    return Prepare(jobOptions, settings) && PutInPlace();
}

bool HopboxProject::Prepare(const GPathName& jobOptions, const GPrefModule& settings)
{
    const bool withJobOptions = !jobOptions.IsEmpty();
    if ((withJobOptions && !IsSmallEnough(jobOptions)) || !HasJobOptions())
        return false;
    try {
        KeepDamaged();
        const TemporaryFolder folder;
        auto writer = std::make_unique<Writer>(mPath);
        writer->AddFile(WriteSettingsFile(settings, folder.GetPathName()), cSettingsEntry);
        if (withJobOptions)
            writer->AddJobOptions(jobOptions);
        CopyOtherFiles(mPath, folder.GetPathName(), !withJobOptions,
                       [&](const GPathName& source, const GString& name) { writer->AddFile(source, name); });
        writer->End();
        mPrepared = std::move(writer);
        return true;
    } catch (const GException& error) {
        return Fail(error.GetDescription());
    }
}

bool HopboxProject::PutInPlace()
{
    try {
        std::exchange(mPrepared, nullptr)->Finish();
        return true;
    } catch (const GException& error) {
        return Fail(error.GetDescription());
    }
}

// What can't be read whole is kept before it is replaced.
void HopboxProject::KeepDamaged()
{
    ZipArchive archive(mPath.GetPortablePath());
    archive.SetMemoryLimit(cMaximumSettingsSize);
    for (archive.StartIterate(); !archive.AtEnd() && !IsSettings(archive); archive.Next()) {
    }
    if (archive.AtEnd())
        return;
    const GBuffer text = archive.ExtractCurrentToMemory(GetPassword());
    int64_t damage = -1;
    IsDocument(text, &damage);
    if (!text.isNull() && (damage < 0 || text.isEmpty()))
        return;
    const GPathName copy = GDamagedCopies::Keep(mPath);
    GTrace::Error(QStringLiteral("HopboxProject::KeepDamaged"),
                  QStringLiteral("The settings in \"%1\" are damaged; the archive is kept as \"%2\".")
                      .arg(mPath.GetNativePath(), copy.GetNativePath()));
}

bool HopboxProject::Create(const GPathName& jobOptions, const GPrefModule& settings)
{
    if (!IsSmallEnough(jobOptions))
        return false;
    try {
        const TemporaryFolder folder;
        Writer writer(mPath);
        writer.AddFile(WriteSettingsFile(settings, folder.GetPathName()), cSettingsEntry);
        writer.AddJobOptions(jobOptions);
        writer.Finish();
        return true;
    } catch (const GException& error) {
        return Fail(error.GetDescription());
    }
}

bool HopboxProject::IsSmallEnough(const GPathName& jobOptions)
{
    return QFileInfo(jobOptions.GetNativePath()).size() <= cMaximumJobOptionsSize ||
           Fail(QStringLiteral("The job options %1 are too large.").arg(jobOptions.GetNativePath()));
}

bool HopboxProject::HasJobOptions()
{
    ZipArchive archive(mPath.GetPortablePath());
    return FindJobOptions(archive);
}

// Leaves the archive on the job options.
bool HopboxProject::FindJobOptions(ZipArchive& archive)
{
    for (archive.StartIterate(); !archive.AtEnd(); archive.Next()) {
        if (IsJobOptions(archive))
            return true;
    }
    if (archive.HasFailed())
        return Fail(archive.GetLastError());
    return Fail(QStringLiteral("There are no job options in %1.").arg(mPath.GetNativePath()));
}

bool HopboxProject::FindSettings(ZipArchive& archive, GBuffer& text)
{
    for (archive.StartIterate(); !archive.AtEnd(); archive.Next()) {
        if (!IsSettings(archive))
            continue;
        text = archive.ExtractCurrentToMemory(GetPassword());
        return !text.isNull() || Fail(archive.GetLastError());
    }
    if (archive.HasFailed())
        return Fail(archive.GetLastError());
    return Fail(QStringLiteral("There are no project settings in %1.").arg(mPath.GetNativePath()));
}

bool HopboxProject::Fail(const GString& text)
{
    mLastError = text;
    return false;
}
