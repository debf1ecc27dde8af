#pragma once

#include "foundation/core/GResult.h"
#include "hosts/scribus/packages/PackageReport.h"
#include "hosts/scribus/sla/DocumentInfo.h"

#include <QMap>
#include <QSet>
#include <QStringList>

class ScribusDocument;
class ScribusRunner;

// What a package takes along beside the documents.
struct PackageSettings
{
    bool hasFonts = true;
    bool hasLinks = true;
    bool hasProfiles = true;
    bool goesOnWithoutLinks =
        true;                // a linked file that is missing is reported; otherwise it ends the package
    bool hasReport = false;  // of the folder's own, for whoever fills it
};

// A folder with copies of documents and of what they need: linked images in "images", fonts in "fonts", where
// Scribus looks for those of a document itself, and colour profiles in "profiles". The links of a copied
// document are relative, so the folder can go anywhere as a whole. Two files of one name from two places both
// get in, under names of their own; a name that is too long for the folder is cut; a file that is asked for
// twice gets in once.
//
// For the main thread. Until Finish was called, the folder goes with this object.
class PackageFolder
{
public:
    PackageFolder(ScribusRunner& runner, const QString& folder, const PackageSettings& settings);
    ~PackageFolder();
    PackageFolder(const PackageFolder&) = delete;
    PackageFolder& operator=(const PackageFolder&) = delete;

    // Takes the folder, which is empty, or makes it where it is not there.
    GResult Make();

    // Copies a document with what it needs. The same document may be added twice: it gets in once.
    GResult AddDocument(ScribusDocument& document);

    // The path of an added document's copy.
    QString GetCopy(const QString& documentPath) const { return mDocuments.value(documentPath); }

    // Says what is in the package and what is missing, as text for a person.
    QString MakeReport(const PackageFacts& facts) const;

    // A name in a subfolder that no other file has, as near to the wanted one as is possible; relative to the
    // folder.
    QString ReserveName(const QString& subfolder, const QString& wantedName);

    // The folder is to stay, unless the user has cancelled while the last file was copied.
    GResult Finish();

private:
    struct Entry
    {
        QString name;  // of the document's copy
        DocumentInfo info;
    };

    GResult AddFonts(const DocumentInfo& info);
    GResult AddProfiles(const DocumentInfo& info);
    GResult AddLinks(const DocumentInfo& info);
    GResult WriteDocument(const ScribusDocument& document, const QString& name);
    GResult AddFile(const QString& source, const QString& subfolder);

    ScribusRunner& mRunner;
    QString mFolder;
    PackageSettings mSettings;
    QMap<QString, QString> mDocuments;  // the copies' paths, by the documents' paths
    QMap<QString, QString> mFiles;      // relative names in the folder, by the paths of their sources
    QSet<QString> mTakenNames;          // in small letters: the folder may go to a system that ignores case
    QVector<Entry> mEntries;
    bool mIsMade = false;
    bool mIsFinished = false;
};
