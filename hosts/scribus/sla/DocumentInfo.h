#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

// A file as it stood when it was looked at: another stamp means another content.
struct FileStamp
{
    qint64 size = -1;     // -1: there was no file
    qint64 modified = 0;  // in nanoseconds since 1970
    quint64 node = 0;     // its number in the file system

    static FileStamp Take(const QString& path);

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
    QVector<DocumentFont> fonts;  // missing ones too, by name
    QVector<DocumentLink> links;  // each file once, by path
    QStringList colors;           // by name
    QStringList profiles;         // the colour profiles that it names
    DocumentBleed bleed;
    QString title;
    bool hasFacingPages = false;
    bool hasTransparency = false;

    QStringList GetMissingFonts() const;

    // The indexes, from 0, of the pages that a range text such as "iii-v,2" names, in its order, repetitions
    // included. Empty when the text is no range, or names a page that is not there.
    QVector<int> FindPages(const QString& range) const;
};
