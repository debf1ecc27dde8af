#include "apps/host_check/FrontDocument.h"

#include "apps/host_check/HeldHandle.h"
#include "apps/host_check/TextTaker.h"
#include "plugin/boundary/hopbox_adaptor.h"

#include <QFileInfo>

using Table = hopbox_host_table;

QString FrontDocument::GetFile(const WatchedHost& host)
{
    HeldHandle document(host);
    TextTaker file;
    if (host.Call(&Table::get_front_document, &document.value) == HOPBOX_OK)
        host.Call(&Table::get_document_file, document.value, file.Get());
    return file.GetTexts().value(0);
}

int32_t FrontDocument::IsSaved(const WatchedHost& host)
{
    HeldHandle document(host);
    int32_t isSaved = -1;
    if (host.Call(&Table::get_front_document, &document.value) == HOPBOX_OK)
        host.Call(&Table::is_document_saved, document.value, &isSaved);
    return isSaved;
}

QString FrontDocument::GetEnding(const WatchedHost& host)
{
    return QFileInfo(GetFile(host)).completeSuffix();
}

QString FrontDocument::OpenUnsaved(const hopbox_adaptor& adaptor, const QString& folder,
                                   const QString& ending)
{
    QString path;
    int number = 0;
    do
        path = QStringLiteral("%1/Unsaved %2.%3").arg(folder).arg(++number).arg(ending);
    while (QFileInfo::exists(path));
    adaptor.open_unsaved(adaptor.host, Boundary::PassedText(path));
    return path;
}
