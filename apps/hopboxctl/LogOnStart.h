#pragma once

#include <QString>
#include <QStringList>

// What makes the system start a receiver whenever the user logs on: a systemd user unit; on Windows a value
// of the registry key "Run". Each has a Hopbox's key, of letters and digits only.
namespace LogOnStart
{
// A program with its arguments, and what it is for.
struct Call
{
    QString key;
    QString summary;
    QStringList words;
};

// Where the entry of a key is, for people.
QString GetPlace(const QString& key);

// The keys that have an entry for this MORVANE_ROOT.
QStringList GetKeys();

// The words of an entry's call, the program first; none when they can't be read.
QStringList GetWords(const QString& key);

// Writes the entry, in place of one that is there. Gives what failed; empty when nothing did.
QString Write(const Call& call);

// Takes the entry away; as Write.
QString Remove(const QString& key);

// Starts what the entry names, now, or starts it again; as Write.
QString Start(const Call& call);

// Stops what Start or the log-on has started, as far as the system knows it; as Write.
QString Stop(const QString& key);
}  // namespace LogOnStart
