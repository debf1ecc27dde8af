#include "hosts/scribus/host/HostDocuments.h"

#include "foundation/trace/GTrace.h"
#include "hosts/scribus/host/HostObject.h"
#include "hosts/scribus/host/ScribusHost.h"

#include <algorithm>

namespace
{
using DocumentPtr = ScribusHost::DocumentPtr;

QString GetPath(const IDFile& file)
{
    return FileUtils::SysFileToPMString(file).GetString();
}

class PageList : public HostObject<IPageList>
{
public:
    PageList(ScribusHost& host, const DocumentPtr& document) : mHost(host), mDocument(document) {}

    int32_t GetPageCount() const override
    {
        const DocumentInfo* info = mDocument->GetInfo();
        return info == nullptr ? 0 : info->pages.size();
    }

    UID GetNthPage(int32_t index) const override
    {
        return index >= 0 && index < GetPageCount() ? HostDocuments::GetPageUID(index) : cNoUID;
    }

    ErrorCode GetPageUIDs(const PMString& range, UIDList& pages) const override
    {
        const DocumentInfo* info = mDocument->GetInfo();
        QVector<int> found;
        const GResult result = info == nullptr ? GResult::Failure(mDocument->GetError())
                                               : info->FindPages(range.GetString(), found);
        mHost.SetRangeFailure(result.GetReason());
        for (const int page : found)
            pages.Append(HostDocuments::GetPageUID(page));
        return result.HasSucceeded() ? cSuccess : cFailure;
    }

private:
    ScribusHost& mHost;
    DocumentPtr mDocument;
};

class FontList : public HostObject<IFontList>
{
public:
    explicit FontList(const DocumentPtr& document) : mDocument(document) {}

    void Update() override
    {
        const DocumentInfo* info = mDocument->GetInfo();
        mMissing = info == nullptr ? QStringList() : info->GetMissingFonts();
    }

    int32_t GetMissingFontCount() const override { return mMissing.size(); }

    PMString GetNthMissingFontName(int32_t index) const override
    {
        return PMString::Untranslated(mMissing.value(index));
    }

private:
    DocumentPtr mDocument;
    QStringList mMissing;
};

class Document : public HostObject<IDocument>
{
public:
    Document(ScribusHost& host, const DocumentPtr& document) : mHost(host), mDocument(document) {}

    bool IsSaved() const override { return mDocument->IsSaved(); }
    PMString GetName() const override { return PMString::Untranslated(mDocument->GetName()); }
    const IDataBase* GetDataBase() const override { return HostDocuments::GetDataBase(*mDocument); }

    IDFile GetFile() const override
    {
        return mDocument->IsSaved() ? IDFile(PMString(mDocument->GetPath())) : IDFile();
    }

    HostPtr<IPageList> QueryPageList() const override
    {
        return MakeHostObject<PageList, IPageList>(mHost, mDocument);
    }

    // None for a document that Scribus can't read: nobody knows its fonts then.
    HostPtr<IFontList> QueryFontList() const override
    {
        if (mDocument->GetInfo() == nullptr)
            return {};
        return MakeHostObject<FontList, IFontList>(mDocument);
    }

    const DocumentPtr& GetDocument() const { return mDocument; }

private:
    ScribusHost& mHost;
    DocumentPtr mDocument;
};

HostPtr<IDocument> HandOut(ScribusHost& host, const DocumentPtr& document)
{
    return document == nullptr ? HostPtr<IDocument>() : MakeHostObject<Document, IDocument>(host, document);
}

class LayoutUtils : public HostObject<ILayoutUtils>
{
public:
    explicit LayoutUtils(ScribusHost& host) : mHost(host) {}
    HostPtr<IDocument> QueryFrontDocument() const override
    {
        return HandOut(mHost, mHost.GetActiveDocument());
    }

private:
    ScribusHost& mHost;
};

class DocumentUtils : public HostObject<IDocumentUtils>
{
public:
    explicit DocumentUtils(ScribusHost& host) : mHost(host) {}

    ErrorCode SaveDocument(IDocument& document) override
    {
        const GResult saved = mHost.SaveDocument(*HostDocuments::GetDocument(document));
        if (!saved.HasSucceeded())
            mHost.TellOfFailure(QStringLiteral("IDocumentUtils::SaveDocument"), saved);
        return saved.HasSucceeded() ? cSuccess : cFailure;
    }

    HostPtr<IDocument> FindOpenDocument(const IDFile& file) const override
    {
        return HandOut(mHost, mHost.FindDocument(GetPath(file)));
    }

    ErrorCode OpenDocument(const IDFile& file, HostPtr<IDocument>& document) override
    {
        const DocumentPtr opened = mHost.TakeDocument(GetPath(file));
        const std::optional<ErrorCode> asked =
            opened->IsDescribed() ? std::nullopt : mHost.AskAboutBook(opened->GetPath());
        if (asked && *asked != cSuccess)
            return cFailure;
        if (asked ? !opened->IsDescribed() : opened->GetInfo() == nullptr) {
            const QString& reason = opened->GetError();
            mHost.SetLastFailure(reason.contains(opened->GetName())
                                     ? reason
                                     : QStringLiteral("\"%1\": %2").arg(opened->GetName(), reason));
            return cFailure;
        }
        mHost.GetHiddenDocuments().push_back(opened);
        document = HandOut(mHost, opened);
        return cSuccess;
    }

    ErrorCode CloseDocument(IDocument& document, const CloseFlags&) override
    {
        auto& hidden = mHost.GetHiddenDocuments();
        const auto found = std::find(hidden.begin(), hidden.end(), HostDocuments::GetDocument(document));
        if (found == hidden.end())
            return cFailure;
        hidden.erase(found);
        return cSuccess;
    }

private:
    ScribusHost& mHost;
};
}  // namespace

HostPtr<ILayoutUtils> HostDocuments::MakeLayoutUtils(ScribusHost& host)
{
    return MakeHostObject<LayoutUtils, ILayoutUtils>(host);
}

HostPtr<IDocumentUtils> HostDocuments::MakeDocumentUtils(ScribusHost& host)
{
    return MakeHostObject<DocumentUtils, IDocumentUtils>(host);
}

const IDataBase* HostDocuments::GetDataBase(const ScribusDocument& document)
{
    return reinterpret_cast<const IDataBase*>(&document);
}

std::shared_ptr<ScribusDocument> HostDocuments::GetDocument(const IDocument& document)
{
    return static_cast<const Document&>(document).GetDocument();
}
