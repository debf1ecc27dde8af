#include "foundation/core/SharedFile.h"

#include <QFile>

#include <algorithm>

constexpr qint64 cLeastChunk = 64 * 1024;

GString GetTooLargeReason(int64_t size, int64_t largest)
{
    return QStringLiteral("it has %1 bytes, and more than %2 are not read").arg(size).arg(largest);
}

GResult ReadToEnd(QFile& file, QByteArray* content)
{
    content->clear();
    qint64 count = 0;
    do {
        const int end = content->size();
        content->resize(end + static_cast<int>(std::max(cLeastChunk, file.size() - file.pos())));
        count = file.read(content->data() + end, content->size() - end);
        content->resize(end + static_cast<int>(std::max<qint64>(count, 0)));
    } while (count > 0);
    if (count == 0)
        return GResult::Success();
    content->clear();
    return GResult::Failure(file.errorString());
}

GResult ReadSharedFile(const GString& path, int64_t largest, QByteArray* content)
{
    content->clear();
    QFile file(path);
    GString reason;
    if (OpenSharedForReading(file, largest, reason) != FileOpening::cOpen)
        return GResult::Failure(reason);
    return ReadToEnd(file, content);
}
