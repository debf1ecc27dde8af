#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

// A list of objects that are called in the order in which they were attached. A call may attach and detach
// any objects, and may begin another round of calls. An object that is attached during a round is first
// called in the next round; an object that is detached is not called any more. The list does not own the
// objects. For one thread at a time; the list itself must outlive a round.
template <typename Object>
class GAttachments
{
public:
    // An object that is attached already keeps its place.
    void Attach(Object& object)
    {
        if (std::find(mObjects.begin(), mObjects.end(), &object) == mObjects.end())
            mObjects.push_back(&object);
    }

    void Detach(const Object& object)
    {
        const auto found = std::find(mObjects.begin(), mObjects.end(), &object);
        if (found == mObjects.end())
            return;
        *found = nullptr;
        RemoveDetached();
    }

    void DetachAll()
    {
        std::fill(mObjects.begin(), mObjects.end(), nullptr);
        RemoveDetached();
    }

    template <typename Call>
    void CallEach(Call&& call)
    {
        const Round round(*this);
        const size_t count = mObjects.size();
        for (size_t place = 0; place < count; ++place) {
            if (mObjects[place] != nullptr)
                call(*mObjects[place]);
        }
    }

private:
    // Objects keep their places in the list during a round, however the round ends.
    class Round
    {
    public:
        explicit Round(GAttachments& attachments) : mAttachments(attachments) { ++mAttachments.mRounds; }
        ~Round()
        {
            --mAttachments.mRounds;
            mAttachments.RemoveDetached();
        }
        Round(const Round&) = delete;
        Round& operator=(const Round&) = delete;

    private:
        GAttachments& mAttachments;
    };

    void RemoveDetached()
    {
        if (mRounds == 0)
            mObjects.erase(std::remove(mObjects.begin(), mObjects.end(), nullptr), mObjects.end());
    }

    std::vector<Object*> mObjects;  // null: detached during a round
    int mRounds = 0;
};
