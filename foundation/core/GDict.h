#pragma once

#include "foundation/core/GDictCapacity.h"
#include "foundation/core/GDictHash.h"
#include "foundation/core/GDictUtil.h"

#include <cstddef>
#include <iterator>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

// The foundation's dictionary: a hash table whose order of entries is defined, because it is the order in
// which they are written to files.
//
// The entries are in one array of slots. An entry's home slot is its key's GDictHash modulo the number of
// slots. The entry goes into the first free slot from there on; after the last slot the search goes on at the
// first. Each slot counts the entries whose home it is, so a search ends when it has found that many: to find
// that a key is missing, mostly one look at one slot is enough. An iteration gives the entries in the order
// of their slots.
//
// The capacity begins at 7. As soon as the entries fill three quarters of it, it becomes
// GDictUtil::GetAllocation(2 * capacity), and every entry is put in again in slot order. Only Clear makes it
// smaller. An empty dictionary owns no memory.
//
// Each key with the same home slot costs one more step. So n keys that were chosen to have one home slot take
// n * n steps to put in. Code that reads files from other sources must therefore check IsCrowded while it
// reads.
//
// References to values, and iterators, are invalid after an Insert, FindOrInsert or Clear. Remove moves no
// entry: the entry at which an iteration is may be removed. Like the standard containers, for one thread at a
// time.
template <typename Key, typename Value>
class GDict
{
    struct Slot;
    template <bool isConst>
    class Iterator;

public:
    using iterator = Iterator<false>;
    using const_iterator = Iterator<true>;

    GDict() = default;
    GDict(const GDict& other);
    GDict(GDict&& other) noexcept { Swap(other); }
    GDict& operator=(GDict other) noexcept;

    // Puts the value under the key, and replaces the old one.
    Value& Insert(Key key, Value value);

    // The value under the key; if there is none, a value-initialised one is put there.
    Value& FindOrInsert(const Key& key);

    // The value under the key; null when there is none.
    Value* Find(const Key& key);
    const Value* Find(const Key& key) const;
    bool Has(const Key& key) const { return Find(key) != nullptr; }

    // Whether there was an entry to remove.
    bool Remove(const Key& key);

    // Removes every entry and goes back to the first capacity.
    void Clear() { *this = GDict(); }

    int GetCount() const { return static_cast<int>(mCount); }
    bool IsEmpty() const { return mCount == 0; }
    int GetCapacity() const { return static_cast<int>(mCapacity.Get()); }

    // Whether the entries are so far from their home slots that the keys must have been chosen for this: 32
    // slots on average, when two are usual. Stays true until the capacity changes.
    bool IsCrowded() const { return mDistance > 32 * uint64_t(mCapacity.Get()) + 10000; }

    // In slot order. An iterator gives an object with the members `key` and `value`, which are references to
    // those of the entry. Take it by value or as a const reference: for (const auto& entry : dict).
    iterator begin() { return {mSlots.get(), GetEnd()}; }
    iterator end() { return {GetEnd(), GetEnd()}; }
    const_iterator begin() const { return {mSlots.get(), GetEnd()}; }
    const_iterator end() const { return {GetEnd(), GetEnd()}; }

private:
    static constexpr uint32_t cNone = 0xFFFFFFFF;

    Slot* GetEnd() const { return mSlots ? mSlots.get() + mCapacity.Get() : nullptr; }
    Slot* FindSlot(const Key& key, uint32_t hash) const;
    // Must not be merged into FindSlot: the short path there would become slower, because it would have to
    // save the registers that this function needs.
    Q_NEVER_INLINE Slot* FindFromHome(const Key& key, uint32_t hash, uint32_t home) const;
    uint32_t Occupy(uint32_t hash, Key&& key, Value&& value);
    Value& Add(uint32_t hash, Key&& key, Value&& value);
    GDict MakeGrown() const;
    uint32_t MoveTo(GDict& grown, uint32_t followed);
    void Swap(GDict& other) noexcept;

    GDictCapacity mCapacity{7};
    uint32_t mCount = 0;
    uint64_t mDistance = 0;          // slots from home, of all entries put in since the capacity changed
    std::unique_ptr<Slot[]> mSlots;  // none before the first entry
};

template <typename Key, typename Value>
struct GDict<Key, Value>::Slot
{
    // Entries move when the table grows; a move that fails half-way would lose some of them.
    static_assert(std::is_nothrow_move_constructible_v<Key> && std::is_nothrow_move_constructible_v<Value>);

    struct Entry
    {
        Key key;
        Value value;
    };

    Slot() : homeMarks(0), isOccupied(0), homeCount(0), hash(0) {}
    ~Slot()
    {
        if (isOccupied)
            entry.~Entry();
    }
    Slot(const Slot&) = delete;
    Slot& operator=(const Slot&) = delete;

    // Call this when an entry with this home slot is added or removed, wherever the entry is.
    void AddToHome(uint32_t keyHash)
    {
        homeMarks |= GetMark(keyHash);
        ++homeCount;
    }
    void RemoveFromHome()
    {
        --homeCount;
        if (homeCount == 0)
            homeMarks = 0;
    }

    // Whether an entry with this hash may have its home here: false for most that do not.
    bool MayBeHomeOf(uint32_t keyHash) const { return (homeMarks & GetMark(keyHash)) != 0; }

    void Fill(uint32_t keyHash, Key&& key, Value&& value) noexcept
    {
        new (&entry) Entry{std::move(key), std::move(value)};
        hash = keyHash;
        isOccupied = 1;
    }

    void Empty()
    {
        isOccupied = 0;
        entry.~Entry();
    }

    // One of eight bits. The bits are mixed, because the hashes of neighbouring numbers differ only in their
    // lowest bits. Nearly every search for a missing key then ends at its home slot, and the processor
    // predicts that.
    static uint32_t GetMark(uint32_t keyHash) { return 1u << (keyHash * 0x9E3779B1u >> 29); }

    // The marks of the hashes, and the number, of the entries whose home slot this is, wherever they are. It
    // would take hours to put eight million entries with one home slot in.
    uint32_t homeMarks : 8;
    uint32_t isOccupied : 1;
    uint32_t homeCount : 23;
    uint32_t hash;  // of the entry's key, while occupied
    union {
        Entry entry;  // alive while occupied
    };
};

template <typename Key, typename Value>
template <bool isConst>
class GDict<Key, Value>::Iterator
{
    using ValueType = std::conditional_t<isConst, const Value, Value>;

public:
    struct reference
    {
        const Key& key;
        ValueType& value;
    };
    using value_type = reference;
    using pointer = void;
    using difference_type = std::ptrdiff_t;
    using iterator_category = std::input_iterator_tag;

    Iterator(Slot* slot, Slot* end) : mSlot(slot), mEnd(end) { SkipFree(); }

    reference operator*() const { return {mSlot->entry.key, mSlot->entry.value}; }
    Iterator& operator++()
    {
        ++mSlot;
        SkipFree();
        return *this;
    }
    bool operator==(const Iterator& other) const { return mSlot == other.mSlot; }
    bool operator!=(const Iterator& other) const { return mSlot != other.mSlot; }

private:
    void SkipFree()
    {
        while (mSlot != mEnd && !mSlot->isOccupied)
            ++mSlot;
    }

    Slot* mSlot;
    Slot* mEnd;
};

// The copy has each entry in the same slot.
template <typename Key, typename Value>
GDict<Key, Value>::GDict(const GDict& other)
    : mCapacity(other.mCapacity), mCount(other.mCount), mDistance(other.mDistance)
{
    if (other.IsEmpty())
        return;
    mSlots.reset(new Slot[mCapacity.Get()]);
    for (uint32_t index = 0; index < mCapacity.Get(); ++index) {
        const Slot& source = other.mSlots[index];
        mSlots[index].homeMarks = source.homeMarks;
        mSlots[index].homeCount = source.homeCount;
        if (source.isOccupied)
            mSlots[index].Fill(source.hash, Key(source.entry.key), Value(source.entry.value));
    }
}

template <typename Key, typename Value>
GDict<Key, Value>& GDict<Key, Value>::operator=(GDict other) noexcept
{
    Swap(other);
    return *this;
}

template <typename Key, typename Value>
void GDict<Key, Value>::Swap(GDict& other) noexcept
{
    std::swap(mCapacity, other.mCapacity);
    std::swap(mCount, other.mCount);
    std::swap(mDistance, other.mDistance);
    std::swap(mSlots, other.mSlots);
}

// The slot that holds the key; null when none does. The two usual cases are inline: the home slot has no
// entry with such a hash, or it holds the key itself.
template <typename Key, typename Value>
inline typename GDict<Key, Value>::Slot* GDict<Key, Value>::FindSlot(const Key& key, uint32_t hash) const
{
    if (!mSlots)
        return nullptr;
    const uint32_t home = mCapacity.GetHomeSlot(hash);
    Slot& slot = mSlots[home];
    if (!slot.MayBeHomeOf(hash))
        return nullptr;
    const bool isHere = slot.hash == hash && slot.isOccupied && slot.entry.key == key;
    return isHere ? &slot : FindFromHome(key, hash, home);
}

template <typename Key, typename Value>
typename GDict<Key, Value>::Slot* GDict<Key, Value>::FindFromHome(const Key& key, uint32_t hash,
                                                                  uint32_t home) const
{
    Slot* slot = &mSlots[home];
    uint32_t notMet = slot->homeCount;
    for (;;) {
        if (slot->hash == hash && slot->isOccupied && slot->entry.key == key)
            return slot;
        if (slot->isOccupied && mCapacity.GetHomeSlot(slot->hash) == home)
            --notMet;
        if (notMet == 0)
            return nullptr;
        if (++slot == GetEnd())
            slot = mSlots.get();
    }
}

template <typename Key, typename Value>
Value* GDict<Key, Value>::Find(const Key& key)
{
    Slot* const slot = FindSlot(key, GDictHash(key));
    return slot == nullptr ? nullptr : &slot->entry.value;
}

template <typename Key, typename Value>
const Value* GDict<Key, Value>::Find(const Key& key) const
{
    const Slot* const slot = FindSlot(key, GDictHash(key));
    return slot == nullptr ? nullptr : &slot->entry.value;
}

template <typename Key, typename Value>
Value& GDict<Key, Value>::Insert(Key key, Value value)
{
    const uint32_t hash = GDictHash(key);
    Slot* const slot = FindSlot(key, hash);
    if (slot == nullptr)
        return Add(hash, std::move(key), std::move(value));
    return slot->entry.value = std::move(value);
}

template <typename Key, typename Value>
Value& GDict<Key, Value>::FindOrInsert(const Key& key)
{
    const uint32_t hash = GDictHash(key);
    Slot* const slot = FindSlot(key, hash);
    return slot == nullptr ? Add(hash, Key(key), Value()) : slot->entry.value;
}

template <typename Key, typename Value>
bool GDict<Key, Value>::Remove(const Key& key)
{
    const uint32_t hash = GDictHash(key);
    Slot* const slot = FindSlot(key, hash);
    if (slot == nullptr)
        return false;
    mSlots[mCapacity.GetHomeSlot(hash)].RemoveFromHome();
    --mCount;
    slot->Empty();  // last: `key` may be the entry's own
    return true;
}

// Puts an entry whose key isn't there into its slot; gives the slot.
template <typename Key, typename Value>
uint32_t GDict<Key, Value>::Occupy(uint32_t hash, Key&& key, Value&& value)
{
    const uint32_t home = mCapacity.GetHomeSlot(hash);
    mSlots[home].AddToHome(hash);
    uint32_t index = home;
    while (mSlots[index].isOccupied)
        index = mCapacity.GetNextSlot(index);
    mDistance += index >= home ? index - home : index + mCapacity.Get() - home;
    mSlots[index].Fill(hash, std::move(key), std::move(value));
    ++mCount;
    return index;
}

template <typename Key, typename Value>
Value& GDict<Key, Value>::Add(uint32_t hash, Key&& key, Value&& value)
{
    // All memory is allocated before the first change.
    if (!mSlots)
        mSlots.reset(new Slot[mCapacity.Get()]);
    const bool isLastOfCapacity = (uint64_t(mCount) + 1) * 4 >= uint64_t(mCapacity.Get()) * 3;
    GDict grown = isLastOfCapacity ? MakeGrown() : GDict();
    uint32_t index = Occupy(hash, std::move(key), std::move(value));
    if (isLastOfCapacity)
        index = MoveTo(grown, index);
    return mSlots[index].entry.value;
}

// An empty table of the next capacity.
template <typename Key, typename Value>
GDict<Key, Value> GDict<Key, Value>::MakeGrown() const
{
    GDict grown;
    grown.mCapacity = GDictCapacity(GDictUtil::GetAllocation(2 * int64_t(mCapacity.Get())));
    grown.mSlots.reset(new Slot[grown.mCapacity.Get()]);
    return grown;
}

// Moves every entry to the larger table and takes its place; gives the new slot of the entry in slot
// `followed`.
template <typename Key, typename Value>
uint32_t GDict<Key, Value>::MoveTo(GDict& grown, uint32_t followed)
{
    uint32_t newIndex = cNone;
    for (uint32_t index = 0; index < mCapacity.Get(); ++index) {
        Slot& slot = mSlots[index];
        if (!slot.isOccupied)
            continue;
        const uint32_t occupied =
            grown.Occupy(slot.hash, std::move(slot.entry.key), std::move(slot.entry.value));
        if (index == followed)
            newIndex = occupied;
    }
    Swap(grown);
    return newIndex;
}
