#include "export/ResultList.h"

#include "export/ListOwner.h"
#include "export/PlugInItems.h"
#include "export/SmartFileList.h"
#include "foundation/core/GException.h"
#include "foundation/core/SharedFile.h"
#include "foundation/prefs/GMorvaneGeneralPrefs.h"
#include "foundation/prefs/GPrefModule.h"
#include "foundation/prefs/GPreferences.h"

#include <QDateTime>
#include <QDir>

namespace
{
const GBuffer cGroup =
    QByteArrayLiteral("Results");  // a native path in UTF-8; the second when it was noted, and by whom
const GBuffer cDays = QByteArrayLiteral("RemoveResultsAfterDays");
constexpr QLatin1Char cBlank(' ');
constexpr qint64 cSecondsOfDay = 24 * 60 * 60;

// 0: results stay.
int32_t GetDays()
{
    return GPreferences::GetInt32(GMorvaneGeneralPrefs::cGroupIDGeneralPrefs, cDays);
}

// Whether the entry may be forgotten: its file is gone, or none of ours.
bool Remove(const GString& text)
{
    try {
        const GPathName path(text);
        if (!PlugInItems::IsInTemporaryFolder(path))
            return true;
        SmartFileList::RemoveItem(path);
        // Goes only when nothing else is in it.
        if (PlugInItems::IsInTemporaryFolder(path.GetParent()))
            QDir().rmdir(path.GetParent().GetNativePath());
        return IsFileMissing(path.GetNativePath());
    } catch (const GException&) {
        return true;
    }
}

bool IsOld(const GString& noted, qint64 seconds)
{
    bool isNumber = false;
    const qint64 time = noted.section(cBlank, 0, 0).toLongLong(&isNumber);
    return !isNumber || QDateTime::currentSecsSinceEpoch() - time >= seconds;
}

// Whoever made it still runs, and may be about to use it.
bool IsInUse(const GPrefModule& module, const GString& noted)
{
    const GPathName settings = PlugInItems::GetSettingsFile(module);
    return !settings.IsEmpty() && ListOwner::IsInOtherHands(settings, noted.section(cBlank, 1));
}
}  // namespace

void ResultList::Note(const GPathName& path)
{
    if (GetDays() <= 0)
        return;
    const auto note = [&](GPrefModule& module) {
        const GPathName settings = PlugInItems::GetSettingsFile(module);
        const GString owner = settings.IsEmpty() ? GString() : ListOwner::GetOwnName(settings);
        module.Set(cGroup, path.GetNativePath().toUtf8(),
                   GString::number(QDateTime::currentSecsSinceEpoch()) + cBlank + owner);
    };
    // A failure is in the log; the result stays then.
    static_cast<void>(PlugInItems::ChangeSettings("ResultList::Note", note));
}

void ResultList::RemoveOld()
{
    const qint64 seconds = GetDays() * cSecondsOfDay;
    if (seconds <= 0)
        return;
    const auto remove = [&](GPrefModule& module) {
        GPrefGroup noted;
        module.GetGroupPreferences(cGroup, noted);
        for (const auto& result : noted) {
            if (IsOld(result.value, seconds) && !IsInUse(module, result.value) &&
                Remove(QString::fromUtf8(result.key)))
                module.Remove(cGroup, result.key);
        }
    };
    // A failure is in the log; what is gone by then is found gone the next time.
    static_cast<void>(PlugInItems::ChangeSettings("ResultList::RemoveOld", remove));
}
