#pragma once

#include <QByteArray>
#include <QString>

class QIODevice;

// What a font's file says of itself. TrueType, OpenType and Type 1 are known.
struct FontHeader
{
    QString kind;       // such as "TrueType"; "unknown"
    QString embedding;  // the right to put it into a file, such as "editable"; "not stated"

    static FontHeader Read(const QString& path);

    // Of an open device that can seek.
    static FontHeader Parse(QIODevice& file);
};
