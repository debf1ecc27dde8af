#include "hosts/scribus/runner/AnswerCache.h"

#include "foundation/core/SharedFile.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QSaveFile>

// Also bounds what a file of a given size can become.
constexpr int cLargestAnswer = 256 * 1024 * 1024;

// Over all that has to fit; each part's length goes before it.
static QByteArray MakeSeal(const QByteArray& key, const QByteArray& condition, const QByteArray& packed)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const QByteArray& part : {key, condition, packed}) {
        hash.addData(QByteArray::number(part.size()) + ' ');
        hash.addData(part);
    }
    return hash.result();
}

QString AnswerCache::GetPath(const QByteArray& key) const
{
    const QByteArray name = QCryptographicHash::hash(key, QCryptographicHash::Sha1).toHex();
    return QStringLiteral("%1/%2.answer").arg(mFolder, QString::fromLatin1(name));
}

QByteArray AnswerCache::Find(const QByteArray& key, const QByteArray& condition) const
{
    const QString path = GetPath(key);
    QByteArray content;
    if (!ReadSharedFile(path, cLargestFile, &content).HasSucceeded())
        return {};
    const int sealLength = QCryptographicHash::hashLength(QCryptographicHash::Sha256);
    const QByteArray packed = content.mid(sealLength);
    if (content.left(sealLength) != MakeSeal(key, condition, packed))
        return {};
    QFile file(path);
    if (file.open(QIODevice::ReadWrite))
        file.setFileTime(QDateTime::currentDateTimeUtc(), QFileDevice::FileModificationTime);
    return qUncompress(packed);
}

void AnswerCache::Keep(const QByteArray& key, const QByteArray& condition, const QByteArray& answer) const
{
    if (answer.size() > cLargestAnswer)
        return;
    constexpr int cFastest = 1;
    const QByteArray packed = qCompress(answer, cFastest);
    const QByteArray seal = MakeSeal(key, condition, packed);
    if (seal.size() + packed.size() > cLargestFile || !QDir().mkpath(mFolder))
        return;
    QSaveFile file(GetPath(key));
    if (file.open(QIODevice::WriteOnly) && file.write(seal) == seal.size() &&
        file.write(packed) == packed.size() && file.commit())
        RemoveOldest();
}

void AnswerCache::RemoveOldest() const
{
    int files = 0;
    qint64 bytes = 0;
    const QDir folder(mFolder);
    for (const QFileInfo& file :
         folder.entryInfoList({QStringLiteral("*.answer")}, QDir::Files, QDir::Time)) {
        bytes += file.size();
        if (++files > cMostFiles || bytes > cMostBytes)
            QFile::remove(file.filePath());
    }
}
