#include "foundation/cli/NearestWord.h"

#include <algorithm>
#include <vector>

namespace
{
constexpr int cLongest = 64;  // nobody mistypes a word of more letters

int GetDistance(const QString& from, const QString& to)
{
    const int width = to.size() + 1;
    std::vector<int> cost(static_cast<size_t>((from.size() + 1) * width));
    const auto at = [&](int i, int j) -> int& { return cost[static_cast<size_t>(i * width + j)]; };
    for (int i = 0; i <= from.size(); ++i) {
        for (int j = 0; j <= to.size(); ++j) {
            if (i == 0 || j == 0) {
                at(i, j) = i + j;
                continue;
            }
            at(i, j) = std::min(
                {at(i - 1, j) + 1, at(i, j - 1) + 1, at(i - 1, j - 1) + (from[i - 1] == to[j - 1] ? 0 : 1)});
            const bool isSwapped = i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1];
            if (isSwapped)
                at(i, j) = std::min(at(i, j), at(i - 2, j - 2) + 1);
        }
    }
    return at(from.size(), to.size());
}
}  // namespace

QString FindNearestWord(const QString& word, const QStringList& words)
{
    if (word.size() > cLongest)
        return {};
    QString nearest;
    // A third of the letters may be wrong, and one may be in any word of two.
    int least = std::max(1, word.size() / 3) + 1;
    for (const QString& candidate : words) {
        const int distance =
            candidate.size() > cLongest ? least : GetDistance(word.toLower(), candidate.toLower());
        if (distance < least) {
            least = distance;
            nearest = candidate;
        }
    }
    return nearest;
}

QString AskForNearestWord(const QString& word, const QStringList& words)
{
    const QString nearest = FindNearestWord(word, words);
    return nearest.isEmpty() ? QString() : QStringLiteral(" Did you mean \"%1\"?").arg(nearest);
}
