#include "foundation/prefs/DictValue.h"

#include "foundation/core/EscapeCodes.h"

static GString TakeEscapesBack(const QStringRef& quoted)
{
    GString text;
    text.reserve(quoted.size());
    for (int position = 0; position < quoted.size(); ++position) {
        const bool isEscape = quoted.at(position) == QLatin1Char('\\') && position + 1 < quoted.size();
        const QLatin1String meaning =
            isEscape ? EscapeCodes::GetMeaning(quoted.at(position + 1).unicode()) : QLatin1String();
        if (meaning.isEmpty()) {
            text.append(quoted.at(position));
        } else {
            text.append(meaning);
            ++position;
        }
    }
    return text;
}

GString DictValue::GetText() const
{
    return mHasEscapes ? TakeEscapesBack(mQuoted) : mQuoted.toString();
}

QStringRef DictValue::GetText(GString& memory) const
{
    if (!mHasEscapes)
        return mQuoted;
    memory = TakeEscapesBack(mQuoted);
    return QStringRef(&memory);
}
