#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

// A value of a job options file.
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

    // From keys and values in turn; if a key appears twice, the last value counts.
    static PostScriptValue MakeDictionary(std::vector<PostScriptValue> keysAndValues);

    Type GetType() const { return mType; }
    bool Is(Type type) const { return mType == type; }

    // For a value of another type these give false, 0, or empty.
    bool GetBoolean() const { return mType == Type::Boolean && mNumber != 0; }
    double GetNumber() const { return mType == Type::Number ? mNumber : 0; }

    // The bytes of a name, without its slash, or of a string.
    const QByteArray& GetBytes() const { return mBytes; }

    // A string or name as text. A string that begins with the mark of UTF-16 (either byte order) or UTF-8 is
    // in that encoding; any other string is in Latin-1.
    QString GetText() const;

    // The items of an array; the keys and values of a dictionary, in turn.
    const std::vector<PostScriptValue>& GetItems() const { return mItems; }

    // The value of a dictionary's key; null if there is none.
    const PostScriptValue* Find(const char* key) const;

private:
    Type mType = Type::Null;
    double mNumber = 0;
    QByteArray mBytes;
    std::vector<PostScriptValue> mItems;
};
