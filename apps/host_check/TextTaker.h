#pragma once

#include "plugin/boundary/BoundaryText.h"

#include <thread>

// Takes what an operation puts, as the plug-in does, and notes also what the plug-in doesn't look at: the
// thread that it comes on.
template <class Inner, class Sink, class Item>
class Taker : public Inner
{
public:
    const Sink* Get() const { return &mSink; }
    bool IsFaulty() const { return mIsElsewhere || Inner::IsFaulty(); }

private:
    static void Put(void* context, const Item* items, size_t count)
    {
        auto& taker = *static_cast<Taker*>(context);
        taker.mIsElsewhere |= std::this_thread::get_id() != taker.mThread;
        const Sink& inner = *static_cast<const Sink*>(static_cast<const Inner&>(taker));
        inner.put(inner.context, items, count);
    }

    Sink mSink = {this, Put};
    bool mIsElsewhere = false;
    const std::thread::id mThread = std::this_thread::get_id();
};

using TextTaker = Taker<Boundary::TextSink, hopbox_sink, char>;
using PageTaker = Taker<Boundary::PageSink, hopbox_page_sink, uint32_t>;
