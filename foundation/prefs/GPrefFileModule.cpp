#include "foundation/prefs/GPrefFileModule.h"

#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/core/GFileInputStream.h"
#include "foundation/system/GDurableFile.h"
#include "foundation/trace/GTrace.h"

#include <QFileInfo>

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
        mIsUnread = true;
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
    mIsUnread = false;
    SetDirty(true);
    WriteDict();
}

void GPrefFileModule::ReadFile(const GEncodingRef& encoding)
{
    ClearGroups();
    SetDirty(false);
    mIsUnread = FileExists();
    if (!mIsUnread)
        return;
    GFileInputStream file(mPath.GetNativePath());
    ReadGroups(file, encoding, mPath.GetNativePath());
    mIsUnread = false;
}

void GPrefFileModule::WriteFile()
{
    if (mIsUnread) {
        throw GCustomException(GErrorCode::cFile,
                               QStringLiteral("The file \"%1\" could not be read and is not overwritten.")
                                   .arg(mPath.GetNativePath()));
    }
    GDurableFile file(mPath);
    GetPrefsDataToStream(file, GetEncoding());
    file.Commit();
    NoteWritten();
}

bool GPrefFileModule::FileExists() const
{
    return QFileInfo::exists(mPath.GetNativePath());
}
