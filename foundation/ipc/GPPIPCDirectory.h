#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

// The directory of receivers as it lies in the channel's segment: a header and room for 384 pairs. What the
// bytes mean is in docs/formats/channel.md. Only the layout: whoever shares the memory holds the directory's
// lock around each call, and each call checks the header again.
//
// The memory is taken for hostile. Where the header does not check, a call raises a GDamagedObject with
// GErrorCode::cSegmentHeader.
class GPPIPCDirectory
{
public:
    static constexpr size_t cSize = 3084;
    static constexpr uint32_t cMostPairs = 384;

    struct Pair
    {
        uint32_t process;
        uint32_t receiver;

        bool operator==(const Pair& other) const
        {
            return process == other.process && receiver == other.receiver;
        }
    };

    // Gives a segment that is still all zero an empty directory's header.
    static void Prepare(uint8_t* data);

    // Makes it an empty directory, whatever it held.
    static void MakeEmpty(uint8_t* data);

    // `data` is the segment's memory, which begins at a multiple of four.
    explicit GPPIPCDirectory(uint8_t* data) : mData(data) {}

    // Every pair once, in the order of the directory, without those that name no process or no receiver.
    std::vector<Pair> GetPairs() const;

    // False when the directory is full. A pair that is there already stands only once.
    [[nodiscard]] bool Add(const Pair& pair);

    // Removes the pair wherever it stands.
    void Remove(const Pair& pair);

private:
    uint32_t GetCheckedCount() const;

    uint8_t* mData;
};
