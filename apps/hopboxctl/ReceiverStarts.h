#pragma once

#include <QString>
#include <QStringList>

class HopboxRegistry;

// The receivers that start with the log-on, by what their calls say.
namespace ReceiverStarts
{
extern const QString cInboxOption;

// The folder that a call names for what arrives; empty when it names none.
QString GetInbox(const QStringList& words);

// The key of a receiver with that inbox, other than the given one; empty when there is none.
QString FindByInbox(const QString& inbox, const QString& exceptKey);

// What to call the Hopbox of a receiver.
QString GetName(const HopboxRegistry& registry, const QString& key);
}  // namespace ReceiverStarts
