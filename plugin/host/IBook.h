#pragma once

#include "plugin/host/HostIdentifiers.h"
#include "plugin/host/HostPtr.h"
#include "plugin/host/IDFile.h"

// The documents of a book, named by their files, in the book's order.
class IBookContent : public IHostObject
{
public:
    // Host: the content manager's number of contents.
    virtual int32_t GetDocumentCount() const = 0;

    // The file of the document at an index from 0; empty if the book does not know it. Host: the content at
    // the index, and the file that its data link names.
    virtual IDFile GetNthDocumentFile(int32_t index) const = 0;

protected:
    ~IBookContent() = default;
};

// An open book.
class IBook : public IHostObject
{
public:
    // The book's file; empty for one that was never saved. Host: the book's file.
    virtual IDFile GetFile() const = 0;

    // The book's name in its panel; exports of a book without a file are named after it. Host:
    // the book's title name.
    virtual PMString GetName() const = 0;

    // Whether the book differs from its file and must be written before it is exported. Host: the book's
    // yes/no state query, its modified state.
    virtual bool IsModified() const = 0;

    // Writes the book to its own file. Zero on success. Host: the book's save operation, given its own file.
    virtual ErrorCode Save() = 0;

    // Host: the book's interface 0x10004.
    virtual HostPtr<IBookContent> QueryContent() const = 0;

protected:
    ~IBook() = default;
};

// The open books of the application.
class IBookManager : public IHostObject
{
public:
    // Host: the manager's number of open books.
    virtual int32_t GetBookCount() const = 0;

    // The book whose panel is in front. Host: the manager's current active book.
    virtual HostPtr<IBook> QueryActiveBook() const = 0;

protected:
    ~IBookManager() = default;
};
