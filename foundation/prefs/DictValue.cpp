#include "foundation/prefs/DictValue.h"

#include "foundation/core/EscapeCodes.h"

static GString TakeEscapesBack(const QStringRef& quoted)
{
    return EscapeCodes::TakeAllBack<EscapeCodes::InQuotes, GString>(quoted);
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
