#pragma once

#include "foundation/core/GResult.h"

#include <QRectF>
#include <QString>
#include <QStringList>
#include <QVector>

// A file as it stood when it was looked at: another stamp means another content.
struct FileStamp
{
    qint64 size = -1;     // -1: there was no file
    qint64 modified = 0;  // in nanoseconds since 1970
    quint64 node = 0;     // its number in the file system

    static FileStamp Of(const QString& path);

    bool Exists() const { return size >= 0; }
    bool operator==(const FileStamp& other) const
    {
        return size == other.size && modified == other.modified && node == other.node;
    }
    bool operator!=(const FileStamp& other) const { return !(*this == other); }
};

// What a document holds, as Scribus reports it. Lengths are in points.

enum class PageSide
{
    Single,  // the document has no facing pages
    Left,
    Middle,
    Right
};

struct DocumentPage
{
    QString number;  // as the user sees it, by the document's sections; the place where they give none
    PageSide side = PageSide::Single;
    double width = 0;
    double height = 0;
    QString masterPage = QString();  // by name
};

struct DocumentFont
{
    QString name;  // family and style, as Scribus shows them
    QString file;  // empty for a missing font
    bool isMissing = false;

    // The file, and those beside it that belong to it: the measures of a Type 1 font. None for a missing
    // font.
    QStringList FindFiles() const;
};

struct DocumentLink
{
    QString path;  // absolute
    bool isMissing = false;
};

// A frame that shows an image or a placed file.
struct DocumentImage
{
    QString path;           // absolute
    int page = -1;          // an index from 0; -1 for one on a master page or beside the pages
    QString masterPage;     // that it is on; empty for others
    QRectF box;             // from the page's top left corner, as the frame is turned
    double resolution = 0;  // in dots per inch of the page; of a placed PDF or EPS it means nothing
    bool isPrinted = true;  // the frame and its layer are
};

struct DocumentBleed
{
    double top = 0;
    double bottom = 0;
    double inside = 0;  // left where there are no facing pages
    double outside = 0;
};

struct DocumentInfo
{
    QVector<DocumentPage> pages;
    QVector<DocumentFont> fonts;  // that its texts use, missing ones too, by name
    QVector<DocumentLink> links;  // each file once, by path
    QVector<DocumentImage> images;
    QStringList colors;    // by name
    QStringList inks;      // that objects and texts ask for, as SlaInks tells them
    QStringList profiles;  // the colour profiles that it names
    DocumentBleed bleed;
    QString title;
    bool hasFacingPages = false;
    bool managesColors = false;  // its colours have profiles

    QStringList GetMissingFonts() const;

    // Whether a page has the image, of its own or by its master page.
    bool IsShownOn(const DocumentImage& image, int page) const;

    // The frame on a page that shows what is at a place; null where none does.
    const DocumentImage* FindImage(int page, const QPointF& place) const;

    // The indexes, from 0, of the pages that a range text such as "iii-v,2" names, in its order, repetitions
    // included. A number that no page bears is the place of a page, from 1. Fails, with no pages, when the
    // text is no range, goes beyond the document, or runs backwards.
    GResult FindPages(const QString& range, QVector<int>& found) const;
};
