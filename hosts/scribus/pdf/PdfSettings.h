#pragma once

#include "hosts/scribus/pdffile/PdfFile.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

class JobOptions;

// The settings of a PDF export: what Scribus is told, and what is done to its PDF afterwards. Lengths are
// points.
struct PdfSettings
{
    enum class Kind
    {
        Plain,
        X1a,
        X3,
        X4
    };

    enum class Colors
    {
        Unchanged,
        Tagged,  // with profiles, whether the document manages colours or not
        Cmyk,
        Rgb,
        Gray
    };

    // Lengths above this are none that a page could have.
    static constexpr double cLongest = 14400;

    // The width of Scribus's marks.
    static constexpr double cMarkWeight = 0.5;

    Kind kind = Kind::Plain;
    int version = 14;    // that Scribus is told for a plain PDF: 13, 14 or 15 for 1.3 to 1.5
    QString impossible;  // the name of a kind that this host can't make, such as PDF/A; empty for none

    // What Scribus can't do. Sizes and codings of images, among others, are here alone: Scribus writes images
    // whole and without loss.
    PdfWishes wishes;

    bool isCompressed = true;  // texts and drawings
    int drawingResolution = 300;

    bool embedsFonts = true;
    bool subsetsFonts = true;
    bool refusesFontsOutside = false;

    Colors colors = Colors::Unchanged;
    bool includesProfiles = true;
    QString outputProfile;  // for PDF/X; empty: the document's own

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
    bool hasBookmarks = false;
    bool hasLayers = false;
    bool isBoundRight = false;

    // The settings of the job options that are not honoured as they stand, each as SettingsReport tells it.
    QJsonArray answers;

    // Takes every setting that the job options name; the others get the values above. Fails, with the key in
    // the reason, when a setting is of the wrong type or out of bounds.
    static GResult Make(const JobOptions& options, PdfSettings& settings);

    // What is wrong with the settings, for people; empty when Scribus can be given them. Scribus itself takes
    // nonsense in silence.
    QString FindFault() const;

    // What is asked for and this host can't do, for the log.
    QStringList GetUnavailable() const;

    // The attributes of Scribus's PDF export.
    QJsonObject MakeOptions() const;

    // What is to be done to the PDF of a document that manages colours, or does not.
    PdfWishes MakeWishes(bool managesColors) const;

    bool IsX() const { return kind != Kind::Plain; }

    // What becomes of colours, the kind of PDF/X taken into account.
    Colors GetColors() const;

    // Whether Scribus is to leave each colour in its own space.
    bool KeepsColors() const;

    // Whether the PDF may have what shines through. Scribus would make such a thing solid, in silence.
    bool MayBeTransparent() const;

    // The kind, as people call it.
    QString GetKindText() const;
};
