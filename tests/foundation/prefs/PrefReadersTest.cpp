#include "PrefDocument.h"
#include "foundation/prefs/GDictBufferReader.h"
#include "foundation/prefs/GListReader.h"
#include "foundation/prefs/GOrderedDictWriter.h"
#include "foundation/prefs/GPrefWriter.h"

#include <gtest/gtest.h>

namespace
{
const GBuffer cGroupA =
    "\"A\"\n"
    "#BEGINDICT\n"
    "\"k\" \"v\"\n"
    "#ENDDICT\n";
const SortedGroups cOnlyA = {{"A", {{"k", QStringLiteral("v")}}}};
}  // namespace

TEST(PrefReadersTest, DocumentsAreReadAsFarAsTheyMakeSense)
{
    const GBuffer begin = "#BEGINPREFS\n";
    const SortedGroups none;
    const struct
    {
        const char* what;
        GBuffer document;
        bool isRead;
        int stopPosition = -1;
        SortedGroups groups = cOnlyA;
    } cases[] = {
        {"empty source", "", false, 0, none},
        {"other begin", " #BEGINDICT\n", false, 1, none},
        {"no groups", "#BEGINPREFS\r\n\r\n#ENDPREFS\r\n", true, -1, none},
        {"one group", begin + cGroupA + "#ENDPREFS\n", true},
        {"all in one line but the ends", "#BEGINPREFS \"A\" #BEGINDICT \"k\"\"v\"\n#ENDDICT #ENDPREFS", true},
        {"no end marker", begin + cGroupA, true},
        {"another end", begin + cGroupA + "#ENDPREFZ", false, 44},
        {"unclosed name", begin + cGroupA + " \"B", true, 45},
        {"#ENDPREFS for #ENDDICT", begin + "\"A\" #BEGINDICT \"k\" \"v\"\n#ENDPREFS\n", true},
        {"any word with # for #ENDDICT", begin + "\"A\" #BEGINDICT \"k\" \"v\"\n#X y\n#ENDPREFS\n", true},
        {"no block", begin + cGroupA + "\"B\" \"k\" \"v\"\n" + cGroupA, true, 48},
        {"key without value", begin + cGroupA + "\"B\" #BEGINDICT\n\"a\" \"1\"\n\"k\" v\n#ENDDICT\n", true,
         67},
        {"stray word", begin + cGroupA + "\"B\" #BEGINDICT\nx\n#ENDDICT\n" + cGroupA, true, 59},
        {"data ends in a block", begin + cGroupA + "\"B\" #BEGINDICT\n\"k\" \"v", true, 59},
        {"text behind a value", begin + "\"A\"\n#BEGINDICT\n\"k\" \"v\" \"x\" y\n#ENDDICT z\n", true},
        {"a key again", begin + "\"A\" #BEGINDICT\n\"k\" \"u\"\n\"k\" \"v\"\n#ENDDICT\n", true},
        {"a group again", begin + "\"A\" #BEGINDICT\n\"j\" \"u\"\n#ENDDICT\n" + cGroupA, true},
        {"a damaged group again", begin + cGroupA + "\"A\" x", true, 48, none},
        {"empty group", begin + "\"A\" #BEGINDICT\n\n#ENDDICT\n", true, -1, {{"A", {}}}},
    };
    for (const auto& each : cases) {
        for (const GEncodingRef& encoding : {GEncoding::GetUTF8(), GEncoding::GetUTF16BigEndian()}) {
            const GBuffer bytes = encoding->Encode(QString::fromLatin1(each.document));
            const ReadDocument read = ParseDocument(bytes, encoding);
            EXPECT_TRUE(read.isRead == each.isRead && read.groups == each.groups) << each.what;
            const int width = each.stopPosition < 0 ? 1 : encoding->GetCharWidth();
            EXPECT_EQ(read.stopPosition, each.stopPosition * width) << each.what;
        }
    }
}

TEST(PrefReadersTest, ListsAreReadAsFarAsTheyMakeSense)
{
    const struct
    {
        GString text;
        bool isRead;
        QStringList list;
    } cases[] = {
        {QStringLiteral("#BEGINTABLE\r\n#ENDTABLE\r\n"), true, {}},
        {QStringLiteral("\uFEFF#BEGINTABLE\r\n\"a\"\r\n\"\"\r\n\"a\" x\n#ENDTABLE"),
         true,
         {QStringLiteral("a"), QString(), QStringLiteral("a")}},
        {QStringLiteral("#BEGINTABLE \"a\"\n\"b"), true, {QStringLiteral("a")}},
        {QStringLiteral("#BEGINTABLE\n\"a\"\n\n\"b\"\n"), true, {QStringLiteral("a")}},
        {QStringLiteral("\"a\"\n#ENDTABLE"), false, {}},
        {QString(), false, {}},
    };
    for (const auto& each : cases) {
        QStringList list = {QStringLiteral("old")};
        EXPECT_EQ(GListReader::ReadText(each.text, list), each.isRead) << each.text.toStdString();
        EXPECT_EQ(list, each.list) << each.text.toStdString();
    }
}

TEST(PrefReadersTest, KeysThatMeetEndTheReading)
{
    // Found by trying: keys that are at home in one slot of a dictionary that is large enough to hold them
    // all.
    constexpr uint32_t cCapacity = 937;
    SortedGroups groups;
    for (int number = 0; groups["B"].size() < 600; ++number) {
        const GBuffer key = GBuffer::number(number);
        if (GDictHash(key) % cCapacity == 0)
            groups["B"][key] = QStringLiteral("v");
    }
    const GBuffer begin = "#BEGINPREFS\r\n";
    const GBuffer document = begin + cGroupA + WriteDocument(groups, GEncoding::GetUTF8()).mid(begin.size());
    const ReadDocument read = ParseDocument(document, GEncoding::GetUTF8());
    EXPECT_EQ(read.groups, cOnlyA);
    EXPECT_NEAR(read.stopPosition, document.size() / 2, document.size() / 6);
}

TEST(PrefReadersTest, WrittenBytesAreExact)
{
    GString list;
    GPrefWriter::AppendList(list, {QStringLiteral("C:\\Jobs\\a.pdf")});
    EXPECT_EQ(list, QStringLiteral("#BEGINTABLE\r\n\"C:\\\\Jobs\\\\a.pdf\"\r\n#ENDTABLE\r\n"));

    const GBuffer document =
        WriteDocument({{"General", {{"Recent", list}}}, {"Left out", {}}}, GEncoding::GetUTF8());
    EXPECT_EQ(document,
              GBuffer("#BEGINPREFS\r\n\r\n\"General\"\r\n#BEGINDICT\r\n"
                      "\"Recent\" \"#BEGINTABLE\\n\\\"C:\\\\\\\\Jobs\\\\\\\\a.pdf\\\"\\n#ENDTABLE\\n\"\r\n"
                      "#ENDDICT\r\n\r\n#ENDPREFS\r\n"));
    EXPECT_EQ(WriteDocument({}, GEncoding::GetWinAnsi()), GBuffer("#BEGINPREFS\r\n\r\n#ENDPREFS\r\n"));
}

TEST(PrefReadersTest, BlocksWithinBlocksComeBack)
{
    GDict<GString, GString> inner;
    inner.Insert(QStringLiteral("\u4E2D \"key\""), QStringLiteral("\\ and \"\n"));
    GString innerText;
    GPrefWriter::AppendDict(innerText, inner);

    GOrderedDictWriter writer;
    writer.Add(QStringLiteral("Z"), innerText);
    writer.Add(GBuffer("A\xE9"), QStringLiteral("1"));
    const GString outerText = writer.Finish();
    EXPECT_LT(outerText.indexOf(QStringLiteral("\"Z\"")), outerText.indexOf(QStringLiteral("\"A\u00E9\"")));

    GDict<GString, GString> outer;
    GDictBufferReader<GString, GString> reader;
    ASSERT_TRUE(reader.ReadText(outerText, outer));
    EXPECT_EQ(outer.GetCount(), 2);
    ASSERT_TRUE(reader.ReadText(*outer.Find(QStringLiteral("Z")), inner));
    EXPECT_EQ(*inner.Find(QStringLiteral("\u4E2D \"key\"")), QStringLiteral("\\ and \"\r\n"));
}
