#include "hosts/scribus/sla/DocumentInfo.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>
#include <algorithm>

FileStamp FileStamp::Of(const QString& path)
{
    FileStamp stamp;
    struct stat status;
    if (::stat(QFile::encodeName(path).constData(), &status) != 0 || !S_ISREG(status.st_mode))
        return stamp;
    stamp.size = status.st_size;
    stamp.modified = qint64(status.st_mtim.tv_sec) * 1000000000 + status.st_mtim.tv_nsec;
    stamp.node = status.st_ino;
    return stamp;
}

QStringList DocumentFont::FindFiles() const
{
    if (file.isEmpty())
        return {};
    QStringList files{file};
    const QFileInfo info(file);
    for (const char* ending : {"afm", "AFM", "pfm", "PFM"}) {
        const QString sibling =
            info.dir().filePath(info.completeBaseName() + QLatin1Char('.') + QLatin1String(ending));
        if (QFileInfo(sibling).isFile())
            files.append(sibling);
    }
    return files;
}

QStringList DocumentInfo::GetMissingFonts() const
{
    QStringList names;
    for (const DocumentFont& font : fonts) {
        if (font.isMissing)
            names.append(font.name);
    }
    return names;
}

bool DocumentInfo::IsShownOn(const DocumentImage& image, int page) const
{
    const bool isPage = page >= 0 && page < pages.size();
    return isPage && (image.page == page ||
                      (!image.masterPage.isEmpty() && image.masterPage == pages[page].masterPage));
}

const DocumentImage* DocumentInfo::FindImage(int page, const QPointF& place) const
{
    const auto found = std::find_if(images.rbegin(), images.rend(), [&](const DocumentImage& image) {
        return IsShownOn(image, page) && image.box.contains(place);
    });
    return found == images.rend() ? nullptr : &*found;
}

// The index of the page that bears the number, the first one where several do; else the page at that place.
// -1 for none.
static int FindPage(const QVector<DocumentPage>& pages, const QString& number)
{
    for (int i = 0; i < pages.size(); ++i) {
        if (!number.isEmpty() && pages[i].number == number)
            return i;
    }
    const int place = number.toInt();
    return place >= 1 && place <= pages.size() ? place - 1 : -1;
}

// Adds the pages of "3" or "3-5" to those found, at most one more than `most`.
static GResult AddPages(const QVector<DocumentPage>& pages, const QString& part, int most,
                        QVector<int>& found)
{
    const bool isSingle = !part.contains(QLatin1Char('-'));
    int ends[2] = {};
    for (int i = 0; i < 2; ++i) {
        const QString number = part.section(QLatin1Char('-'), isSingle ? 0 : i, i == 0 ? 0 : -1).trimmed();
        ends[i] = FindPage(pages, number);
        if (ends[i] < 0)
            return GResult::Failure(QStringLiteral("The document has no page \"%1\"; it has %2 pages.")
                                        .arg(number)
                                        .arg(pages.size()));
    }
    if (ends[1] < ends[0])
        return GResult::Failure(QStringLiteral("The page range \"%1\" runs backwards.").arg(part.trimmed()));
    for (int page = ends[0]; page <= ends[1] && found.size() <= most; ++page)
        found.append(page);
    return GResult::Success();
}

GResult DocumentInfo::FindPages(const QString& range, QVector<int>& found) const
{
    // A range that repeats itself could name more pages than any document has.
    constexpr int cMostPages = 20000;
    GResult result = GResult::Success();
    found.clear();
    for (const QString& part : range.split(QLatin1Char(',')))
        result = result.Then([&] { return AddPages(pages, part, cMostPages, found); });
    if (result.HasSucceeded() && found.size() > cMostPages)
        result = GResult::Failure(QStringLiteral("The page range names more than %1 pages.").arg(cMostPages));
    if (!result.HasSucceeded())
        found.clear();
    return result;
}
