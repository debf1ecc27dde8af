#include "apps/hopboxctl/PrefsFile.h"

#include "apps/hopboxctl/PrefsOutput.h"
#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/core/GFileInputStream.h"
#include "foundation/core/SharedFile.h"
#include "foundation/prefs/GBin2TextStream.h"
#include "foundation/prefs/GDictListReader.h"
#include "foundation/prefs/GPrefFileModule.h"
#include "foundation/prefs/GPrefSharedFileModule.h"

#include <QFileInfo>

namespace
{
// The name in a dictionary that is shown as `shown`; where there is none, the one that a new entry gets.
template <typename Value>
GBuffer FindName(const GDict<GBuffer, Value>& dict, const QString& shown)
{
    for (const auto& entry : dict) {
        if (PrefsOutput::GetShownName(entry.key) == shown)
            return entry.key;
    }
    return shown.toUtf8();
}

// The groups of the file as it is now, which may not be there yet.
GPrefGroups ReadWhole(const QString& path)
{
    if (IsFileMissing(path))
        return GPrefGroups();
    const PrefsFile file(path);
    if (file.IsDamaged())
        throw GCustomException(GErrorCode::cFile,
                               file.DescribeDamage() + QLatin1String("; it was not changed"));
    return file.GetGroups();
}

GEncodingRef FindEncoding(const QString& path)
{
    if (IsFileMissing(path))
        return GEncoding::GetUTF16();
    GFileInputStream file(path);
    GBufferedInputStream buffered(file);
    return GBin2TextStream(buffered, nullptr).GetEncoding();
}

void SetValue(GPrefModule& module, const QString& path, const QString& group, const QString& key,
              const QString& value)
{
    const GPrefGroups groups = ReadWhole(path);
    const GBuffer groupName = FindName(groups, group);
    const GPrefGroup* const entries = groups.Find(groupName);
    module.Set(groupName, entries == nullptr ? key.toUtf8() : FindName(*entries, key), value);
}
}  // namespace

int PrefsFile::GetLine(const QString& path, int64_t position)
{
    GFileInputStream file(path);
    GBufferedInputStream buffered(file);
    GBin2TextStream stream(buffered, nullptr);
    int line = 0;
    int64_t start = -1;
    while (start != stream.GetPosition() && stream.GetPosition() <= position) {
        start = stream.GetPosition();
        static_cast<void>(stream.SkipLine());  // blank or not, it counts
        ++line;
    }
    return std::max(line, 1);
}

PrefsFile::PrefsFile(const QString& path) : mPath(path)
{
    GFileInputStream file(path);
    GDictListReader<GBuffer, GBuffer, GString> reader;
    static_cast<void>(reader.Read(file, nullptr, mGroups));  // the place of the damage says more
    mDamagePosition = reader.GetDamagePosition();
}

const GString* PrefsFile::Find(const QString& group, const QString& key) const
{
    const GPrefGroup* const entries = mGroups.Find(FindName(mGroups, group));
    return entries == nullptr ? nullptr : entries->Find(FindName(*entries, key));
}

QString PrefsFile::DescribeDamage() const
{
    return QStringLiteral("%1: damaged at line %2 (byte %3)")
        .arg(mPath)
        .arg(GetLine(mPath, mDamagePosition))
        .arg(mDamagePosition);
}

QJsonObject PrefsFile::GetDamageJson() const
{
    return {{QStringLiteral("File"), mPath},
            {QStringLiteral("Line"), GetLine(mPath, mDamagePosition)},
            {QStringLiteral("Byte"), static_cast<qint64>(mDamagePosition)}};
}

void PrefsFile::Set(const QString& path, const QString& group, const QString& key, const QString& value,
                    Access access)
{
    const GPathName pathName(QFileInfo(path).absoluteFilePath());
    if (access == Access::cShared) {
        GPrefSharedFileModule module(pathName, GEncoding::GetUTF16());
        module.ChangeUnderLock([&](GPrefModule& current) { SetValue(current, path, group, key, value); });
        return;
    }
    GPrefFileModule module(pathName, FindEncoding(path));
    SetValue(module, path, group, key, value);
    module.SetEncoding(GEncoding::GetUTF16());
    module.FlushPrefs();
}
