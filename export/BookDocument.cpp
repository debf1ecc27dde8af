#include "export/BookDocument.h"

#include "foundation/trace/GTrace.h"
#include "plugin/host/HostCalls.h"
#include "plugin/messages/MessageCodes.h"

BookDocument::BookDocument(const IDFile& file)
{
    if (!file.IsEmpty())
        mUtils = UtilsBoss::QueryUtils<IDocumentUtils>();
    if (mUtils)
        mDocument = mUtils->FindOpenDocument(file);
    if (!mDocument)
        Open(file);
}

BookDocument::~BookDocument()
{
    if (mIsToBeClosed && mUtils->CloseDocument(*mDocument, CloseFlags()) != cSuccess)
        GTrace::Error(QStringLiteral("BookDocument"), QStringLiteral("A document of the book stays open."));
}

void BookDocument::Open(const IDFile& file)
{
    if (!mUtils || mUtils->OpenDocument(file, mDocument) != cSuccess)
        mError = PlugInMessage::cDocumentNotOpened;
    else if (!mDocument)
        mError = PlugInMessage::cDocumentInvalid;
    mIsToBeClosed = static_cast<bool>(mDocument);
}
