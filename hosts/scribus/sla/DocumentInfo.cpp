#include "hosts/scribus/sla/DocumentInfo.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

FileStamp FileStamp::Take(const QString& path)
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

// The index of the page that bears the number; -1 for none. The first one where several do.
static int FindPage(const QVector<DocumentPage>& pages, const QString& number)
{
    for (int i = 0; i < pages.size(); ++i) {
        if (!number.isEmpty() && pages[i].number == number)
            return i;
    }
    return -1;
}

QVector<int> DocumentInfo::FindPages(const QString& range) const
{
    // A range that repeats itself could name more pages than any document has.
    constexpr int cMostPages = 20000;
    QVector<int> found;
    for (const QString& part : range.split(QLatin1Char(','))) {
        const int first = FindPage(pages, part.section(QLatin1Char('-'), 0, 0).trimmed());
        const int last = FindPage(pages, part.section(QLatin1Char('-'), 1).trimmed());
        const bool isSingle = !part.contains(QLatin1Char('-'));
        if (first < 0 || (!isSingle && last < first) || found.size() > cMostPages)
            return {};
        for (int page = first; page <= (isSingle ? first : last); ++page)
            found.append(page);
    }
    return found;
}
