#include "foundation/core/GDict.h"

#include <gtest/gtest.h>

#include <QHash>

#include <map>
#include <random>
#include <vector>

namespace
{
// A key whose hash the test chooses.
struct ChosenKey
{
    int id;
    uint32_t hash;
};

bool operator==(const ChosenKey& left, const ChosenKey& right)
{
    return left.id == right.id;
}

uint32_t GDictHash(const ChosenKey& key)
{
    return key.hash;
}

std::vector<int> GetOrder(const GDict<ChosenKey, int>& dict)
{
    std::vector<int> ids;
    for (const auto& entry : dict)
        ids.push_back(entry.key.id);
    return ids;
}

GBuffer MakeKey(int number)
{
    return "Key_" + GBuffer::number(number);
}
}  // namespace

// The values were computed from the definition in the header by another program: a change of one of them
// changes the order of entries in every settings file.
TEST(GDictHash, IsTheDocumentedOneForEveryLength)
{
    // units: of the text as UTF-16
    const std::tuple<GBuffer, uint32_t, uint32_t> cases[] = {
        {"", 0xB0B1032B, 0xB0B1032B},
        {"a", 0x1EBBE1F7, 0xCC69924F},
        {"ab", 0xF95A0FA9, 0xD88762AC},
        {"abc", 0xA3B3887A, 0x28B0F898},
        {"abcd", 0x82B20102, 0xD6F71B3F},
        {"Language1", 0x2619AF0B, 0x0783921F},
        {"The quick brown fox jumps over the dog", 0xE88FBA1A, 0x2E66FB1F},
        {"Gr\u00F6\u00DFe", 0x536CC7B5, 0x08A280E2},
    };
    for (const auto& [text, bytes, units] : cases) {
        EXPECT_EQ(GDictHash(text), bytes) << text.constData();
        EXPECT_EQ(GDictHash(GString::fromUtf8(text)), units) << text.constData();
    }
    EXPECT_EQ(GDictHash(30060000u), 30060000u);
}

TEST(GDictUtil, AllocationsAreTheListedPrimesThenDoubled)
{
    const std::map<int64_t, int> capacities = {
        {0, 7}, {8, 13}, {46, 67}, {43854, 87701}, {5613217, 5613217}, {5613218, 11226434}};
    for (const auto& each : capacities)
        EXPECT_EQ(GDictUtil::GetAllocation(each.first), each.second) << each.first;
    EXPECT_THROW(GDictUtil::GetAllocation(int64_t(1) << 62), std::length_error);
}

TEST(GDict, GrowsAsSoonAsThreeQuartersAreReached)
{
    const std::map<int, int> capacitiesByCount = {{0, 7},   {5, 7},    {6, 23},    {17, 23},  {18, 67},
                                                  {50, 67}, {51, 173}, {129, 173}, {130, 389}};
    GDict<uint32_t, int> dict;
    for (const auto& each : capacitiesByCount) {
        while (dict.GetCount() < each.first)
            dict.Insert(static_cast<uint32_t>(dict.GetCount()), 0);
        EXPECT_EQ(dict.GetCapacity(), each.second) << each.first;
    }
    dict.Clear();
    EXPECT_EQ(dict.GetCapacity(), 7);
}

// The order of entries is the order in the file, so each way to come by a table must give the same one.
TEST(GDict, IteratesInSlotOrder)
{
    // hashes: of the keys 0, 1, 2, … in the order in which they are put in
    const std::tuple<const char*, std::vector<uint32_t>, std::vector<int>> cases[] = {
        {"by home slot", {5, 0, 3}, {1, 2, 0}},
        {"the second of one home goes behind the first", {3, 3, 4}, {0, 1, 2}},
        {"from the last slot on at the front", {6, 6, 0}, {1, 2, 0}},
        {"grown after the sixth was put in: the old order decides among equals",
         {6, 6, 0, 29, 1, 52},
         {2, 4, 1, 3, 5, 0}},
    };
    for (const auto& [what, hashes, order] : cases) {
        GDict<ChosenKey, int> dict;
        for (const uint32_t hash : hashes)
            dict.Insert({dict.GetCount(), hash}, 0);
        for (int id = dict.GetCount() - 1; id >= 0; --id)  // replaced in place
            dict.Insert({id, hashes[static_cast<size_t>(id)]}, 1);
        EXPECT_EQ(GetOrder(dict), order) << what;
        EXPECT_EQ(GetOrder(GDict<ChosenKey, int>(dict)), order) << what << ", copied";
    }
}

TEST(GDict, CopiesAreIndependentAndMovedFromIsEmpty)
{
    GDict<GBuffer, GDict<GBuffer, GString>> groups;
    for (int number = 0; number < 100; ++number)
        groups.FindOrInsert(MakeKey(number)).Insert("Name", GString::number(number));
    GDict<GBuffer, GDict<GBuffer, GString>> copy = groups;
    for (const auto& group : groups)
        group.value.Insert("Name", GString());
    groups.Remove(MakeKey(7));
    GDict<GBuffer, GDict<GBuffer, GString>> moved = std::move(copy);
    EXPECT_EQ(copy.GetCount(), 0);
    EXPECT_EQ(copy.GetCapacity(), 7);
    EXPECT_EQ(moved.GetCount(), 100);
    EXPECT_EQ(*moved.Find(MakeKey(7))->Find("Name"), QStringLiteral("7"));
}

TEST(GDict, FindsTheOtherHalfOfAMillion)
{
    constexpr int cCount = 1000000;
    GDict<GBuffer, int> dict;
    for (int number = 0; number < cCount; ++number)
        dict.Insert(MakeKey(number), number);
    for (int number = 0; number < cCount; number += 2)
        ASSERT_TRUE(dict.Remove(MakeKey(number)));
    for (int number = 0; number < cCount; ++number) {
        const int* value = dict.Find(MakeKey(number));
        ASSERT_EQ(value != nullptr ? *value : -1, number % 2 == 1 ? number : -1);
    }
    EXPECT_EQ(std::distance(dict.begin(), dict.end()), cCount / 2);
}

// All keys at home in one slot is the worst that a file can do.
TEST(GDict, KeysOfOneHomeSlotStayRight)
{
    constexpr int cCount = 3000;
    GDict<ChosenKey, int> dict, homesSideBySide;
    GDict<uint32_t, int> usual;
    for (int id = 0; id < cCount; ++id) {
        dict.Insert({id, 0xFFFFFFFF}, id);
        homesSideBySide.Insert({id, static_cast<uint32_t>(id / 4)}, id);
        usual.Insert(static_cast<uint32_t>(id), id);
        ASSERT_FALSE(usual.IsCrowded()) << id;
    }
    EXPECT_TRUE(dict.IsCrowded() && homesSideBySide.IsCrowded());
    for (int id = 0; id < cCount; id += 2)
        ASSERT_TRUE(dict.Remove({id, 0xFFFFFFFF}));
    for (int id = 0; id < cCount; ++id)
        ASSERT_EQ(dict.Has({id, 0xFFFFFFFF}), id % 2 == 1) << id;
    EXPECT_FALSE(dict.Has({cCount, 0xFFFFFFFF}));
}

// The hash is part of what written files look like, so each way of multiplying gives the same numbers.
TEST(GDictHash, EveryWayOfMultiplyingGivesTheSameProduct)
{
    const auto expectSame = [](uint64_t first, uint64_t second) {
        const GWideProduct product = GMultiplyWide(first, second);
        const GWideProduct portable = GMultiplyByHalves(first, second);
        EXPECT_EQ(product.mHigh, portable.mHigh) << first << " * " << second;
        EXPECT_EQ(product.mLow, portable.mLow) << first << " * " << second;
    };
    expectSame(~0ull, ~0ull);
    expectSame(0xFFFFFFFF, 0x100000001);
    std::mt19937_64 random(1);
    for (int i = 0; i < 1000; ++i)
        expectSame(random(), random());
    EXPECT_EQ(GMultiplyWide(~0ull, ~0ull).mHigh, ~0ull - 1);
}

TEST(GDict, AgreesWithAModelThroughRandomChanges)
{
    std::mt19937 random(1);
    GDict<uint32_t, int> dict;
    QHash<uint32_t, int> model;
    for (int step = 0; step < 50000; ++step) {
        const uint32_t key = random() % 700 * 87701;  // few keys, so that each comes and goes often
        if (random() % 2 == 0)
            ASSERT_EQ(dict.Remove(key), model.remove(key) == 1);
        else if (random() % 2 == 0)
            ASSERT_EQ(dict.FindOrInsert(key), model[key]);
        else
            ASSERT_EQ(dict.Insert(key, step), model[key] = step);
        ASSERT_EQ(dict.GetCount(), model.size());
        const uint32_t other = random() % 700 * 87701;
        const int* found = dict.Find(other);
        ASSERT_EQ(found != nullptr ? *found : -1, model.value(other, -1));
    }
}
