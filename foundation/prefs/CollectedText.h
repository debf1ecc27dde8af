#pragma once

#include <QLatin1String>

#include <algorithm>
#include <vector>

// The characters of a text that is being built. The same memory is used for one text after the other.
class CollectedText
{
public:
    // Forgets the text; memory that only a long text needed is freed.
    void Clear()
    {
        mLength = 0;
        if (mUnits.size() > cKept)
            mUnits = {};
    }

    int GetLength() const { return static_cast<int>(mLength); }
    const char16_t* GetUnits() const { return mUnits.data(); }

    // Makes room after the text for `count` more; then Add says how many were written there.
    char16_t* MakeRoom(size_t count)
    {
        const size_t needed = mLength + count;
        if (mUnits.size() < needed)
            mUnits.resize(std::max(needed, 2 * mUnits.size()));
        return mUnits.data() + mLength;
    }
    void Add(size_t count) { mLength += count; }

    void Add(QLatin1String text)
    {
        const auto count = static_cast<size_t>(text.size());
        std::copy(text.begin(), text.end(), MakeRoom(count));
        Add(count);
    }

private:
    static constexpr size_t cKept = 65536;

    std::vector<char16_t> mUnits;  // the text, then room
    size_t mLength = 0;
};
