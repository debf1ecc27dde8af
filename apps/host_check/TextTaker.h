#pragma once

#include "plugin/boundary/hopbox_host.h"

#include <QStringList>

#include <thread>
#include <vector>

// Takes what an operation puts, and notes what it may not do: another thread, no bytes, bytes that are no
// UTF-8.
class TextTaker
{
public:
    TextTaker() : mSink{this, Put} {}
    TextTaker(const TextTaker&) = delete;
    TextTaker& operator=(const TextTaker&) = delete;

    const hopbox_sink* Get() const { return &mSink; }
    const QStringList& GetTexts() const { return mTexts; }
    bool IsFaulty() const { return mIsFaulty; }

private:
    static void Put(void* context, const char* bytes, size_t length);

    hopbox_sink mSink;
    QStringList mTexts;
    bool mIsFaulty = false;
    const std::thread::id mThread = std::this_thread::get_id();
};

class PageTaker
{
public:
    PageTaker() : mSink{this, Put} {}
    PageTaker(const PageTaker&) = delete;
    PageTaker& operator=(const PageTaker&) = delete;

    const hopbox_page_sink* Get() const { return &mSink; }
    const std::vector<uint32_t>& GetPages() const { return mPages; }
    bool IsFaulty() const { return mIsFaulty; }

private:
    static void Put(void* context, const uint32_t* pages, size_t count);

    hopbox_page_sink mSink;
    std::vector<uint32_t> mPages;
    bool mIsFaulty = false;
    const std::thread::id mThread = std::this_thread::get_id();
};
