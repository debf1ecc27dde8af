#include "export/BookDocument.h"

#include "foundation/trace/GTrace.h"
#include "plugin/host/HostCalls.h"
#include "plugin/host/HostFault.h"
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
    if (!mIsToBeClosed)
        return;
    ErrorCode result = cFailure;
    HostFault::Contain("BookDocument", [&] { result = mUtils->CloseDocument(*mDocument, CloseFlags()); });
    if (result != cSuccess)
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
