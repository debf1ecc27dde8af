#include "tests/support/fake_host/FakeDocuments.h"

#include <algorithm>

namespace
{
// Nonsense: a path that no file system call takes.
IDFile MakeFile(FakeHost& host, HostOperation operation, const QString& path)
{
    const HostAnswer answer = host.Ask(operation);
    if (answer == HostAnswer::Nonsense)
        return IDFile(PMString(path + QChar(0) + QString(70000, QLatin1Char('/'))));
    return answer == HostAnswer::Works ? IDFile(PMString(path)) : IDFile();
}

class FakePageList : public FakeRecordObject<IPageList, const FakeDocument&>
{
public:
    using FakeRecordObject::FakeRecordObject;

    int32_t GetPageCount() const override { return mHost.Give(mRecord.pageCount); }

    UID GetNthPage(int32_t index) const override
    {
        const HostAnswer answer = mHost.Ask(HostOperation::GetNthPage);
        if (answer == HostAnswer::Nonsense)
            return std::numeric_limits<UID>::max();
        const bool isThere = index >= 0 && index < mRecord.pageCount;
        return answer == HostAnswer::Works && isThere ? GetPageUID(index + 1) : cNoUID;
    }

    ErrorCode GetPageUIDs(const PMString& range, UIDList& pages) const override
    {
        if (const ErrorCode fault = mHost.AskForCode(HostOperation::GetPageUIDs); fault != cSuccess)
            return fault;
        for (const QString& part : range.GetString().split(QLatin1Char(','))) {
            const int first = part.section(QLatin1Char('-'), 0, 0).toInt();
            const int last = part.section(QLatin1Char('-'), -1).toInt();
            if (first < 1 || last < first || last > mRecord.pageCount)
                return cFailure;
            for (int number = first; number <= last; ++number)
                pages.Append(GetPageUID(number));
        }
        return cSuccess;
    }
};

class FakeFontList : public FakeRecordObject<IFontList, const FakeDocument&>
{
public:
    using FakeRecordObject::FakeRecordObject;

    // Knows of no font before it took stock.
    void Update() override
    {
        mHost.Note();
        mMissing = mRecord.missingFonts;
    }
    int32_t GetMissingFontCount() const override { return mHost.Give(mMissing.size()); }
    PMString GetNthMissingFontName(int32_t index) const override { return mHost.Give(mMissing.value(index)); }

private:
    QStringList mMissing;
};

class FakeDocumentObject : public FakeRecordObject<IDocument, FakeDocument&>
{
public:
    using FakeRecordObject::FakeRecordObject;

    bool IsSaved() const override { return mHost.Give(mRecord.isSaved); }
    IDFile GetFile() const override { return MakeFile(mHost, HostOperation::GetDocumentFile, mRecord.path); }
    PMString GetName() const override { return mHost.Give(mRecord.name); }
    const IDataBase* GetDataBase() const override
    {
        mHost.Note();
        return reinterpret_cast<const IDataBase*>(&mRecord);
    }

    HostPtr<IPageList> QueryPageList() const override
    {
        return HandOut<FakePageList>(mHost, HostOperation::QueryPageList, "IPageList", mRecord);
    }

    HostPtr<IFontList> QueryFontList() const override
    {
        return HandOut<FakeFontList>(mHost, HostOperation::QueryFontList, "IFontList", mRecord);
    }
};

class FakeBookContent : public FakeRecordObject<IBookContent, const FakeBook&>
{
public:
    using FakeRecordObject::FakeRecordObject;

    int32_t GetDocumentCount() const override { return mHost.Give(mRecord.documentPaths.size()); }

    IDFile GetNthDocumentFile(int32_t index) const override
    {
        return MakeFile(mHost, HostOperation::GetNthDocumentFile, mRecord.documentPaths.value(index));
    }
};

class FakeBookObject : public FakeRecordObject<IBook, FakeBook&>
{
public:
    using FakeRecordObject::FakeRecordObject;

    IDFile GetFile() const override { return MakeFile(mHost, HostOperation::GetBookFile, mRecord.path); }
    PMString GetName() const override { return mHost.Give(mRecord.name); }
    bool IsModified() const override { return mHost.Give(mRecord.isModified); }

    ErrorCode Save() override
    {
        if (const ErrorCode fault = mHost.AskForCode(HostOperation::SaveBook); fault != cSuccess)
            return fault;
        mRecord.isModified = false;
        return cSuccess;
    }

    HostPtr<IBookContent> QueryContent() const override
    {
        return HandOut<FakeBookContent>(mHost, HostOperation::QueryBookContent, "IBookContent", mRecord);
    }
};
}  // namespace

FakeDocument& GetRecord(const IDocument& document)
{
    return static_cast<const FakeDocumentObject&>(document).mRecord;
}

FakeBook& GetRecord(const IBook& book)
{
    return static_cast<const FakeBookObject&>(book).mRecord;
}

HostPtr<IDocument> FakeLayoutUtils::QueryFrontDocument() const
{
    const auto front = std::find_if(mHost.documents.begin(), mHost.documents.end(),
                                    [](const FakeDocument& document) { return document.isOpen; });
    if (front == mHost.documents.end())
        return {};
    return HandOut<FakeDocumentObject>(mHost, HostOperation::QueryFrontDocument, "IDocument", *front);
}

ErrorCode FakeDocumentUtils::SaveDocument(IDocument& document)
{
    if (const ErrorCode fault = mHost.AskForCode(HostOperation::SaveDocument); fault != cSuccess)
        return fault;
    GetRecord(document).isSaved = true;
    return cSuccess;
}

FakeDocument* FakeDocumentUtils::Find(const IDFile& file) const
{
    const QString path = FileUtils::SysFileToPMString(file).GetString();
    const auto found = std::find_if(mHost.documents.begin(), mHost.documents.end(),
                                    [&](const FakeDocument& document) { return document.path == path; });
    return found == mHost.documents.end() ? nullptr : &*found;
}

HostPtr<IDocument> FakeDocumentUtils::FindOpenDocument(const IDFile& file) const
{
    FakeDocument* record = Find(file);
    if (record == nullptr || !record->isOpen)
        return {};
    return HandOut<FakeDocumentObject>(mHost, HostOperation::FindOpenDocument, "IDocument", *record);
}

ErrorCode FakeDocumentUtils::OpenDocument(const IDFile& file, HostPtr<IDocument>& document)
{
    const HostAnswer answer = mHost.Ask(HostOperation::OpenDocument);
    FakeDocument* record = Find(file);
    if (answer == HostAnswer::Fails || record == nullptr)
        return cFailure;
    record->isOpen = answer != HostAnswer::Absent;
    if (record->isOpen)
        document = HostPtr<FakeDocumentObject>::Adopt(new FakeDocumentObject(mHost, "IDocument", *record));
    // Nonsense: an error, and yet a document.
    return answer == HostAnswer::Nonsense ? cFailure : cSuccess;
}

ErrorCode FakeDocumentUtils::CloseDocument(IDocument& document, const CloseFlags& flags)
{
    const bool isQuiet = flags.dialogs == 0 && flags.mayCancel && flags.isAtOnce;
    const ErrorCode fault = mHost.AskForCode(HostOperation::CloseDocument);
    if (fault != cSuccess || !isQuiet)
        return fault == cSuccess ? cFailure : fault;
    GetRecord(document).isOpen = false;
    return cSuccess;
}

HostPtr<IBook> FakeBookManager::QueryActiveBook() const
{
    if (mHost.books.empty())
        return {};
    return HandOut<FakeBookObject>(mHost, HostOperation::QueryActiveBook, "IBook", mHost.books.front());
}
