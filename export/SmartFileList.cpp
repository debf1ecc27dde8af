#include "export/SmartFileList.h"

#include "export/JobOptionsFolder.h"
#include "export/KeptMark.h"
#include "export/ListOwner.h"
#include "export/PlugInItems.h"
#include "foundation/core/GException.h"
#include "foundation/core/GStringSupport.h"
#include "foundation/core/SharedFile.h"
#include "foundation/prefs/GPrefSharedFileModule.h"
#include "foundation/system/GFileSystemBase.h"
#include "foundation/trace/GTrace.h"

#include <QDateTime>
#include <QFileInfo>
#include <QStringList>

#include <algorithm>
#include <limits>
#include <set>
#include <utility>

namespace
{
const GBuffer cGroup = QByteArrayLiteral("SmartFileList");
const GBuffer cMaximum = QByteArrayLiteral("MaxCount");
const GBuffer cPathPrefix = QByteArrayLiteral("FilePathName_");
const GBuffer cOwnerPrefix = QByteArrayLiteral("FileOwner_");  // see ListOwner

struct ListedPath
{
    int32_t number;
    GString path;
    bool isInOtherHands;  // another living process owns it
};

GBuffer GetPathKey(int32_t number)
{
    return cPathPrefix + GBuffer::number(number);
}

GBuffer GetOwnerKey(int32_t number)
{
    return cOwnerPrefix + GBuffer::number(number);
}

GString GetOwnOwnerText(const GPrefModule& module)
{
    const GPathName settings = PlugInItems::GetSettingsFile(module);
    return settings.IsEmpty() ? GString() : ListOwner::GetOwnName(settings);
}

bool IsInOtherHands(const GPrefModule& module, int32_t number)
{
    const GPathName settings = PlugInItems::GetSettingsFile(module);
    return !settings.IsEmpty() &&
           ListOwner::IsInOtherHands(settings, module.Get(cGroup, GetOwnerKey(number)));
}

int32_t GetMaximum(const GPrefModule& module)
{
    return GStringSupport::ToInt32(module.Get(cGroup, cMaximum));
}

void SetMaximum(GPrefModule& module, int32_t maximum)
{
    module.Set(cGroup, cMaximum, GStringSupport::FromInt32(maximum));
}

// The number after the highest one handed out, past those that are taken for whatever reason.
int32_t GetNextNumber(const GPrefModule& module)
{
    int32_t number = std::max(GetMaximum(module), 0);
    do
        number = number < std::numeric_limits<int32_t>::max() ? number + 1 : 1;
    while (module.Has(cGroup, GetPathKey(number)));
    return number;
}

// The numbers of the group's keys that begin with a prefix, up to the highest number handed out. The keys are
// walked, not the numbers: a file may say that there are two thousand million.
std::vector<int32_t> GetNumbers(const GPrefModule& module, const GBuffer& prefix)
{
    const int32_t maximum = GetMaximum(module);
    std::vector<GBuffer> keys;
    module.GetGroupPreferences(cGroup, keys);
    std::vector<int32_t> numbers;
    for (const GBuffer& key : keys) {
        const int32_t number = key.startsWith(prefix) ? key.mid(prefix.size()).toInt() : 0;
        if (number >= 1 && number <= maximum && key == prefix + GBuffer::number(number))
            numbers.push_back(number);
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

std::vector<ListedPath> GetListedPaths(const GPrefModule& module)
{
    std::vector<ListedPath> listed;
    for (const int32_t number : GetNumbers(module, cPathPrefix))
        listed.push_back({number, module.Get(cGroup, GetPathKey(number)), IsInOtherHands(module, number)});
    return listed;
}

// Numbers that could not be taken out of the list when that was asked for. What they name is no temporary
// file any more, and must not be swept. With those that bear a mark, which goes when the list is written.
struct Passed
{
    std::set<int32_t> numbers;
    std::vector<GPathName> marked;
};

Passed& GetPassed()
{
    static Passed passed;
    return passed;
}

void RemoveNumber(GPrefModule& module, int32_t number)
{
    module.Remove(cGroup, GetPathKey(number));
    module.Remove(cGroup, GetOwnerKey(number));
}

[[nodiscard]] bool Change(const char* operation, const std::function<void(GPrefModule&)>& change)
{
    const bool isDone = PlugInItems::ChangeSettings(operation, [&](GPrefModule& module) {
        for (const int32_t number : GetPassed().numbers)
            RemoveNumber(module, number);
        change(module);
    });
    if (isDone) {
        for (const GPathName& path : GetPassed().marked)
            KeptMark::Remove(path);
        GetPassed() = {};
    }
    return isDone;
}

void SweepItem(const GString& text)
{
    const GString source = QStringLiteral("SmartFileList::Sweep");
    try {
        const GPathName path(text);
        if (JobOptionsFolder::IsPlacedFile(path))
            JobOptionsFolder::RemovePlacedFile(path);
        else if (PlugInItems::IsInTemporaryFolder(path) && KeptMark::IsSet(path))
            GetPassed().marked.push_back(path);
        else if (PlugInItems::IsInTemporaryFolder(path))
            SmartFileList::RemoveItem(path);
        else if (!path.IsEmpty())
            GTrace::Error(source,
                          QStringLiteral("\"%1\" is none of the plug-in's files and stays").arg(text));
    } catch (const GException& error) {
        GTrace::Error(source, error.GetDescription());
    }
}

// What this process could not remove when it was done with it. A file of the user's may bear that name by the
// sweep: only what has not changed since is tried again.
struct Stuck
{
    GPathName path;
    QDateTime modified;
};

std::vector<Stuck>& GetStuck()
{
    static std::vector<Stuck> stuck;
    return stuck;
}

QDateTime GetModified(const GPathName& path)
{
    return QFileInfo(path.GetNativePath()).lastModified();
}

void SweepStuck()
{
    for (const Stuck& item : std::exchange(GetStuck(), {})) {
        if (GetModified(item.path) == item.modified)
            SweepItem(item.path.GetNativePath());
    }
}

void SweepList(GPrefModule& module)
{
    if (!module.Has(cGroup, cMaximum))
        return;
    const std::vector<ListedPath> listed = GetListedPaths(module);
    QStringList kept;
    int32_t maximum = 0;
    for (const ListedPath& item : listed) {
        if (item.isInOtherHands) {
            kept.append(item.path);
            maximum = item.number;
        }
    }
    for (const ListedPath& item : listed) {
        if (item.isInOtherHands)
            continue;
        if (!kept.contains(item.path))
            SweepItem(item.path);
        module.Remove(cGroup, GetPathKey(item.number));
    }
    for (const int32_t number : GetNumbers(module, cOwnerPrefix)) {
        if (!module.Has(cGroup, GetPathKey(number)))
            module.Remove(cGroup, GetOwnerKey(number));
    }
    if (module.Get(cGroup, cMaximum) != GStringSupport::FromInt32(maximum))
        SetMaximum(module, maximum);
    if (!PlugInItems::GetSettingsFile(module).IsEmpty())
        ListOwner::CleanUp(PlugInItems::GetSettingsFile(module));
}
}  // namespace

int32_t SmartFileList::Add(const GPathName& path)
{
    int32_t number = 0;
    const bool isListed = Change("SmartFileList::Add", [&](GPrefModule& module) {
        number = GetNextNumber(module);
        module.Set(cGroup, GetPathKey(number), path.GetNativePath());
        module.Set(cGroup, GetOwnerKey(number), GetOwnOwnerText(module));
        SetMaximum(module, number);
    });
    return isListed ? number : 0;
}

bool SmartFileList::Replace(int32_t number, const GPathName& path)
{
    bool isListed = false;
    const bool isWritten = Change("SmartFileList::Replace", [&](GPrefModule& module) {
        isListed = module.Has(cGroup, GetPathKey(number));
        if (isListed)
            module.Set(cGroup, GetPathKey(number), path.GetNativePath());
    });
    return isListed && isWritten;
}

void SmartFileList::Remove(int32_t number, const GPathName& kept)
{
    GetPassed().numbers.insert(number);
    if (Change("SmartFileList::Remove", [](GPrefModule&) {}) || kept.IsEmpty())
        return;
    KeptMark::Set(kept);
    GetPassed().marked.push_back(kept);
}

void SmartFileList::RemoveItem(const GPathName& path)
{
    if (QFileInfo(path.GetNativePath()).isDir())
        GFileSystemBase::DropFolder(path);
    else
        GFileSystemBase::DropFile(path);
}

void SmartFileList::RemoveOrRetry(const GPathName& path)
{
    if (JobOptionsFolder::IsPlacedFile(path))
        JobOptionsFolder::RemovePlacedFile(path);
    else
        RemoveItem(path);
    if (!IsFileMissing(path.GetNativePath()))
        GetStuck().push_back({path, GetModified(path)});
}

void SmartFileList::Sweep()
{
    SweepStuck();
    static_cast<void>(Change("SmartFileList::Sweep", SweepList));  // the next start sweeps again
}
