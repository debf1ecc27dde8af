#include "apps/hopboxctl/Doctor.h"
#include "apps/hopboxctl/FolderRights.h"
#include "apps/hopboxctl/LogOnStart.h"
#include "apps/hopboxctl/ReceiverStarts.h"
#include "apps/hopboxctl/ShellWord.h"
#include "hopbox/HopboxRegistry.h"

#include <QFileInfo>

using Doctor::Finding;
using ShellWord::Quote;

// The receivers that start with the log-on, and their inboxes.

namespace
{
void LookAtInbox(const QString& inbox, const QString& name, QVector<Finding>& findings)
{
    const QFileInfo info(inbox);
    if (info.exists() && !(info.isDir() && info.isWritable()))
        findings.append(
            {"inbox-unusable",
             QStringLiteral("Nothing can arrive in \"%1\", the inbox of \"%2\".").arg(inbox, name),
             QStringLiteral("it has to be a folder that you may write to"),
             {}});
    else if (FolderRights::MayAnybodyWrite(inbox))
        findings.append({"inbox-open",
                         QStringLiteral("Everybody may change the inbox \"%1\" of \"%2\".").arg(inbox, name),
                         FolderRights::GetCommandAgainstAnybody(inbox),
                         {}});
}
}  // namespace

void Doctor::LookAtStarts(const HopboxRegistry& registry, QVector<Finding>& findings)
{
    for (const QString& key : LogOnStart::GetKeys()) {
        const QString name = ReceiverStarts::GetName(registry, key);
        const QStringList words = LogOnStart::GetWords(key);
        if (!registry.GetRecord(key))
            findings.append(
                {"start-left",
                 QStringLiteral("A receiver starts with the log-on for a Hopbox that is gone: \"%1\".")
                     .arg(name),
                 QStringLiteral("hopboxctl receiver remove %1").arg(key),
                 {},
                 false});
        else if (!QFileInfo(words.value(0)).isExecutable())
            findings.append(
                {"start-broken",
                 QStringLiteral(
                     "The receiver of \"%1\" can't start with the log-on: there is no program \"%2\".")
                     .arg(name, words.value(0)),
                 QStringLiteral("hopboxctl receiver install %1 --inbox DIR").arg(Quote(key)),
                 {}});
        else
            LookAtInbox(ReceiverStarts::GetInbox(words), name, findings);
    }
}
