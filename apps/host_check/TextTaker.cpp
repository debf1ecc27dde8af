#include "apps/host_check/TextTaker.h"

void TextTaker::Put(void* context, const char* bytes, size_t length)
{
    auto& taker = *static_cast<TextTaker*>(context);
    if (std::this_thread::get_id() != taker.mThread || length > HOPBOX_LONGEST_TEXT ||
        (bytes == nullptr && length > 0)) {
        taker.mIsFaulty = true;
        return;
    }
    const QByteArray text(bytes, static_cast<int>(length));
    taker.mTexts.append(QString::fromUtf8(text));
    taker.mIsFaulty |= taker.mTexts.back().toUtf8() != text;
}

void PageTaker::Put(void* context, const uint32_t* pages, size_t count)
{
    auto& taker = *static_cast<PageTaker*>(context);
    if (std::this_thread::get_id() != taker.mThread || count > 1'000'000 || (pages == nullptr && count > 0))
        taker.mIsFaulty = true;
    else
        taker.mPages.insert(taker.mPages.end(), pages, pages + count);
}
