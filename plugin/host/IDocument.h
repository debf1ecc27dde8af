#pragma once

#include "plugin/host/HostIdentifiers.h"
#include "plugin/host/HostPtr.h"
#include "plugin/host/IDFile.h"
#include "plugin/host/UIDList.h"

// The pages of a document, in the document's order.
class IPageList : public IHostObject
{
public:
    // Host: the list's count of pages.
    virtual int32_t GetPageCount() const = 0;

    // The page at an index from 0, cNoUID where there is none. Host: the list's page identifier by index.
    virtual UID GetNthPage(int32_t index) const = 0;

    // Appends the pages that a range text such as "1-3,8" names, by the page numbers that the user sees, in
    // the order of the text. Zero on success; anything else when the text names no valid pages. The list must
    // not be used then. Host: the list's conversion of a page range text, without its message windows.
    virtual ErrorCode GetPageUIDs(const PMString& range, UIDList& pages) const = 0;

protected:
    ~IPageList() = default;
};

// The fonts that a document uses.
class IFontList : public IHostObject
{
public:
    // Looks at the document's fonts again; call it before the operations below. Host: the update operation of
    // the used-fonts list.
    virtual void Update() = 0;

    // Host: the list's count of missing fonts.
    virtual int32_t GetMissingFontCount() const = 0;

    // The name of a missing font as the user knows it; an index from 0. Host: the list's missing font name.
    virtual PMString GetNthMissingFontName(int32_t index) const = 0;

protected:
    ~IFontList() = default;
};

// An open document.
class IDocument : public IHostObject
{
public:
    // Whether the file holds the document's current state: false when the document was never saved or has
    // changed since. Host: the document's saved state together with its modified state.
    virtual bool IsSaved() const = 0;

    // The document's file; empty for one that was never saved. Host: the document's file, as IDFile.
    virtual IDFile GetFile() const = 0;

    // The document's name in its window's title. Host: the document's name.
    virtual PMString GetName() const = 0;

    // Host: GetDataBase on the document.
    virtual const IDataBase* GetDataBase() const = 0;

    // Host: the document's interface 1324.
    virtual HostPtr<IPageList> QueryPageList() const = 0;

    // Host: the document's interface 44804.
    virtual HostPtr<IFontList> QueryFontList() const = 0;

protected:
    ~IDocument() = default;
};
