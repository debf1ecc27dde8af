#include "hosts/scribus/host/HostBooks.h"

#include "foundation/trace/GTrace.h"
#include "hosts/scribus/host/HostObject.h"
#include "hosts/scribus/host/ScribusHost.h"

#include <QFileInfo>

namespace
{
// The documents as they stood when they were asked for: a list that a command has been given stays as it is.
class Content : public HostObject<IBookContent>
{
public:
    explicit Content(const QStringList& documents) : mDocuments(documents) {}

    int32_t GetDocumentCount() const override { return mDocuments.size(); }

    IDFile GetNthDocumentFile(int32_t index) const override
    {
        const QString path = mDocuments.value(index);
        return path.isEmpty() ? IDFile() : IDFile(PMString(path));
    }

    const QStringList& GetDocuments() const { return mDocuments; }

private:
    QStringList mDocuments;
};

class Book : public HostObject<IBook>
{
public:
    explicit Book(const ScribusHost::BookPtr& book) : mBook(book) {}

    IDFile GetFile() const override { return IDFile(PMString(mBook->GetPath())); }
    PMString GetName() const override
    {
        return PMString::Untranslated(QFileInfo(mBook->GetPath()).fileName());
    }
    bool IsModified() const override { return mBook->IsModified(); }

    ErrorCode Save() override
    {
        const GResult saved = mBook->Save();
        if (saved.HasSucceeded())
            return cSuccess;
        GTrace::Error(QStringLiteral("BookFile::Save"), saved.GetReason());
        return cFailure;
    }

    HostPtr<IBookContent> QueryContent() const override
    {
        return MakeHostObject<Content, IBookContent>(mBook->GetDocuments());
    }

    const BookFile& GetBook() const { return *mBook; }

private:
    ScribusHost::BookPtr mBook;
};

class BookManager : public HostObject<IBookManager>
{
public:
    explicit BookManager(ScribusHost& host) : mHost(host) {}

    int32_t GetBookCount() const override { return static_cast<int32_t>(mHost.GetBooks().size()); }

    HostPtr<IBook> QueryActiveBook() const override
    {
        const ScribusHost::BookPtr book = mHost.GetActiveBook();
        return book == nullptr ? HostPtr<IBook>() : MakeHostObject<Book, IBook>(book);
    }

private:
    ScribusHost& mHost;
};
}  // namespace

HostPtr<IBookManager> HostBooks::MakeManager(ScribusHost& host)
{
    return MakeHostObject<BookManager, IBookManager>(host);
}

const BookFile& HostBooks::GetBook(const IBook& book)
{
    return static_cast<const Book&>(book).GetBook();
}

QStringList HostBooks::GetDocuments(const IBookContent& content)
{
    return static_cast<const Content&>(content).GetDocuments();
}
