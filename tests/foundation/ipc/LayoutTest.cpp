#include "foundation/ipc/GMessageRing.h"
#include "foundation/ipc/GPPIPCDirectory.h"
#include "foundation/ipc/GPPIPCMessage.h"

#include "IpcFixture.h"

#include <QtEndian>

#include <chrono>
#include <cstring>
#include <thread>
#include <vector>

namespace
{
// Memory for a queue of 100 bytes, as an array of numbers so that it is aligned.
struct RingMemory
{
    static constexpr size_t cSize = GMessageRing::cHeaderSize + 100;

    uint8_t* Get() { return reinterpret_cast<uint8_t*>(words); }
    void Set32(size_t offset, uint32_t number) { qToLittleEndian(number, Get() + offset); }
    void Set64(size_t offset, uint64_t number) { qToLittleEndian(number, Get() + offset); }

    uint64_t words[(cSize + 7) / 8] = {};
};

using Put = GMessageRing::PutResult;

// Takes out everything, as an owner does.
std::vector<GBuffer> TakeAll(GMessageRing& ring, bool* isDamaged)
{
    std::vector<GBuffer> messages;
    for (const GMessageRing::Entry& entry : ring.Peek(100, isDamaged)) {
        messages.push_back(entry.message);
        ring.Forget(entry.end);
    }
    return messages;
}
}  // namespace

TEST(GMessageRing, MessagesComeOutWholeAndInOrderAcrossTheEnd)
{
    RingMemory memory;
    GMessageRing ring = GMessageRing::Make(memory.Get(), RingMemory::cSize, {7, 8});
    bool isDamaged = true;
    for (int round = 0; round < 300; ++round) {
        const GBuffer first(round % 40, 'a');
        const GBuffer second(53 - round % 40, 'b');
        ASSERT_EQ(ring.Put(first), Put::DoneAsFirst);
        ASSERT_EQ(ring.Put(second), Put::Done);
        ASSERT_EQ(ring.Put(GBuffer(36, 'c')), Put::Full);
        ASSERT_EQ(ring.Put(GBuffer(35, 'd')), Put::Done);
        const std::vector<GBuffer> messages = TakeAll(ring, &isDamaged);
        ASSERT_EQ(messages, std::vector<GBuffer>({first, second, GBuffer(35, 'd')}));
        ASSERT_FALSE(isDamaged);
    }
    EXPECT_TRUE(TakeAll(ring, &isDamaged).empty());
    EXPECT_EQ(ring.Put(GBuffer(97, 'x')), Put::TooLarge);
    EXPECT_EQ(ring.Put(GBuffer(96, 'x')), Put::DoneAsFirst);
    ring.Close();
    EXPECT_EQ(ring.Put(GBuffer()), Put::Closed);
    EXPECT_EQ(TakeAll(ring, &isDamaged).size(), 1U);
}

// The other side is written from the documentation.
TEST(GMessageRing, LayoutIsAsDocumented)
{
    RingMemory memory;
    GMessageRing ring = GMessageRing::Make(
        memory.Get(), RingMemory::cSize,
        {0x01020304, 0x1122334455667788, 0x0102030405060708, 0x1112131415161718, GBuffer("A\0B\0", 4)});
    ring.Put("abc");
    const QByteArray bytes(reinterpret_cast<const char*>(memory.Get()), 72);
    EXPECT_EQ(QByteArray(reinterpret_cast<const char*>(memory.Get()) + 160, 4), QByteArray("A\0B\0", 4));
    EXPECT_EQ(bytes.toHex(),
              "4d56505103000000040302010000000088776655443322116000000004000000000000000000000007000000000000"
              "00080706050403020118171615141312110300000061626300");
}

TEST(GMessageRing, MessageIsWithdrawnUntilItIsTakenUpAndThenNeverComesOut)
{
    using Withdrawal = GMessageRing::Withdrawal;
    RingMemory memory;
    bool isDamaged = false;
    GMessageRing ring = GMessageRing::Make(memory.Get(), RingMemory::cSize, {7, 8});
    for (int round = 0; round < 100; ++round) {  // over the end of the ring, too
        std::vector<uint64_t> ends;
        for (const char* message : {"first", "second", "third", "fourth"}) {
            ring.Put(message);
            ends.push_back(ring.GetEnd());
        }
        ASSERT_EQ(ring.Withdraw("first", ends[0]), Withdrawal::Done);
        ASSERT_EQ(ring.Withdraw("third", ends[2]), Withdrawal::Done);
        const std::vector<GMessageRing::Entry> seen = ring.Peek(1, &isDamaged);
        ASSERT_EQ(ring.Withdraw("second", ends[1]), Withdrawal::TakenUp);
        ring.GiveBack(seen);
        ASSERT_EQ(ring.Withdraw("second", ends[1]), Withdrawal::Done);
        ASSERT_EQ(TakeAll(ring, &isDamaged), std::vector<GBuffer>({"fourth"}));
        ASSERT_FALSE(isDamaged);
        ASSERT_EQ(ring.Withdraw("fourth", ends[3]), Withdrawal::TakenOut);
        ASSERT_EQ(ring.Put(GBuffer(96, 'x')), Put::DoneAsFirst);
        const uint64_t last = ring.GetEnd();
        ASSERT_EQ(ring.Withdraw(GBuffer(96, 'x'), last), Withdrawal::Done);
        ASSERT_TRUE(TakeAll(ring, &isDamaged).empty());
        ASSERT_TRUE(ring.IsEmpty());
        ASSERT_EQ(ring.Withdraw(GBuffer(96, 'x'), last), Withdrawal::TakenOut);
    }
}

// An owner that ends does not wait for ever for a sender that was stopped in the middle.
TEST(GMessageRing, QueueThatIsClosedInTheMiddleOfAPostIsNoSuccess)
{
    const GBuffer message(32 << 20, 'x');
    std::vector<uint64_t> words((static_cast<size_t>(message.size()) + 1000) / 8);
    uint8_t* const data = reinterpret_cast<uint8_t*>(words.data());
    Put result = Put::DoneAsFirst;
    // The close may come too late now and then.
    for (int attempt = 0; attempt < 1000 && result != Put::Unsure; ++attempt) {
        GMessageRing ring = GMessageRing::Make(data, words.size() * 8, {7, 8});
        // Where the copying begins is the C library's affair.
        volatile uint8_t* const ends[] = {data + GMessageRing::cHeaderSize + GMessageRing::cEntryHeaderSize,
                                          data + GMessageRing::cHeaderSize + message.size()};
        *ends[0] = *ends[1] = 0;
        std::thread sender([&] { result = ring.Put(message); });
        // Asleep in between, so that it is this thread's turn when the copying has begun.
        while (*ends[0] == 0 && *ends[1] == 0)
            std::this_thread::sleep_for(std::chrono::microseconds(50));
        ring.Close();
        sender.join();
    }
    EXPECT_EQ(result, Put::Unsure);
}

TEST(GMessageRing, DamagedHeaderIsRefused)
{
    const std::pair<size_t, uint32_t> cases[] = {{0, 0},  {4, 2},    {24, 101},       {24, 63},
                                                 {28, 1}, {28, ~0U}, {24, 0xFFFFFFFF}};
    for (const auto& [offset, number] : cases) {
        RingMemory memory;
        GMessageRing::Make(memory.Get(), RingMemory::cSize, {7, 8});
        memory.Set32(offset, number);
        EXPECT_EQ(GetErrorCode([&] { GMessageRing::Open(memory.Get(), RingMemory::cSize); }),
                  GErrorCode::cSegmentHeader)
            << offset;
    }
    RingMemory memory;
    EXPECT_EQ(GetErrorCode([&] { GMessageRing::Open(memory.Get(), 63); }), GErrorCode::cSegmentHeader);
}

TEST(GMessageRing, FalsePositionOrLengthCostsTheQueueItsContentOnly)
{
    const struct
    {
        uint64_t readPosition, writePosition;
        uint32_t length;
        size_t taken;
    } cases[] = {{0, 14, 3, 2},  {0, 14, 11, 0}, {0, 14, 0xFFFFFFFF, 0},
                 {0, 101, 3, 0}, {20, 14, 3, 0}, {11, 14, 3, 0}};
    for (const auto& entry : cases) {
        RingMemory memory;
        GMessageRing ring = GMessageRing::Make(memory.Get(), RingMemory::cSize, {7, 8});
        ring.Put("abc");
        ring.Put("def");
        memory.Set64(32, entry.readPosition);
        memory.Set64(40, entry.writePosition);
        memory.Set32(64, entry.length);
        bool isDamaged = false;
        EXPECT_EQ(TakeAll(ring, &isDamaged).size(), entry.taken);
        EXPECT_EQ(isDamaged, entry.taken == 0);
        EXPECT_EQ(ring.Put("new"), Put::DoneAsFirst);
        EXPECT_EQ(TakeAll(ring, &isDamaged), std::vector<GBuffer>({"new"}));
    }
}

TEST(GPPIPCDirectory, HoldsPairsAndRefusesDamage)
{
    uint32_t words[GPPIPCDirectory::cSize / 4] = {};
    uint8_t* const data = reinterpret_cast<uint8_t*>(words);
    GPPIPCDirectory directory(data);
    EXPECT_EQ(GetErrorCode([&] { directory.GetPairs(); }), GErrorCode::cSegmentHeader);
    GPPIPCDirectory::Prepare(data);
    for (uint32_t number = 1; number <= GPPIPCDirectory::cMostPairs; ++number)
        EXPECT_TRUE(directory.Add({number, 1}));
    EXPECT_FALSE(directory.Add({1, 2}));
    EXPECT_TRUE(directory.Add({5, 1}));
    directory.Remove({5, 1});
    directory.Remove({5, 1});
    EXPECT_EQ(directory.GetPairs().size(), 383U);
    EXPECT_TRUE(directory.Add({1, 2}));
    EXPECT_EQ(qFromLittleEndian<uint32_t>(data), 0x4450564DU);
    EXPECT_EQ(qFromLittleEndian<uint32_t>(data + 8), 384U);
    EXPECT_EQ(qFromLittleEndian<uint32_t>(data + 12), 1U);

    // A pair that stands twice is one; a pair of nothing is none.
    words[3] = words[5] = 9;
    words[4] = words[6] = 3;
    words[7] = 0;
    EXPECT_EQ(directory.GetPairs().size(), 382U);
    directory.Remove({9, 3});
    EXPECT_EQ(directory.GetPairs().size(), 381U);

    for (const size_t word : {size_t(0), size_t(1), size_t(2)}) {
        const uint32_t kept = words[word];
        words[word] = 385;
        EXPECT_EQ(GetErrorCode([&] {
                      static_cast<void>(directory.Add({1, 1}));
                  }),
                  GErrorCode::cSegmentHeader)
            << word;
        words[word] = kept;
    }
}

TEST(GPPIPCMessage, LayoutIsAsDocumentedAndOtherLengthsAreRefused)
{
    GPPIPCMessage message;
    message.session = 1;
    message.process = 0x01020304;
    message.receiver = 2;
    message.kind = -2;
    message.flag = GPPIPCMessage::cThroughGlobalChannel;
    message.payload = "ab";
    const GBuffer bytes = message.Encode();
    EXPECT_EQ(bytes.toHex(), "010000000403020102000000feffffff01000000020000006162");
    GPPIPCMessage read;
    EXPECT_TRUE(GPPIPCMessage::Decode(bytes, &read));
    EXPECT_EQ(read.Encode(), bytes);
    for (const GBuffer& damaged : {GBuffer(), bytes.left(23), bytes.left(25), bytes + "c"})
        EXPECT_FALSE(GPPIPCMessage::Decode(damaged, &read));
}
