#pragma once

#include <QByteArray>
#include <QString>

// What the beginning of an image file says of the image. PNG, JPEG, TIFF and PSD are known.
struct ImageHeader
{
    enum class Colors
    {
        Unknown,  // another form of file, or none of these
        Mono,     // one bit for each dot
        Gray,
        Rgb,  // palettes too
        Cmyk,
        Lab
    };

    Colors colors = Colors::Unknown;
    int width = 0;  // in dots
    int height = 0;

    static ImageHeader Read(const QString& path);

    // The same from the file's bytes, of which those after its header are not needed.
    static ImageHeader Parse(const QByteArray& bytes);

    // Why nobody could show the file, as "is missing" or "can't be read: Permission denied"; empty when its
    // beginning speaks for it. A PNG is looked at to its end. The name's ending says what a file is to be.
    static QString FindFault(const QString& path);

    // Such as "RGB"; "unknown".
    QString GetColorsText() const;
};
