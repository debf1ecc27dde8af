#pragma once

#include "hosts/scribus/sla/DocumentInfo.h"

#include <QDateTime>
#include <QJsonObject>
#include <QMap>
#include <QStringList>

// What a package's report tells beside what is in the package.
struct PackageFacts
{
    QDateTime made;
    QString hopbox;            // that the package is for; empty when that is not known
    QJsonObject exportReport;  // what became of the job options, as PdfExport reports it
};

// Writes the report of a package, as text for a person.
class PackageReport
{
public:
    // `files` has the names in the package by the paths of their sources.
    PackageReport(const PackageFacts& facts, const QMap<QString, QString>& files);

    // Adds a document by its name in the package. `profiles` are those of its profiles that are not
    // installed.
    void AddDocument(const QString& name, const DocumentInfo& info, const QStringList& missingProfiles);

    QString Finish();

private:
    void AddGroup(const QString& title, const QStringList& items);
    void AddMissing(const DocumentInfo& info, const QStringList& missingProfiles);
    void AddSettings();
    QString Describe(const QString& what, const QString& file, bool isMissing) const;
    QStringList DescribeFonts(const DocumentInfo& info) const;
    QStringList DescribeImages(const DocumentInfo& info) const;

    PackageFacts mFacts;
    const QMap<QString, QString>& mFiles;
    QStringList mLines;
};
