#pragma once

#include "tests/support/fake_host/FakeObject.h"

class FakeLayoutUtils : public FakeObject<ILayoutUtils>
{
public:
    explicit FakeLayoutUtils(FakeHost& host) : FakeObject(host, "ILayoutUtils") {}
    HostPtr<IDocument> QueryFrontDocument() const override;
};

class FakeDocumentUtils : public FakeObject<IDocumentUtils>
{
public:
    explicit FakeDocumentUtils(FakeHost& host) : FakeObject(host, "IDocumentUtils") {}
    ErrorCode SaveDocument(IDocument& document) override;
    HostPtr<IDocument> FindOpenDocument(const IDFile& file) const override;
    ErrorCode OpenDocument(const IDFile& file, HostPtr<IDocument>& document) override;
    ErrorCode CloseDocument(IDocument& document, const CloseFlags& flags) override;

private:
    FakeDocument* Find(const IDFile& file) const;
};

class FakeBookManager : public FakeObject<IBookManager>
{
public:
    explicit FakeBookManager(FakeHost& host) : FakeObject(host, "IBookManager") {}
    int32_t GetBookCount() const override { return mHost.Give(static_cast<int32_t>(mHost.books.size())); }
    HostPtr<IBook> QueryActiveBook() const override;
};

// The value that one of the host's documents or books stands for.
FakeDocument& GetRecord(const IDocument& document);
FakeBook& GetRecord(const IBook& book);
