#pragma once

#include "joboptions/PostScriptValue.h"

// Reads the values of a PostScript text that contains only data, like a job options file: numbers (also with
// a radix, as 16#FF), names, strings between parentheses with escapes, in hexadecimal or base 85, arrays,
// procedures, dictionaries, true, false and null, with comments between them. It executes nothing.
//
// The time is linear in the text's length. The depth of nested values is limited.
class PostScriptReader
{
public:
    explicit PostScriptReader(const QByteArray& text) : mText(text) {}

    enum class Token
    {
        Value,     // in GetValue
        Operator,  // a name to be executed, in GetOperator
        End,
        Error  // in GetError
    };

    // Goes to the next value or operator of the top level.
    Token Next();

    const PostScriptValue& GetValue() const { return mValue; }
    const QByteArray& GetOperator() const { return mOperator; }

    // What is wrong and where, as in "line 3, column 7: a string without end".
    const QString& GetError() const { return mError; }

    // Marks what was read last as wrong.
    void Fail(const QString& what);

private:
    enum class Mark
    {
        None,
        ArrayEnd,
        ProcedureEnd,
        DictionaryEnd
    };

    [[nodiscard]] bool SkipToToken();
    [[nodiscard]] bool ReadToken(int depth, PostScriptValue& value, QByteArray& word, Mark& mark);
    [[nodiscard]] bool ReadItems(int depth, Mark end, std::vector<PostScriptValue>& items);
    [[nodiscard]] bool ReadDictionary(int depth, PostScriptValue& value);
    [[nodiscard]] bool ReadString(PostScriptValue& value);
    void ReadEscape(QByteArray& bytes);
    [[nodiscard]] bool ReadHexadecimal(PostScriptValue& value);
    [[nodiscard]] bool ReadBase85(PostScriptValue& value);
    QByteArray ReadWord();
    char Peek(int ahead = 0) const;
    [[nodiscard]] bool FailAt(int position, const QString& what);

    const QByteArray mText;
    int mPosition = 0;
    int mTokenStart = 0;
    PostScriptValue mValue;
    QByteArray mOperator;
    QString mError;
};
