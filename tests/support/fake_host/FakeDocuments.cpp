#include "tests/support/fake_host/FakeDocuments.h"

#include <algorithm>

namespace
{
PMString MakeName(const QString& text)
{
    return PMString::Untranslated(text);
}

IDFile MakeFile(FakeHost& host, HostOperation operation, const QString& path)
{
    return host.Ask(operation) == HostAnswer::Works ? IDFile(PMString(path)) : IDFile();
}

class FakePageList : public FakeRecordObject<IPageList, const FakeDocument&>
{
public:
    using FakeRecordObject::FakeRecordObject;

    int32_t GetPageCount() const override { return mRecord.pageCount; }

    UID GetNthPage(int32_t index) const override
    {
        if (mHost.Ask(HostOperation::GetNthPage) != HostAnswer::Works || index >= mRecord.pageCount)
            return cNoUID;
        return GetPageUID(index + 1);
    }

    ErrorCode GetPageUIDs(const PMString& range, UIDList& pages) const override
    {
        if (mHost.Ask(HostOperation::GetPageUIDs) != HostAnswer::Works)
            return cFailure;
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
    void Update() override { mMissing = mRecord.missingFonts; }
    int32_t GetMissingFontCount() const override { return mMissing.size(); }
    PMString GetNthMissingFontName(int32_t index) const override { return MakeName(mMissing.value(index)); }

private:
    QStringList mMissing;
};

class FakeDocumentObject : public FakeRecordObject<IDocument, FakeDocument&>
{
public:
    using FakeRecordObject::FakeRecordObject;

    bool IsSaved() const override { return mRecord.isSaved; }
    IDFile GetFile() const override { return MakeFile(mHost, HostOperation::GetDocumentFile, mRecord.path); }
    PMString GetName() const override { return MakeName(mRecord.name); }
    const IDataBase* GetDataBase() const override { return reinterpret_cast<const IDataBase*>(&mRecord); }

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

    int32_t GetDocumentCount() const override { return mRecord.documentPaths.size(); }

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
    bool IsModified() const override { return mRecord.isModified; }

    ErrorCode Save() override
    {
        if (mHost.Ask(HostOperation::SaveBook) != HostAnswer::Works)
            return cFailure;
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
    if (mHost.Ask(HostOperation::SaveDocument) != HostAnswer::Works)
        return cFailure;
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
    record->isOpen = answer == HostAnswer::Works;
    if (record->isOpen)
        document = HostPtr<FakeDocumentObject>::Adopt(new FakeDocumentObject(mHost, "IDocument", *record));
    return cSuccess;
}

ErrorCode FakeDocumentUtils::CloseDocument(IDocument& document, const CloseFlags& flags)
{
    const bool isQuiet = flags.dialogs == 0 && flags.mayCancel && flags.isAtOnce;
    if (mHost.Ask(HostOperation::CloseDocument) != HostAnswer::Works || !isQuiet)
        return cFailure;
    GetRecord(document).isOpen = false;
    return cSuccess;
}

HostPtr<IBook> FakeBookManager::QueryActiveBook() const
{
    if (mHost.books.empty())
        return {};
    return HandOut<FakeBookObject>(mHost, HostOperation::QueryActiveBook, "IBook", mHost.books.front());
}
