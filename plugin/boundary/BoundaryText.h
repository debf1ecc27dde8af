#pragma once

#include "foundation/core/GString.h"
#include "plugin/boundary/hopbox_host.h"

#include <QStringList>

#include <algorithm>
#include <cstring>
#include <vector>

// Texts and lists on their way through the boundary. What can't be read is a fault, never a part of a text.
namespace Boundary
{
constexpr size_t cMostPages = 1'000'000;  // of one list

// A text with its bytes, for the time of a call.
class PassedText
{
public:
    explicit PassedText(const GString& text)
        : mBytes(text.toUtf8()), mText{mBytes.constData(), static_cast<size_t>(mBytes.size())}
    {
    }
    PassedText(const PassedText&) = delete;
    PassedText& operator=(const PassedText&) = delete;

    const hopbox_text& Get() const { return mText; }
    operator const hopbox_text*() const { return &mText; }

private:
    QByteArray mBytes;
    hopbox_text mText;
};

// Collects the texts that the other side puts into its sink.
class TextSink
{
public:
    TextSink() : mSink{this, Put} {}
    TextSink(const TextSink&) = delete;
    TextSink& operator=(const TextSink&) = delete;

    operator const hopbox_sink*() const { return &mSink; }

    const QStringList& GetTexts() const { return mTexts; }

    // Whether a text was too long, had no bytes in spite of its length, or was one of too many.
    bool IsFaulty() const { return mIsFaulty; }

private:
    static void Put(void* context, const char* bytes, size_t length);

    hopbox_sink mSink;
    QStringList mTexts;
    bool mIsFaulty = false;
};

// The same for pages.
class PageSink
{
public:
    PageSink() : mSink{this, Put} {}
    PageSink(const PageSink&) = delete;
    PageSink& operator=(const PageSink&) = delete;

    operator const hopbox_page_sink*() const { return &mSink; }
    const std::vector<uint32_t>& GetPages() const { return mPages; }
    bool IsFaulty() const { return mIsFaulty; }

private:
    static void Put(void* context, const uint32_t* pages, size_t count);

    hopbox_page_sink mSink;
    std::vector<uint32_t> mPages;
    bool mIsFaulty = false;
};

// The text that the other side has passed; raises std::invalid_argument for one that can't be read.
GString Read(const hopbox_text* text);

// Puts a text into the other side's sink; nothing where there is none.
void Put(const hopbox_sink* sink, const GString& text);

// A copy of the other side's table in the form that is known here: what its size does not reach is null, and
// so is a function of which it reaches a part. Nothing of the table but its size and version is looked at
// before. False for a table that is none or of another version.
template <class Table>
[[nodiscard]] bool Copy(const Table* source, Table& copy)
{
    copy = Table();
    constexpr size_t cHead = offsetof(Table, version) + sizeof source->version;
    if (source == nullptr || source->size < cHead || source->version != HOPBOX_VERSION)
        return false;
    const size_t functions = (std::min<size_t>(source->size, sizeof copy) - cHead) / sizeof(void*);
    std::memcpy(&copy, source, cHead + functions * sizeof(void*));
    return true;
}
}  // namespace Boundary
