#include "foundation/strings/GLngString.h"

#include "foundation/strings/GStringPool.h"

static int GetDigit(const GString& text, int at)
{
    const ushort unit = at < text.size() ? text.at(at).unicode() : ushort{0};
    return unit >= '0' && unit <= '9' ? unit - '0' : -1;
}

GString GLngString::GetReadableString() const
{
    const GString& text = GStringPool::GetString(mCode);
    const int count = static_cast<int>(mParameters.size());
    GString readable;
    for (int at = 0; at < text.size(); ++at) {
        const int first = text.at(at) == QLatin1Char('%') ? GetDigit(text, at + 1) : -1;
        const int second = first > 0 ? GetDigit(text, at + 2) : -1;
        // Two digits where there are that many parameters, so that "%12" with one parameter is it and a 2.
        const bool isLong = second >= 0 && first * 10 + second <= count;
        const int number = isLong ? first * 10 + second : first;
        if (number < 1 || number > count) {
            readable += text.at(at);
            continue;
        }
        readable += GetParameter(static_cast<size_t>(number - 1));
        at += isLong ? 2 : 1;
    }
    return readable;
}

GString GLngString::GetParameter(size_t index) const
{
    const auto& parameter = mParameters[index];
    if (const GString* text = std::get_if<GString>(&parameter))
        return *text;
    return GStringPool::GetString(std::get<uint32_t>(parameter));
}
