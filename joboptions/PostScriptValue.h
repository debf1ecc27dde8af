#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

// A value as a job options file writes it.
class PostScriptValue
{
public:
    enum class Type
    {
        Null,
        Boolean,
        Number,  // integer or real
        Name,
        String,
        Array,  // procedures too
        Dictionary
    };

    PostScriptValue() = default;
    static PostScriptValue MakeBoolean(bool value);
    static PostScriptValue MakeNumber(double value);
    static PostScriptValue MakeName(const QByteArray& name);
    static PostScriptValue MakeString(const QByteArray& bytes);
    static PostScriptValue MakeArray(std::vector<PostScriptValue> items);

    // From keys and values in turn; of a key that stands in it twice, the last value counts.
    static PostScriptValue MakeDictionary(std::vector<PostScriptValue> keysAndValues);

    Type GetType() const { return mType; }
    bool Is(Type type) const { return mType == type; }

    // What a value of another type gives is false, 0, or empty.
    bool GetBoolean() const { return mType == Type::Boolean && mNumber != 0; }
    double GetNumber() const { return mType == Type::Number ? mNumber : 0; }

    // The bytes of a name, without its slash, or of a string.
    const QByteArray& GetBytes() const { return mBytes; }

    // A string or name as text. A string that begins with the mark of UTF-16, in either byte order, or of
    // UTF-8 is in that; any other in Latin-1.
    QString GetText() const;

    // The items of an array; the keys and values of a dictionary, in turn.
    const std::vector<PostScriptValue>& GetItems() const { return mItems; }

    // The value of a dictionary's key; null where there is none.
    const PostScriptValue* Find(const char* key) const;

private:
    Type mType = Type::Null;
    double mNumber = 0;
    QByteArray mBytes;
    std::vector<PostScriptValue> mItems;
};
