#include "plugin/boundary/BoundaryText.h"

#include <stdexcept>

namespace
{
constexpr int cMostTexts = 100000;

bool IsReadable(const char* bytes, size_t length)
{
    return length <= HOPBOX_LONGEST_TEXT && (bytes != nullptr || length == 0);
}
}  // namespace

void Boundary::TextSink::Put(void* context, const char* bytes, size_t length)
{
    auto& sink = *static_cast<TextSink*>(context);
    if (IsReadable(bytes, length) && sink.mTexts.size() < cMostTexts)
        sink.mTexts.append(GString::fromUtf8(bytes, static_cast<int>(length)));
    else
        sink.mIsFaulty = true;
}

void Boundary::PageSink::Put(void* context, const uint32_t* pages, size_t count)
{
    auto& sink = *static_cast<PageSink*>(context);
    if (count <= cMostPages - sink.mPages.size() && (pages != nullptr || count == 0))
        sink.mPages.insert(sink.mPages.end(), pages, pages + count);
    else
        sink.mIsFaulty = true;
}

GString Boundary::Read(const hopbox_text* text)
{
    if (text == nullptr || !IsReadable(text->bytes, text->length))
        throw std::invalid_argument("A text at the boundary can't be read.");
    return GString::fromUtf8(text->bytes, static_cast<int>(text->length));
}

void Boundary::Put(const hopbox_sink* sink, const GString& text)
{
    if (sink == nullptr || sink->put == nullptr)
        return;
    const PassedText passed(text);
    sink->put(sink->context, passed.Get().bytes, passed.Get().length);
}
