#pragma once

#include <QByteArray>
#include <QString>

// Keeps what took long to find out, in files of a folder, between runs of the program.
//
// Each answer is kept under a key, with the condition under which it holds: whoever looks for it under
// another condition finds nothing. A file that is damaged, or of another key, is as good as none. The folder
// has a bounded size: what was not looked for longest goes first. Nothing here fails: an answer that can't be
// kept is asked for again.
//
// Several processes may use one folder. Any thread.
class AnswerCache
{
public:
    // What is kept at most: answers, and bytes of files together and of one.
    static constexpr int cMostFiles = 256;
    static constexpr qint64 cMostBytes = 64 * 1024 * 1024;
    static constexpr qint64 cLargestFile = cMostBytes / 8;

    explicit AnswerCache(const QString& folder) : mFolder(folder) {}

    // The answer; null when there is none that holds.
    QByteArray Find(const QByteArray& key, const QByteArray& condition) const;

    void Keep(const QByteArray& key, const QByteArray& condition, const QByteArray& answer) const;

private:
    QString GetPath(const QByteArray& key) const;
    void RemoveOldest() const;

    QString mFolder;
};
