#include "hosts/scribus/packages/PackageReport.h"

#include "hosts/scribus/sla/FontHeader.h"
#include "hosts/scribus/sla/ImageHeader.h"

#include <QFileInfo>
#include <QJsonArray>

PackageReport::PackageReport(const PackageFacts& facts, const QMap<QString, QString>& files)
    : mFacts(facts), mFiles(files)
{
    mLines << QStringLiteral("Package Report") << QString();
    mLines << QStringLiteral("Date: %1").arg(mFacts.made.toString(Qt::ISODate));
    if (!mFacts.hopbox.isEmpty())
        mLines << QStringLiteral("Hopbox: %1").arg(mFacts.hopbox);
    mLines << QString();
}

void PackageReport::AddGroup(const QString& title, const QStringList& items)
{
    mLines << QStringLiteral("%1: %2").arg(title).arg(items.size());
    for (const QString& item : items)
        mLines << QStringLiteral("  ") + item;
    mLines << QString();
}

QString PackageReport::Describe(const QString& what, const QString& file, bool isMissing) const
{
    const QString where = mFiles.value(file);
    return isMissing         ? QStringLiteral("%1 - MISSING").arg(what)
           : where.isEmpty() ? QStringLiteral("%1 - not copied").arg(what)
                             : QStringLiteral("%1 - %2").arg(what, where);
}

QStringList PackageReport::DescribeFonts(const DocumentInfo& info) const
{
    QStringList fonts;
    for (const DocumentFont& font : info.fonts) {
        const FontHeader header = FontHeader::Read(font.file);
        const QString facts = font.isMissing
                                  ? QString()
                                  : QStringLiteral(" (%1, embedding: %2)").arg(header.kind, header.embedding);
        fonts << Describe(font.name, font.file, font.isMissing) + facts;
    }
    return fonts;
}

// Each frame that shows one: the same file may stand in two sizes.
QStringList PackageReport::DescribeImages(const DocumentInfo& info) const
{
    QStringList images;
    for (const DocumentImage& image : info.images) {
        const ImageHeader header = ImageHeader::Read(image.path);
        const bool isKnown = header.colors != ImageHeader::Colors::Unknown;
        const QString place = image.page >= 0 && image.page < info.pages.size()
                                  ? QStringLiteral("page %1").arg(info.pages[image.page].number)
                              : image.masterPage.isEmpty()
                                  ? QStringLiteral("beside the pages")
                                  : QStringLiteral("master page %1").arg(image.masterPage);
        const QString facts =
            isKnown ? QStringLiteral("%1 dpi, %2").arg(qRound(image.resolution)).arg(header.GetColorsText())
                    : QStringLiteral("placed file");
        images << (QFileInfo(image.path).isFile()
                       ? QStringLiteral("%1, %2: %3").arg(QFileInfo(image.path).fileName(), place, facts)
                       : QStringLiteral("%1, %2: MISSING").arg(QFileInfo(image.path).fileName(), place));
    }
    return images;
}

void PackageReport::AddMissing(const DocumentInfo& info, const QStringList& missingProfiles)
{
    QStringList missing;
    for (const QString& font : info.GetMissingFonts())
        missing << QStringLiteral("font %1").arg(font);
    for (const DocumentLink& link : info.links) {
        if (link.isMissing)
            missing << QStringLiteral("file %1").arg(link.path);
    }
    for (const QString& profile : missingProfiles)
        missing << QStringLiteral("colour profile %1").arg(profile);
    AddGroup(QStringLiteral("Missing"), missing);
}

void PackageReport::AddDocument(const QString& name, const DocumentInfo& info,
                                const QStringList& missingProfiles)
{
    QStringList pages;
    for (const DocumentPage& page : info.pages)
        pages << QStringLiteral("%1: %2 x %3 pt").arg(page.number).arg(page.width).arg(page.height);
    QStringList links;
    for (const DocumentLink& link : info.links)
        links << Describe(link.path, link.path, link.isMissing);
    mLines << QStringLiteral("Document: %1").arg(name) << QStringLiteral("Title: %1").arg(info.title)
           << QString();
    AddMissing(info, missingProfiles);
    AddGroup(QStringLiteral("Pages"), pages);
    AddGroup(QStringLiteral("Inks"), info.inks);
    AddGroup(QStringLiteral("Fonts"), DescribeFonts(info));
    AddGroup(QStringLiteral("Images"), DescribeImages(info));
    AddGroup(QStringLiteral("Links"), links);
    AddGroup(QStringLiteral("Colour profiles"), info.profiles);
}

void PackageReport::AddSettings()
{
    QStringList settings;
    for (const QJsonValue& setting : mFacts.exportReport.value(QLatin1String("settings")).toArray())
        settings << QStringLiteral("%1 %2 - %3: %4")
                        .arg(setting[QLatin1String("key")].toString(),
                             setting[QLatin1String("asked")].toString(),
                             setting[QLatin1String("answer")].toString(),
                             setting[QLatin1String("note")].toString());
    AddGroup(QStringLiteral("Settings of the PDF that were not honoured exactly"), settings);
    QStringList notes;
    for (const QJsonValue& note : mFacts.exportReport.value(QLatin1String("notes")).toArray())
        notes << note.toString();
    AddGroup(QStringLiteral("Notes on the PDF"), notes);
}

QString PackageReport::Finish()
{
    AddSettings();
    return mLines.join(QLatin1Char('\n'));
}
