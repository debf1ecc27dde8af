#include "joboptions/PostScriptValue.h"

#include <QtEndian>

PostScriptValue PostScriptValue::MakeBoolean(bool value)
{
    PostScriptValue made;
    made.mType = Type::Boolean;
    made.mNumber = value ? 1 : 0;
    return made;
}

PostScriptValue PostScriptValue::MakeNumber(double value)
{
    PostScriptValue made;
    made.mType = Type::Number;
    made.mNumber = value;
    return made;
}

PostScriptValue PostScriptValue::MakeName(const QByteArray& name)
{
    PostScriptValue made;
    made.mType = Type::Name;
    made.mBytes = name;
    return made;
}

PostScriptValue PostScriptValue::MakeString(const QByteArray& bytes)
{
    PostScriptValue made;
    made.mType = Type::String;
    made.mBytes = bytes;
    return made;
}

PostScriptValue PostScriptValue::MakeArray(std::vector<PostScriptValue> items)
{
    PostScriptValue made;
    made.mType = Type::Array;
    made.mItems = std::move(items);
    return made;
}

PostScriptValue PostScriptValue::MakeDictionary(std::vector<PostScriptValue> keysAndValues)
{
    PostScriptValue made = MakeArray(std::move(keysAndValues));
    made.mType = Type::Dictionary;
    return made;
}

static QString ReadUtf16(const QByteArray& bytes, bool isBigEndian)
{
    QString text;
    for (int i = 0; i + 1 < bytes.size(); i += 2) {
        const auto* unit = reinterpret_cast<const uchar*>(bytes.constData() + i);
        text += QChar(isBigEndian ? qFromBigEndian<quint16>(unit) : qFromLittleEndian<quint16>(unit));
    }
    return text;
}

QString PostScriptValue::GetText() const
{
    if (mBytes.startsWith("\xFE\xFF"))
        return ReadUtf16(mBytes.mid(2), true);
    if (mBytes.startsWith("\xFF\xFE"))
        return ReadUtf16(mBytes.mid(2), false);
    if (mBytes.startsWith("\xEF\xBB\xBF"))
        return QString::fromUtf8(mBytes.mid(3));
    return QString::fromLatin1(mBytes);
}

const PostScriptValue* PostScriptValue::Find(const char* key) const
{
    if (mType != Type::Dictionary)
        return nullptr;
    for (size_t i = mItems.size(); i >= 2; i -= 2) {
        if (mItems[i - 2].mBytes == key)
            return &mItems[i - 1];
    }
    return nullptr;
}
