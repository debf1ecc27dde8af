#pragma once

#include "plugin/host/HostPtr.h"
#include "plugin/host/IHostUtils.h"

// A document of a book while it is checked. If the user has it open, it stays as it is; otherwise it is open
// only while this object exists. For the host's main thread.
class BookDocument
{
public:
    explicit BookDocument(const IDFile& file);
    ~BookDocument();
    BookDocument(const BookDocument&) = delete;
    BookDocument& operator=(const BookDocument&) = delete;

    // The code of the message that says why there is no document; 0 when there is one.
    uint32_t GetError() const { return mError; }

    const IDocument& Get() const { return *mDocument; }

private:
    void Open(const IDFile& file);

    HostPtr<IDocumentUtils> mUtils;
    HostPtr<IDocument> mDocument;
    bool mIsToBeClosed = false;
    uint32_t mError = 0;
};
