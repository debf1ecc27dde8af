#pragma once

#include "EngineFixture.h"

#include <QImage>

// Pages with everything that a press has to be careful with, and the programs, none of them ours, that judge
// what comes out.
class ReferencePageFixture : public EngineFixture
{
protected:
    // Puts the files beside the documents: rgb.png, gray.png, mono.png (1200 dots), cmyk.tif, noise.png and
    // graynoise.png, which JPEG makes smaller; placed.pdf, text.pdf (whose font is not inside), half.pdf
    // (half transparent) and vector.eps.
    ReferencePageFixture();

    // Frames of one inch beside each other, 10 points from the left and the top of the page.
    static QString MakeFrames(const QStringList& files);

    // A shape in a colour: "Leaf" is of RGB, "Special" a spot colour, "Ink" of CMYK. 10 points from the left,
    // 150 from the top.
    static QString MakeShape(const QString& color);

    // What a program prints, line by line.
    static QStringList RunJudge(const QString& program, const QStringList& arguments);

    // The images in the order of the page, each as "rgb 3 8 jpeg 300"; a mask as "smask ...".
    static QStringList GetImages(const QString& path);

    // What the page's content says, with everything in plain text.
    static QByteArray GetContent(const QString& path);

private:
    void MakeColors(const QString& name, QImage::Format format, int side);
};
