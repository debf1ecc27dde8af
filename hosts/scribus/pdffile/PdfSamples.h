#pragma once

#include <string>

// The samples of an image as a PDF has them: its rows from the top, each on byte bounds.
struct PdfSamples
{
    int width = 0;
    int height = 0;
    int parts = 1;  // of a dot: 1, 3 or 4
    int bits = 8;   // of a part: 1 or 8; with 1, there is one part
    std::string bytes;

    size_t GetRowLength() const { return (size_t(width) * size_t(parts) * size_t(bits) + 7) / 8; }
    size_t GetLength() const { return GetRowLength() * size_t(height); }
    int Get(int x, int y, int part) const;

    // The same image with fewer dots. Each is the mean of those that it covers; or, without `averages`, the
    // one in their middle. Neither side grows, nor falls below 1.
    PdfSamples Shrink(int newWidth, int newHeight, bool averages) const;

    // Whether colours are only grays: three equal parts, or black ink alone.
    bool AreGrays() const;

    // The same grays in one part, as light.
    PdfSamples MakeGray() const;
};
