#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QVector>

#include <cstdint>
#include <ostream>

// How a text shows in the message of a failed test.
inline void PrintTo(const QString& text, std::ostream* stream)
{
    *stream << '"' << text.toStdString() << '"';
}

// One entry of an archive that a test builds byte by byte, with whatever lies the test wants in it.
struct RawEntry
{
    QByteArray name;
    QByteArray content;  // as it stands in the archive
    int method = 0;
    int flags = 0;
    int madeBy = 20;
    uint32_t attributes = 0;
    QByteArray extraField = {};
    uint32_t dosTime = 0x50210000;
    qint64 declaredSize = -1;  // -1: the content's
    qint64 crc = -1;           // -1: that of the content
};

// A zip archive of these entries.
QByteArray BuildArchive(const QVector<RawEntry>& entries);

// An honest entry with deflated content.
RawEntry MakeDeflated(const QByteArray& name, const QByteArray& content);

void WriteFile(const QString& path, const QByteArray& content);
QByteArray ReadFile(const QString& path);

// Every file below a folder with its content, and every folder with a '/' at its end, by relative path.
QMap<QString, QByteArray> ReadTree(const QString& folder);
void WriteTree(const QString& folder, const QMap<QString, QByteArray>& tree);
