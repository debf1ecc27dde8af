#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

// The directory of receivers in the channel's segment: a header and room for 384 pairs. What the bytes mean
// is in docs/formats/channel.md. This class is only the layout: everybody who shares the memory must hold the
// directory's lock around each call, and each call checks the header again.
//
// The content of the memory can't be trusted. If the header is not valid, a call raises a GDamagedObject with
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

    // Writes the header of an empty directory into a segment that is still all zero.
    static void Prepare(uint8_t* data);

    // Makes the segment an empty directory, whatever it held before.
    static void MakeEmpty(uint8_t* data);

    // `data` is the segment's memory, which begins at a multiple of four.
    explicit GPPIPCDirectory(uint8_t* data) : mData(data) {}

    // Every pair once, in the order of the directory; pairs without a process or without a receiver are left
    // out.
    std::vector<Pair> GetPairs() const;

    // False when the directory is full. A pair that is there already is not added again.
    [[nodiscard]] bool Add(const Pair& pair);

    // Removes the pair everywhere in the directory.
    void Remove(const Pair& pair);

private:
    uint32_t GetCheckedCount() const;

    uint8_t* mData;
};
