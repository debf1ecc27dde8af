#include "foundation/prefs/GPrefSharedFileModule.h"

#include "foundation/core/GException.h"
#include "foundation/prefs/PrefChanges.h"
#include "foundation/system/GLockByFile.h"
#include "foundation/trace/GTrace.h"

GPrefSharedFileModule::GPrefSharedFileModule(const GPathName& path, const GEncodingRef& encoding)
    : GPrefFileModule(path, encoding, Unread())
{
    StartWith([this] { GPrefSharedFileModule::ReadDict(); });
}

void GPrefSharedFileModule::ReadDict()
{
    if (IsMissing()) {
        ReadShared();
        return;
    }
    const GLockByFile lock(GetLockPathName(), GLockType::cRead, GLockWait::cUntilFree);
    ReadShared();
}

void GPrefSharedFileModule::WriteDict()
{
    if (!IsDirty())
        return;
    const GLockByFile lock(GetLockPathName(), GLockType::cWrite, GLockWait::cUntilFree);
    WriteShared();
}

void GPrefSharedFileModule::ChangeUnderLock(const std::function<void(GPrefModule&)>& change)
{
    const GLockByFile lock(GetLockPathName(), GLockType::cWrite, GLockWait::cUntilFree);
    const PrefChanges unflushed(mKnown, GetLastingGroups());
    const PrefChanges temporary(GetLastingGroups(), GetGroups());
    try {
        ReadShared();
        unflushed.ApplyTo(*this);
        change(*this);
        if (IsDirty())
            WriteShared();
    } catch (...) {
        ReadAgain(unflushed);
        temporary.ApplyTo(*this);
        throw;
    }
    RebaseTempUse();
    temporary.ApplyTo(*this);
}

void GPrefSharedFileModule::ReadAgain(const PrefChanges& unflushed)
{
    try {
        ReadShared();
    } catch (const GException& error) {
        GTrace::Error(QStringLiteral("GPrefSharedFileModule::ChangeUnderLock"), error.GetDescription());
    }
    unflushed.ApplyTo(*this);
    RebaseTempUse();
}

void GPrefSharedFileModule::ReadShared()
{
    mKnown.Clear();
    ReadFile(nullptr);
    mKnown = GetGroups();
}

void GPrefSharedFileModule::WriteShared()
{
    WriteFile();
    mKnown = GetGroups();
}

GPathName GPrefSharedFileModule::GetLockPathName() const
{
    return GetPathName().WithExtension(GetPathName().GetExtension() + QStringLiteral("lock"));
}
