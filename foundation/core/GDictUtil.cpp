#include "foundation/core/GDictUtil.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <stdexcept>

namespace
{
constexpr int cCapacities[] = {7,     13,    23,    41,    67,     89,     127,    173,     263,     307,
                               389,   467,   587,   751,   937,    1091,   1367,   1709,    2131,    2663,
                               3329,  4177,  5471,  8219,  10949,  13691,  16433,  19181,   21911,   27407,
                               32887, 38371, 43853, 87701, 175433, 350843, 701653, 1403309, 2806597, 5613217};

GString MakeEOLString()
{
    GString text;
    if (GDictUtil::NeedsCR())
        text += QLatin1Char('\r');
    if (GDictUtil::NeedsLF())
        text += QLatin1Char('\n');
    return text;
}
}  // namespace

int GDictUtil::GetAllocation(int64_t requested)
{
    const int* const listed = std::lower_bound(std::begin(cCapacities), std::end(cCapacities), requested);
    if (listed != std::end(cCapacities))
        return *listed;
    int64_t capacity = *std::rbegin(cCapacities);
    while (capacity < requested && capacity <= std::numeric_limits<int>::max())
        capacity *= 2;
    if (capacity > std::numeric_limits<int>::max())
        throw std::length_error("A dictionary can't grow that large.");
    return static_cast<int>(capacity);
}

const GString& GDictUtil::GetEOLString()
{
    static const GString text = MakeEOLString();
    return text;
}
