#include "archive/ZipName.h"

#include "ZipSamples.h"

using namespace Morvane;

// Not UTF-8; 0x84 is an "a" with two dots in code pages 437 and 850 alike.
static const QByteArray cOemName = QByteArrayLiteral("B\x84r");
static const QString cOemText = "B\u00E4r"_q;
static const QString cLongName(300, QChar(0x65E5));

static QByteArray Record(const char* id, int length, const QByteArray& data)
{
    return QByteArray(id, 2) + static_cast<char>(length >> 24) + static_cast<char>(length >> 16) +
           static_cast<char>(length >> 8) + static_cast<char>(length) + data;
}

static const QByteArray cNamed = QByteArrayLiteral(
    "\xEF\xBB\xBF"
    "exact");

TEST(ZipNameTest, RawNameHasAnUnderscoreForWhatTheCodePageLacks)
{
    EXPECT_EQ(cOemName + "/_.txt", ZipName::encodeZipName(cOemText + "\\\u65E5.txt"_q));
    EXPECT_EQ("_", ZipName::encodeZipName("\U0001F600"_q)) << "one for a pair";
    EXPECT_EQ("_", ZipName::encodeZipName("\u0141"_q)) << "never a similar letter";
}

TEST(ZipNameTest, NameComesFromTheFirstGoodRecordElseFromTheRawName)
{
    const std::tuple<const char*, QByteArray, QByteArray, QString> cases[] = {
        {"the field", "raw", Record("\xD3\xD7", 8, cNamed), "exact"_q},
        {"a long name", "raw", ZipName::createExtraField("a\\"_q + cLongName), "a/"_q + cLongName},
        {"behind other records", "raw", Record("ab", 2, "xy") + Record("\xD3\xD7", 8, cNamed), "exact"_q},
        {"behind an empty record", "raw", Record("ab", 0, "") + Record("\xD3\xD7", 8, cNamed), "exact"_q},
        {"the first of two", "raw",
         Record("\xD3\xD7", 8, cNamed) + Record("\xD3\xD7", 8, "\xEF\xBB\xBFother"), "exact"_q},
        {"no mark", "raw", Record("\xD3\xD7", 5, "exact"), "raw"_q},
        {"no mark, then a mark", "raw", Record("\xD3\xD7", 5, "wrong") + Record("\xD3\xD7", 8, cNamed),
         "exact"_q},
        {"empty name", "raw", Record("\xD3\xD7", 3, "\xEF\xBB\xBF"), "raw"_q},
        {"length beyond the field", "raw", Record("\xD3\xD7", 80, cNamed), "raw"_q},
        {"length one beyond the data", "raw", Record("\xD3\xD7", 9, cNamed), "raw"_q},
        {"negative length", "raw", Record("ab", -1, "") + Record("\xD3\xD7", 8, cNamed), "raw"_q},
        {"cut in the header", "raw", QByteArray("\xD3\xD7\0\0", 4), "raw"_q},
        {"records of the zip format", "raw", QByteArray("UT\5\0\3abcd", 9), "raw"_q},
        {"raw UTF-8", "B\xC3\xA4r", "", cOemText},
        {"raw OEM", cOemName, "", cOemText},
        {"backslashes", "a\\b\\", "", "a/b/"_q},
        {"a NUL stays, to be refused", QByteArray("a\0b", 3), "", QString::fromLatin1("a\0b", 3)},
    };
    for (const auto& [what, rawName, extraField, name] : cases)
        EXPECT_EQ(name, ZipName::decodeZipName(rawName, extraField)) << what;
}
