#include "foundation/prefs/GPrefFileModule.h"

#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/core/GFileInputStream.h"
#include "foundation/system/GDamagedCopies.h"
#include "foundation/system/GDurableFile.h"
#include "foundation/trace/GTrace.h"

// Whether the data begins with the mark of an encoding, which is its own then whatever the module writes.
static bool HasMark(GFileInputStream& file)
{
    char bytes[3];
    const GBuffer begin = GBuffer::fromRawData(bytes, file.Peek(bytes, sizeof bytes));
    return begin.startsWith("\xFF\xFE") || begin.startsWith("\xFE\xFF") || begin == "\xEF\xBB\xBF";
}

static bool IsEmpty(const GPathName& file)
{
    char byte = 0;
    return GFileInputStream(file.GetNativePath()).Read(&byte, 1) == 0;
}

GPrefFileModule::GPrefFileModule(const GPathName& path, const GEncodingRef& encoding)
    : GPrefFileModule(path, encoding, Unread())
{
    StartWith([&] { ReadFile(encoding); });
}

GPrefFileModule::GPrefFileModule(const GPathName& path, const GEncodingRef& encoding, Unread)
    : GPrefModule(encoding), mPath(path)
{
}

void GPrefFileModule::StartWith(const std::function<void()>& read)
{
    try {
        read();
    } catch (const GException& error) {
        NoteUnread(error);
        GTrace::Error(QStringLiteral("GPrefFileModule::GPrefFileModule"), error.GetDescription());
    }
}

void GPrefFileModule::ReadDict()
{
    ReadFile(GetEncoding());
}

void GPrefFileModule::WriteDict()
{
    if (IsDirty())
        WriteFile();
}

void GPrefFileModule::SaveAs(const GPathName& path)
{
    mPath = path;
    mUnreadReason.clear();
    mDamage.reset();
    SetDirty(true);
    WriteDict();
}

void GPrefFileModule::ReadFile(const GEncodingRef& encoding)
{
    ClearGroups();
    SetDirty(false);
    mDamage.reset();
    try {
        ReadThere(encoding);
        mUnreadReason.clear();
    } catch (const GException& error) {
        ClearGroups();
        SetDirty(false);
        NoteUnread(error);
        throw;
    }
}

void GPrefFileModule::ReadThere(const GEncodingRef& encoding)
{
    const auto file = GFileInputStream::OpenIfThere(mPath.GetNativePath());
    if (file == nullptr)
        return;
    const int64_t damage = ReadGroups(*file, HasMark(*file) ? nullptr : encoding, mPath.GetNativePath());
    if (damage >= 0)
        mDamage = PrefDamage{mPath, damage, IsEmpty(mPath), GPathName()};
}

void GPrefFileModule::NoteUnread(const GException& error)
{
    mUnreadReason = error.GetDescription();
}

void GPrefFileModule::WriteFile()
{
    if (!mUnreadReason.isEmpty()) {
        throw GCustomException(GErrorCode::cFile,
                               QStringLiteral("The file \"%1\" could not be read and is not overwritten. %2")
                                   .arg(mPath.GetNativePath(), mUnreadReason));
    }
    KeepDamaged();
    GDurableFile file(mPath);
    GetPrefsDataToStream(file, GetEncoding());
    file.Commit();
    NoteWritten();
}

void GPrefFileModule::KeepDamaged()
{
    if (!mDamage || !mDamage->kept.IsEmpty())
        return;
    mDamage->kept = GDamagedCopies::Keep(mPath);
    if (!mDamage->kept.IsEmpty()) {
        GTrace::Error(QStringLiteral("GPrefFileModule::WriteDict"),
                      QStringLiteral("The damaged file \"%1\" is kept as \"%2\".")
                          .arg(mPath.GetNativePath(), mDamage->kept.GetNativePath()));
    }
}

bool GPrefFileModule::IsMissing() const
{
    return IsFileMissing(mPath.GetNativePath());
}
