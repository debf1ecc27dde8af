#include "foundation/prefs/GPrefSharedFileModule.h"

#include "foundation/system/GLockByFile.h"

GPrefSharedFileModule::GPrefSharedFileModule(const GPathName& path, const GEncodingRef& encoding)
    : GPrefFileModule(path, encoding, Unread())
{
    StartWith([this] { GPrefSharedFileModule::ReadDict(); });
}

void GPrefSharedFileModule::ReadDict()
{
    if (!FileExists()) {
        ReadFile(nullptr);
        return;
    }
    const GLockByFile lock(GetLockPathName(), GLockType::cRead, GLockWait::cUntilFree);
    ReadFile(nullptr);
}

void GPrefSharedFileModule::WriteDict()
{
    if (!IsDirty())
        return;
    const GLockByFile lock(GetLockPathName(), GLockType::cWrite, GLockWait::cUntilFree);
    WriteFile();
}

void GPrefSharedFileModule::ChangeUnderLock(const std::function<void(GPrefModule&)>& change)
{
    const GLockByFile lock(GetLockPathName(), GLockType::cWrite, GLockWait::cUntilFree);
    ReadFile(nullptr);
    try {
        change(*this);
        if (IsDirty())
            WriteFile();
    } catch (...) {
        ReadFile(nullptr);
        TakeStorageAsBackup();
        throw;
    }
    TakeStorageAsBackup();
}

GPathName GPrefSharedFileModule::GetLockPathName() const
{
    return GetPathName().WithExtension(GetPathName().GetExtension() + QStringLiteral("lock"));
}
