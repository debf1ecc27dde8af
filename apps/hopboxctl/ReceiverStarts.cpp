#include "apps/hopboxctl/ReceiverStarts.h"

#include "apps/hopboxctl/LogOnStart.h"
#include "hopbox/HopboxRegistry.h"

#include <QFileInfo>

const QString ReceiverStarts::cInboxOption = QStringLiteral("--inbox");

// What two paths of one folder have in common; a folder that is not there has its path only.
static QString Resolve(const QString& folder)
{
    const QString path = QFileInfo(folder).canonicalFilePath();
    return path.isEmpty() ? folder : path;
}

QString ReceiverStarts::GetInbox(const QStringList& words)
{
    const int option = words.indexOf(cInboxOption);
    return option < 0 ? QString() : words.value(option + 1);
}

QString ReceiverStarts::FindByInbox(const QString& inbox, const QString& exceptKey)
{
    for (const QString& key : LogOnStart::GetKeys()) {
        if (key != exceptKey && Resolve(GetInbox(LogOnStart::GetWords(key))) == Resolve(inbox))
            return key;
    }
    return {};
}

QString ReceiverStarts::GetName(const HopboxRegistry& registry, const QString& key)
{
    const std::optional<HopboxRecord> record = registry.GetRecord(key);
    return record ? QString(record->GetName(key)) : key + QLatin1String(" (deleted)");
}
