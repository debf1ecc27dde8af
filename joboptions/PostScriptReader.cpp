#include "joboptions/PostScriptReader.h"

#include <cmath>
#include <cstring>

constexpr int cDeepest = 64;

static bool IsBlank(char character)
{
    return character == ' ' || character == '\t' || character == '\n' || character == '\r' ||
           character == '\f' || character == '\0';
}

static bool IsDelimiter(char character)
{
    return character != '\0' && std::strchr("()<>[]{}/%", character) != nullptr;
}

// A digit of a base up to 36; -1 for anything else.
static int GetDigit(char character)
{
    if (character >= '0' && character <= '9')
        return character - '0';
    if (character >= 'a' && character <= 'z')
        return character - 'a' + 10;
    return character >= 'A' && character <= 'Z' ? character - 'A' + 10 : -1;
}

// A number with its base before it, as 16#FF.
static bool ReadRadixNumber(const QByteArray& word, int sharp, double& number)
{
    bool isBase = false;
    const int base = word.left(sharp).toInt(&isBase);
    if (!isBase || base < 2 || base > 36 || word[0] == '-' || word[0] == '+' || sharp + 1 == word.size())
        return false;
    number = 0;
    for (const char character : word.mid(sharp + 1)) {
        const int digit = GetDigit(character);
        if (digit < 0 || digit >= base)
            return false;
        number = number * base + digit;
    }
    return std::isfinite(number);
}

static bool ReadNumber(const QByteArray& word, double& number)
{
    const int sharp = word.indexOf('#');
    if (sharp > 0)
        return ReadRadixNumber(word, sharp, number);
    for (const char character : word) {
        if (std::strchr("+-.0123456789eE", character) == nullptr)
            return false;  // a text such as "nan" is a number elsewhere
    }
    bool isNumber = false;
    number = word.toDouble(&isNumber);
    return isNumber && std::isfinite(number);
}

char PostScriptReader::Peek(int ahead) const
{
    return mPosition + ahead < mText.size() ? mText[mPosition + ahead] : '\0';
}

bool PostScriptReader::FailAt(int position, const QString& what)
{
    if (!mError.isEmpty())
        return false;
    const QByteArray before = mText.left(position).replace("\r\n", "\n").replace('\r', '\n');
    mError = QStringLiteral("line %1, column %2: %3")
                 .arg(before.count('\n') + 1)
                 .arg(before.size() - before.lastIndexOf('\n'))
                 .arg(what);
    return false;
}

void PostScriptReader::Fail(const QString& what)
{
    static_cast<void>(FailAt(mTokenStart, what));  // nothing is read after it
}

bool PostScriptReader::SkipToToken()
{
    for (; mPosition < mText.size(); ++mPosition) {
        if (Peek() == '%') {
            while (mPosition < mText.size() && Peek() != '\n' && Peek() != '\r')
                ++mPosition;
        } else if (!IsBlank(Peek())) {
            return true;
        }
    }
    mPosition = mText.size();
    return false;
}

QByteArray PostScriptReader::ReadWord()
{
    const int start = mPosition;
    while (mPosition < mText.size() && !IsBlank(Peek()) && !IsDelimiter(Peek()))
        ++mPosition;
    return mText.mid(start, mPosition - start);
}

PostScriptReader::Token PostScriptReader::Next()
{
    if (mPosition == 0 && mText.startsWith("\xEF\xBB\xBF"))
        mPosition = 3;
    if (!mError.isEmpty())
        return Token::Error;
    if (!SkipToToken())
        return Token::End;
    const int start = mPosition;
    Mark mark = Mark::None;
    if (!ReadToken(0, mValue, mOperator, mark))
        return Token::Error;
    mTokenStart = start;
    if (mark != Mark::None) {
        Fail(QStringLiteral("an end without its beginning"));
        return Token::Error;
    }
    return mOperator.isEmpty() ? Token::Value : Token::Operator;
}

// Reads one value, or a name to be executed into `word`, or the end of what encloses it into `mark`.
bool PostScriptReader::ReadToken(int depth, PostScriptValue& value, QByteArray& word, Mark& mark)
{
    const int start = mPosition;
    word.clear();
    mark = Mark::None;
    std::vector<PostScriptValue> items;
    switch (Peek()) {
        case '/':
            ++mPosition;
            if (Peek() == '/')  // looked up when it is read; for data, a name like any other
                ++mPosition;
            value = PostScriptValue::MakeName(ReadWord());
            return true;
        case '(':
            return ReadString(value);
        case '<':
            if (Peek(1) == '<')
                return ReadDictionary(depth, value);
            return Peek(1) == '~' ? ReadBase85(value) : ReadHexadecimal(value);
        case '[':
        case '{':
            ++mPosition;
            if (!ReadItems(depth, mText[start] == '[' ? Mark::ArrayEnd : Mark::ProcedureEnd, items))
                return false;
            value = PostScriptValue::MakeArray(std::move(items));
            return true;
        case ']':
        case '}':
            ++mPosition;
            mark = mText[start] == ']' ? Mark::ArrayEnd : Mark::ProcedureEnd;
            return true;
        case '>':
            mPosition += 2;
            mark = Mark::DictionaryEnd;
            return mText.mid(start, 2) == ">>" || FailAt(start, QStringLiteral("a lone \">\""));
        case ')':
            return FailAt(start, QStringLiteral("a lone \")\""));
        default:
            break;
    }
    word = ReadWord();
    double number = 0;
    if (word == "true" || word == "false")
        value = PostScriptValue::MakeBoolean(word == "true");
    else if (word == "null")
        value = PostScriptValue();
    else if (ReadNumber(word, number))
        value = PostScriptValue::MakeNumber(number);
    else
        return true;
    word.clear();
    return true;
}

bool PostScriptReader::ReadItems(int depth, Mark end, std::vector<PostScriptValue>& items)
{
    const int start = mPosition - 1;  // the last of the beginning
    if (depth == cDeepest)
        return FailAt(start, QStringLiteral("values nested too deeply"));
    while (SkipToToken()) {
        const int itemStart = mPosition;
        PostScriptValue item;
        QByteArray word;
        Mark mark = Mark::None;
        if (!ReadToken(depth + 1, item, word, mark))
            return false;
        if (mark == end)
            return true;
        if (mark != Mark::None)
            return FailAt(itemStart, QStringLiteral("an end of another kind than the beginning"));
        if (!word.isEmpty() && end != Mark::ProcedureEnd)
            return FailAt(itemStart, QStringLiteral("\"%1\" is no value").arg(QString::fromLatin1(word)));
        items.push_back(word.isEmpty() ? std::move(item) : PostScriptValue::MakeName(word));
    }
    return FailAt(start, QStringLiteral("an array or dictionary without end"));
}

bool PostScriptReader::ReadDictionary(int depth, PostScriptValue& value)
{
    const int start = mPosition;
    mPosition += 2;
    std::vector<PostScriptValue> items;
    if (!ReadItems(depth, Mark::DictionaryEnd, items))
        return false;
    if (items.size() % 2 != 0)
        return FailAt(start, QStringLiteral("a dictionary with a key that has no value"));
    for (size_t i = 0; i < items.size(); i += 2) {
        if (!items[i].Is(PostScriptValue::Type::Name))
            return FailAt(start, QStringLiteral("a dictionary with a key that is no name"));
    }
    value = PostScriptValue::MakeDictionary(std::move(items));
    return true;
}

bool PostScriptReader::ReadString(PostScriptValue& value)
{
    const int start = mPosition++;
    QByteArray bytes;
    for (int open = 1; mPosition < mText.size();) {
        const char character = mText[mPosition++];
        open += character == '(' ? 1 : (character == ')' ? -1 : 0);
        if (open == 0) {
            value = PostScriptValue::MakeString(bytes);
            return true;
        }
        if (character == '\\') {
            ReadEscape(bytes);
        } else if (character == '\r') {  // each end of line is one line feed
            bytes += '\n';
            mPosition += Peek() == '\n' ? 1 : 0;
        } else {
            bytes += character;
        }
    }
    return FailAt(start, QStringLiteral("a string without end"));
}

// Behind the backslash.
void PostScriptReader::ReadEscape(QByteArray& bytes)
{
    static const char cLetters[] = "nrtbf";
    static const char cMeanings[] = "\n\r\t\b\f";
    if (mPosition >= mText.size())
        return;
    const char character = mText[mPosition++];
    if (character >= '0' && character <= '7') {
        int code = character - '0';
        for (int digits = 1; digits < 3 && Peek() >= '0' && Peek() <= '7'; ++digits)
            code = code * 8 + (mText[mPosition++] - '0');
        bytes += static_cast<char>(code & 0xFF);
    } else if (character == '\r' || character == '\n') {  // the line goes on
        mPosition += character == '\r' && Peek() == '\n' ? 1 : 0;
    } else {
        const char* letter = character == '\0' ? nullptr : std::strchr(cLetters, character);
        bytes += letter == nullptr ? character : cMeanings[letter - cLetters];
    }
}

bool PostScriptReader::ReadHexadecimal(PostScriptValue& value)
{
    const int start = mPosition++;
    QByteArray digits;
    while (mPosition < mText.size() && Peek() != '>') {
        const char character = mText[mPosition++];
        const int digit = GetDigit(character);
        if (digit >= 0 && digit < 16)
            digits += character;
        else if (!IsBlank(character))
            return FailAt(mPosition - 1, QStringLiteral("a hexadecimal string with another character"));
    }
    if (mPosition >= mText.size())
        return FailAt(start, QStringLiteral("a string without end"));
    ++mPosition;
    if (digits.size() % 2 != 0)
        digits += '0';
    value = PostScriptValue::MakeString(QByteArray::fromHex(digits));
    return true;
}

bool PostScriptReader::ReadBase85(PostScriptValue& value)
{
    const int start = mPosition;
    mPosition += 2;
    QByteArray bytes;
    quint64 group = 0;
    int count = 0;
    const auto finishGroup = [&](int taken) {
        for (int i = 0; i < taken; ++i)
            bytes += static_cast<char>((group >> (24 - 8 * i)) & 0xFF);
        group = 0;
        count = 0;
    };
    for (; mPosition < mText.size() && Peek() != '~'; ++mPosition) {
        const char character = Peek();
        if (character == 'z' && count == 0) {
            finishGroup(4);
        } else if (character >= '!' && character <= 'u') {
            group = group * 85 + static_cast<quint64>(character - '!');
            if (++count == 5)
                finishGroup(4);
        } else if (!IsBlank(character)) {
            return FailAt(mPosition, QStringLiteral("a string in base 85 with another character"));
        }
    }
    if (Peek() != '~' || Peek(1) != '>' || count == 1)
        return FailAt(start, QStringLiteral("a string in base 85 without end"));
    mPosition += 2;
    const int taken = count - 1;
    for (; count > 0 && count < 5; ++count)
        group = group * 85 + 84;
    finishGroup(taken);
    value = PostScriptValue::MakeString(bytes);
    return true;
}
