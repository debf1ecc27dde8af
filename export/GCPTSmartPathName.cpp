#include "export/GCPTSmartPathName.h"

#include "export/SmartFileList.h"
#include "foundation/system/GFileSystemBase.h"

#include <utility>

GCPTSmartPathName::GCPTSmartPathName(const GPathName& path)
{
    TakeOver(path);
}

GCPTSmartPathName::~GCPTSmartPathName()
{
    Dispose();
}

GCPTSmartPathName::GCPTSmartPathName(GCPTSmartPathName&& other) noexcept
    : mPath(std::exchange(other.mPath, GPathName())), mNumber(std::exchange(other.mNumber, 0))
{
}

GCPTSmartPathName& GCPTSmartPathName::operator=(GCPTSmartPathName&& other) noexcept
{
    if (this != &other) {
        Dispose();
        mPath = std::exchange(other.mPath, GPathName());
        mNumber = std::exchange(other.mNumber, 0);
    }
    return *this;
}

GCPTSmartPathName GCPTSmartPathName::MakeFile(const GPathName& folder, const GString& wantedName)
{
    GCPTSmartPathName file;
    try {
        GFileSystemBase::CreateUniqueFile(folder, wantedName,
                                          [&](const GPathName& path) { file.TakeOver(path); });
    } catch (...) {
        file.Keep();  // the last name that was tried is somebody else's
        throw;
    }
    return file;
}

GCPTSmartPathName GCPTSmartPathName::MakeFolder(const GPathName& parent, const GString& nameTemplate)
{
    GCPTSmartPathName folder;
    try {
        GFileSystemBase::CreateUniqueFolder(parent, nameTemplate,
                                            [&](const GPathName& path) { folder.TakeOver(path); });
    } catch (...) {
        folder.Keep();
        throw;
    }
    return folder;
}

void GCPTSmartPathName::Reassign(const GPathName& path)
{
    RemoveItem();
    if (path.IsEmpty())
        Unlist();
    else
        TakeOver(path);
}

void GCPTSmartPathName::Dispose()
{
    RemoveItem();
    Unlist();
}

GPathName GCPTSmartPathName::Keep()
{
    GPathName path = mPath;
    Unlist(path);
    return path;
}

// Owns another path; what the old one names stays.
void GCPTSmartPathName::TakeOver(const GPathName& path)
{
    const GPathName old = std::exchange(mPath, path);
    if (mPath.IsEmpty() || (mNumber != 0 && SmartFileList::Replace(mNumber, mPath)))
        return;
    if (mNumber != 0)
        SmartFileList::Remove(mNumber, old);
    mNumber = SmartFileList::Add(mPath);
}

void GCPTSmartPathName::RemoveItem() const
{
    if (!mPath.IsEmpty())
        SmartFileList::RemoveOrRetry(mPath);
}

void GCPTSmartPathName::Unlist(const GPathName& kept)
{
    mPath = GPathName();
    if (const int32_t number = std::exchange(mNumber, 0))
        SmartFileList::Remove(number, kept);
}
