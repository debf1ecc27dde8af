#include "hosts/scribus/host/BookParts.h"

#include "hosts/scribus/host/ScribusHost.h"
#include "hosts/scribus/pdf/PdfExport.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>

// All pages of a document, in order.
static QVector<int> GetAllPages(ScribusDocument& document)
{
    QVector<int> pages;
    const DocumentInfo* info = document.GetInfo();
    for (int i = 0; info != nullptr && i < info->pages.size(); ++i)
        pages.append(i);
    return pages;
}

BookParts::~BookParts()
{
    for (const QString& file : mFiles)
        QFile::remove(file);
}

// A document's title, which may be empty or the same for all, says less than its file.
QString BookParts::GetName(const QString& path) const
{
    return QFileInfo(path).fileName();
}

GResult BookParts::Add(const QString& path)
{
    Part part = mKept.value(path);
    GResult result = GResult::Success();
    if (part.file.isEmpty())
        result = Export(path, part);
    if (!result.HasSucceeded())
        return result;
    if (mIsNumberedOn)
        mNumber = part.nextNumber;
    else
        mKept.insert(path, part);
    mList.push_back({part.file, GetName(path), part.pageNumbers});
    return result;
}

GResult BookParts::Export(const QString& path, Part& part)
{
    PdfExport work(mHost.GetRunner(), mHost.GetPdfSettings());
    if (mIsNumberedOn)
        work.SetFirstNumber(mNumber);
    const ScribusHost::DocumentPtr document = mHost.TakeDocument(path);
    part.file = mHost.GetRunner().MakeScratchPath(QStringLiteral("pdf"));
    mFiles.append(part.file);
    const GResult result = work.ExportPages(*document, GetAllPages(*document), part.file);
    part.pageNumbers = work.GetPageNumbers();
    part.nextNumber = work.GetNextNumber();
    mReports.emplace_back(GetName(path), work.GetReport());
    return result.GetReason().contains(GetName(path))
               ? result
               : result.Within(QStringLiteral("\"%1\": ").arg(GetName(path)), {});
}

QJsonObject BookParts::GetReport() const
{
    QJsonObject whole = mReports.empty() ? QJsonObject() : mReports.front().second;
    for (const char* key : {"images", "fonts", "notes"}) {
        QJsonArray all;
        for (const auto& [name, report] : mReports) {
            for (const QJsonValue& item : report.value(QLatin1String(key)).toArray())
                all.append(item.isString() ? QStringLiteral("%1: %2").arg(name, item.toString()) : item);
        }
        whole.insert(QLatin1String(key), all);
    }
    return whole;
}
