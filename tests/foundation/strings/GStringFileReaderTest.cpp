#include "foundation/strings/GStringFileReader.h"
#include "foundation/trace/GTrace.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/Test.h"

#include <map>

namespace
{
using Texts = std::map<uint32_t, std::string>;

struct Reading
{
    Texts texts;
    QStringList log;
};

Reading Read(const QByteArray& content)
{
    Reading reading;
    const auto log = std::make_shared<LogRecorder>();
    const auto previous = GTrace::SetLogger(log);
    GStringFileReader::Parse(content, "CSP_deDE.lng"_q, [&reading](uint32_t code, const GString& text) {
        reading.texts[code] = text.toStdString();
    });
    GTrace::SetLogger(previous);
    reading.log = log->TakeErrors();
    return reading;
}
}  // namespace

TEST(GStringFileReader, EntriesCommentsAndBlankLinesInAnyLineEnd)
{
    const Reading reading = Read(
        "\xEF\xBB\xBF# comment\n\r\n  \t\r  30060001 \t\"Gr\xC3\xBC\xC3\x9F\x65\"  \r\n"
        "4294967294 \"a\\tb\\n\\\"c\\\" \\'d\\' \\\\ \\x\"\r7 \"\"");
    EXPECT_EQ(reading.texts,
              (Texts{{30060001, "Gr\u00FC\u00DFe"}, {4294967294u, "a\tb\r\n\"c\" 'd' \\ \\x"}, {7, ""}}));
    EXPECT_TRUE(reading.log.isEmpty());
}

// Each bad line is passed over with its number in the log, and what stands around it is read.
TEST(GStringFileReader, ABadLineIsLoggedWithItsNumberAndCostsNothingElse)
{
    for (const char* bad :
         {"\"no code\"", "8", "8 no quotes", "8\"no blank\"", "8 \"open", "8 \"open at escape\\",
          "8 \"text\" more", "-8 \"negative\"", "4294967295 \"marker\"", "99999999999999999999 \"x\"",
          "8 \"\xFF\"", "8 \"\xC3\"", "\xD9\xA8 \"arabic digit\""}) {
        const Reading reading = Read(QByteArray("1 \"one\"\n") + bad + "\n3 \"three\"\n");
        EXPECT_EQ(reading.texts, (Texts{{1, "one"}, {3, "three"}})) << bad;
        ASSERT_EQ(reading.log.size(), 1) << bad;
        EXPECT_TRUE(reading.log.first().contains(QLatin1String("CSP_deDE.lng, line 2:"))) << bad;
    }
}

TEST(GStringFileReader, AFileOfRubbishDoesNotFloodTheLog)
{
    const Reading reading = Read(QByteArray("rubbish\n").repeated(100000) + "1 \"one\"");
    EXPECT_EQ(reading.texts, (Texts{{1, "one"}}));
    EXPECT_LT(reading.log.size(), 30);
}

// More entries than any translation has are there to fill the memory or to slow the table down.
TEST(GStringFileReader, AFileOfTooManyEntriesIsReadAsFarAsTheBound)
{
    QByteArray content;
    for (int code = 0; code <= GStringFileReader::cMostEntries; ++code)
        content += QByteArray::number(code) + " \"\"\n";
    const Reading reading = Read(content);
    EXPECT_EQ(reading.texts.size(), static_cast<size_t>(GStringFileReader::cMostEntries));
    EXPECT_EQ(reading.log.size(), 1);
}

TEST(GStringFileReader, WhatIsNoReadableFileIsRefused)
{
    const QTemporaryDir folder;
    const GPathName path(folder.path());
    EXPECT_FALSE(GStringFileReader::ParseStringFile(path.GetChild("missing.lng"_q), "deDE"_q));
    QFile large(path.GetChild("large.lng"_q).GetNativePath());
    ASSERT_TRUE(large.open(QIODevice::WriteOnly));
    ASSERT_TRUE(large.resize(GStringFileReader::cLargestFile + 1));
    EXPECT_FALSE(GStringFileReader::ParseStringFile(GPathName(large.fileName()), "deDE"_q));
}
