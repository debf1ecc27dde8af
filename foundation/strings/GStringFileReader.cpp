#include "foundation/strings/GStringFileReader.h"

#include "foundation/core/EscapeCodes.h"
#include "foundation/core/GException.h"
#include "foundation/core/GFileInputStream.h"
#include "foundation/strings/GStringPool.h"
#include "foundation/strings/GStringPoolSupport.h"
#include "foundation/trace/GTrace.h"

#include <QTextCodec>

#include <cstring>
#include <limits>
#include <optional>

namespace
{
constexpr int cMostBadLines = 20;  // that are logged one by one
constexpr int cUTF8 = 106;         // the encoding's number at IANA

bool IsBlank(QChar character)
{
    return character == QLatin1Char(' ') || character == QLatin1Char('\t');
}

void SkipBlanks(const GString& line, int& at)
{
    while (at < line.size() && IsBlank(line.at(at)))
        ++at;
}

// The text of a line; nothing when its bytes are no UTF-8.
std::optional<GString> Decode(const char* bytes, int count)
{
    static QTextCodec* const codec = QTextCodec::codecForMib(cUTF8);
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    const GString text = codec->toUnicode(bytes, count, &state);
    if (state.invalidChars > 0 || state.remainingChars > 0)
        return std::nullopt;
    return text;
}

std::optional<uint32_t> ReadCode(const GString& line, int& at)
{
    const int begin = at;
    uint64_t code = 0;
    for (; at < line.size() && line.at(at) >= QLatin1Char('0') && line.at(at) <= QLatin1Char('9'); ++at) {
        code = code * 10 + (line.at(at).unicode() - uint64_t{'0'});
        if (code >= cNextStringCode)
            return std::nullopt;
    }
    if (at == begin)
        return std::nullopt;
    return static_cast<uint32_t>(code);
}

// A text between quotes with its escapes taken back; `at` is then behind the closing quote.
std::optional<GString> ReadQuoted(const GString& line, int& at)
{
    const QLatin1Char quote('"');
    if (at == line.size() || line.at(at) != quote)
        return std::nullopt;
    GString text;
    const QChar* place = line.cbegin() + at + 1;
    while (place != line.cend() && *place != quote)
        place = EscapeCodes::TakeBack<EscapeCodes::InQuotes>(place, line.cend(), text);
    if (place == line.cend())
        return std::nullopt;
    at = static_cast<int>(place - line.cbegin()) + 1;
    return text;
}

// Takes an entry from a line that is neither blank nor a comment; false when it is none.
bool TakeEntry(const GString& line, int at, const GStringFileReader::Sink& take)
{
    const std::optional<uint32_t> code = ReadCode(line, at);
    if (!code || at == line.size() || !IsBlank(line.at(at)))
        return false;
    SkipBlanks(line, at);
    const std::optional<GString> text = ReadQuoted(line, at);
    if (!text)
        return false;
    SkipBlanks(line, at);
    if (at != line.size())
        return false;
    take(*code, *text);
    return true;
}

// False for a line that makes no sense.
bool ReadLine(const char* bytes, int count, const GStringFileReader::Sink& take)
{
    const std::optional<GString> line = Decode(bytes, count);
    if (!line)
        return false;
    int at = 0;
    SkipBlanks(*line, at);
    if (at == line->size() || line->at(at) == QLatin1Char('#'))
        return true;
    return TakeEntry(*line, at, take);
}

void LogBadLine(const GString& name, int number)
{
    GTrace::Error(QStringLiteral("GStringFileReader::Parse"),
                  QStringLiteral("%1, line %2: not a code, a blank and a quoted text in UTF-8; passed over.")
                      .arg(name)
                      .arg(number));
}

GBuffer ReadWhole(const GPathName& path)
{
    GFileInputStream file(path.GetNativePath());
    GBuffer content(GStringFileReader::cLargestFile + 1, Qt::Uninitialized);
    content.resize(file.Read(content.data(), content.size()));
    return content;
}
}  // namespace

bool GStringFileReader::ParseStringFile(const GPathName& path, const GString& language)
{
    const GString source = QStringLiteral("GStringFileReader::ParseStringFile");
    try {
        const GBuffer content = ReadWhole(path);
        if (content.size() > cLargestFile) {
            GTrace::Error(source, QStringLiteral("%1 is too large.").arg(path.GetNativePath()));
            return false;
        }
        Parse(content, path.GetNativePath(), [&language](uint32_t code, const GString& text) {
            GStringPool::GetTable(language).SetString(code, text, GEncoding::GetUTF8());
        });
        return true;
    } catch (const GException& error) {
        GTrace::Error(source, error.GetDescription());
        return false;
    }
}

void GStringFileReader::Parse(const GBuffer& content, const GString& name, const Sink& take)
{
    const char* at = content.constData();
    const char* const end = at + content.size();
    if (content.startsWith("\xEF\xBB\xBF"))
        at += 3;
    int badLines = 0;
    int entries = 0;
    const Sink takeAndCount = [&](uint32_t code, const GString& text) {
        ++entries;
        take(code, text);
    };
    for (int number = 1; at != end && entries < cMostEntries; ++number) {
        const char* lineEnd = at;
        while (lineEnd != end && *lineEnd != '\n' && *lineEnd != '\r')
            ++lineEnd;
        if (!ReadLine(at, static_cast<int>(lineEnd - at), takeAndCount) && ++badLines <= cMostBadLines)
            LogBadLine(name, number);
        const bool isCRLF = end - lineEnd >= 2 && lineEnd[0] == '\r' && lineEnd[1] == '\n';
        at = lineEnd == end ? end : lineEnd + (isCRLF ? 2 : 1);
    }
    if (at != end) {
        GTrace::Error(QStringLiteral("GStringFileReader::Parse"),
                      QStringLiteral("%1: only the first %2 entries are read.").arg(name).arg(cMostEntries));
    }
    if (badLines > cMostBadLines) {
        GTrace::Error(
            QStringLiteral("GStringFileReader::Parse"),
            QStringLiteral("%1: %2 more lines like these.").arg(name).arg(badLines - cMostBadLines));
    }
}
