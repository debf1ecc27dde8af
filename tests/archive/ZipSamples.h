#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVector>

#include <cstdint>

// A text in UTF-8, and a list of texts with '|' between them.
QString operator""_q(const char* text, size_t size);
QStringList operator""_list(const char* text, size_t size);

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
