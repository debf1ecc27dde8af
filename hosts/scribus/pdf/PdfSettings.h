#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

class JobOptions;

// The settings of a PDF export as far as Scribus has them. Lengths are points.
struct PdfSettings
{
    enum class Kind
    {
        Plain,
        X1a,
        X3,
        X4
    };

    enum class ImageCompression  // the numbers are Scribus's
    {
        Automatic = 0,
        Jpeg = 1,
        Flate = 2,
        None = 3
    };

    // Lengths above this are none that a page could have.
    static constexpr double cLongest = 14400;

    // The width of Scribus's marks, which can't be changed.
    static constexpr double cMarkWeight = 0.5;

    Kind kind = Kind::Plain;
    int version = 14;  // of a plain PDF: 13, 14 or 15 for 1.3 to 1.5

    bool isCompressed = true;  // texts and drawings
    ImageCompression imageCompression = ImageCompression::Automatic;
    int imageQuality = 1;     // of JPEG: 0 the best to 4
    int imageResolution = 0;  // images with more dots per inch get that many, 35 at least; 0: none does
    int drawingResolution = 300;

    bool embedsFonts = true;
    bool subsetsFonts = true;

    bool isForPrinter = true;  // colours stay as they are; otherwise they become RGB
    bool isGray = false;
    QString outputProfile;    // for PDF/X; empty: the document's own
    QString outputCondition;  // for PDF/X; empty: the profile's name

    bool cropMarks = false;
    bool bleedMarks = false;
    bool registrationMarks = false;
    bool colorBars = false;
    bool pageInformation = false;
    double markOffset = 0;
    double markWeight = cMarkWeight;

    bool usesDocumentBleed = true;
    double bleedTop = 0;
    double bleedBottom = 0;
    double bleedInside = 0;
    double bleedOutside = 0;

    bool includesSlug = false;
    int readerSpreads = 0;
    bool hasThumbnails = false;
    bool isBoundRight = false;

    // Takes every setting that the job options name; the others get the values above. False, with the key
    // and what is wrong with it in `error`, when a setting is of the wrong type or out of bounds.
    static bool Make(const JobOptions& options, PdfSettings& settings, QString& error);

    // What is wrong with the settings, for the log; empty when Scribus can be given them. Scribus itself
    // takes nonsense in silence.
    QString FindFault() const;

    // What is asked for and this host can't do, for the log.
    QStringList GetUnavailable() const;

    // The attributes of Scribus's PDF export.
    QJsonObject MakeOptions() const;

    bool IsX() const { return kind != Kind::Plain; }
};
