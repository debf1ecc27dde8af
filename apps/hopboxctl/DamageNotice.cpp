#include "apps/hopboxctl/DamageNotice.h"

#include "apps/hopboxctl/Command.h"
#include "apps/hopboxctl/HopboxOutput.h"
#include "apps/hopboxctl/PrefsFile.h"
#include "foundation/prefs/GPrefFileModule.h"
#include "foundation/system/GDamagedCopies.h"
#include "foundation/trace/GTrace.h"
#include "hopbox/HopboxRegistry.h"

#include <QJsonObject>

#include <exception>

namespace
{
struct Notice
{
    QString file;
    int64_t byte;
    int line;
    QString copy;  // where the damaged file is kept, or will be; empty where it holds nothing
    bool isKept;
};

Notice Describe(const PrefDamage& damage)
{
    const bool isKept = !damage.kept.IsEmpty();
    const QString file = damage.file.GetNativePath();
    const QString damaged = isKept ? damage.kept.GetNativePath() : file;
    if (damage.isEmpty)
        return {file, damage.position, 1, QString(), false};
    return {file, damage.position, PrefsFile::GetLine(damaged, damage.position),
            GDamagedCopies::GetNewest(damage.file).GetNativePath(), isKept};
}

QString GetText(const Notice& notice)
{
    const QString text = QStringLiteral("\"%1\" is damaged at line %2 (byte %3); entries may be missing.")
                             .arg(notice.file)
                             .arg(notice.line)
                             .arg(notice.byte);
    if (notice.copy.isEmpty())
        return text;
    return text + QStringLiteral(" The damaged file %1 kept as \"%2\"%3.")
                      .arg(notice.isKept ? QStringLiteral("is") : QStringLiteral("will be"), notice.copy,
                           notice.isKept ? QString() : QStringLiteral(" before the first change"));
}

QJsonObject GetJson(const Notice& notice)
{
    return {{QStringLiteral("File"), notice.file},
            {QStringLiteral("Line"), notice.line},
            {QStringLiteral("Byte"), static_cast<qint64>(notice.byte)},
            {QStringLiteral("Copy"), notice.copy},
            {QStringLiteral("IsKept"), notice.isKept}};
}
}  // namespace

int DamageNotice::Tell(const HopboxRegistry& registry)
{
    if (!registry.GetDamage())
        return cCliDone;
    const Notice notice = Describe(*registry.GetDamage());
    PrintError(HopboxOutput::GetShown(GetText(notice)));
    SetDamaged(GetJson(notice));
    return cCliFailed;
}

DamageNotice::AtEnd::~AtEnd()
{
    try {
        Tell(mRegistry);
    } catch (const std::exception& error) {
        GTrace::Error(QStringLiteral("DamageNotice::AtEnd"), GString::fromUtf8(error.what()));
    }
}

QString DamageNotice::DescribeSettings(const GPathName& archive, int64_t position, Copy copy)
{
    const QString text =
        copy == Copy::cKept
            ? QStringLiteral(
                  "The settings in \"%1\" were damaged at byte %2; some may be missing. The damaged "
                  "archive is kept as \"%3\".")
            : QStringLiteral(
                  "The settings in \"%1\" are damaged at byte %2; some may be missing. The archive "
                  "will be kept as \"%3\" before the first change.");
    return text.arg(archive.GetNativePath(), QString::number(position),
                    GDamagedCopies::GetNewest(archive).GetNativePath());
}

void DamageNotice::SetSettings(const GPathName& archive, int64_t position, Copy copy)
{
    SetDamaged(QJsonObject{{QStringLiteral("File"), archive.GetNativePath()},
                           {QStringLiteral("Byte"), static_cast<qint64>(position)},
                           {QStringLiteral("Copy"), GDamagedCopies::GetNewest(archive).GetNativePath()},
                           {QStringLiteral("IsKept"), copy == Copy::cKept}});
}
