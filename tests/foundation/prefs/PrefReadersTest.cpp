#include "PrefDocument.h"
#include "foundation/prefs/GDictBufferReader.h"
#include "foundation/prefs/GListReader.h"
#include "foundation/prefs/GOrderedDictWriter.h"
#include "foundation/prefs/GPrefWriter.h"
#include "tests/support/Test.h"

static const GBuffer cGroupA = "\"A\"\n#BEGINDICT\n\"k\" \"v\"\n#ENDDICT\n";
static const SortedGroups cOnlyA = {{"A", {{"k", "v"_q}}}};

TEST(PrefReadersTest, DocumentsAreReadAsFarAsTheyMakeSense)
{
    const GBuffer begin = "#BEGINPREFS\n";
    const SortedGroups none;
    const struct
    {
        const char* what;
        GBuffer document;
        bool isRead;
        int damagePosition = -1;
        SortedGroups groups = cOnlyA;
    } cases[] = {
        {"empty source", "", false, 0, none},
        {"other begin", " #BEGINDICT\n", false, 1, none},
        {"no groups", "#BEGINPREFS\r\n\r\n#ENDPREFS\r\n", true, -1, none},
        {"one group", begin + cGroupA + "#ENDPREFS\n", true},
        {"all in one line but the ends", "#BEGINPREFS \"A\" #BEGINDICT \"k\"\"v\"\n#ENDDICT\n#ENDPREFS",
         true},
        {"the end hidden in a line", "#BEGINPREFS \"A\" #BEGINDICT \"k\"\"v\"\n#ENDDICT #ENDPREFS", true, 34},
        {"no end marker", begin + cGroupA, true, 44},
        {"something behind the end", begin + cGroupA + "#ENDPREFS\n\n x", true, 56},
        {"another end", begin + cGroupA + "#ENDPREFZ", false, 44},
        {"unclosed name", begin + cGroupA + " \"B", true, 45},
        {"#ENDPREFS for #ENDDICT", begin + "\"A\" #BEGINDICT \"k\" \"v\"\n#ENDPREFS\n", true},
        {"any word with # for #ENDDICT", begin + "\"A\" #BEGINDICT \"k\" \"v\"\n#X\n#ENDPREFS\n", true, 35},
        {"no block", begin + cGroupA + "\"B\" \"k\" \"v\"\n" + cGroupA, true, 48},
        {"key without value", begin + cGroupA + "\"B\" #BEGINDICT\n\"a\" \"1\"\n\"k\" v\n#ENDDICT\n", true,
         67},
        {"stray word", begin + cGroupA + "\"B\" #BEGINDICT\nx\n#ENDDICT\n" + cGroupA, true, 59},
        {"data ends in a block", begin + cGroupA + "\"B\" #BEGINDICT\n\"k\" \"v", true, 59},
        {"text behind a value", begin + "\"A\"\n#BEGINDICT\n\"k\" \"v\" \"x\" y\n#ENDDICT\n#ENDPREFS", true,
         27},
        {"text behind a block", begin + "\"A\"\n#BEGINDICT\n\"k\" \"v\"\n#ENDDICT z\n#ENDPREFS", true, 35},
        {"a key again", begin + "\"A\" #BEGINDICT\n\"k\" \"u\"\n\"k\" \"v\"\n#ENDDICT\n#ENDPREFS", true},
        {"a group again", begin + "\"A\" #BEGINDICT\n\"j\" \"u\"\n#ENDDICT\n" + cGroupA + "#ENDPREFS", true},
        {"a damaged group again", begin + cGroupA + "\"A\" x", true, 48, none},
        {"empty group", begin + "\"A\" #BEGINDICT\n\n#ENDDICT\n#ENDPREFS", true, -1, {{"A", {}}}},
    };
    for (const auto& each : cases) {
        for (const GEncodingRef& encoding : {GEncoding::GetUTF8(), GEncoding::GetUTF16BigEndian()}) {
            const GBuffer bytes = encoding->Encode(QString::fromLatin1(each.document));
            const ReadDocument read = ParseDocument(bytes, encoding);
            EXPECT_TRUE(read.isRead == each.isRead && read.groups == each.groups) << each.what;
            const int width = each.damagePosition < 0 ? 1 : encoding->GetCharWidth();
            EXPECT_EQ(read.damagePosition, each.damagePosition * width) << each.what;
        }
    }
}

TEST(PrefReadersTest, ListsAreReadAsFarAsTheyMakeSense)
{
    // items: each with a '|' behind it
    const std::tuple<GString, bool, const char*> cases[] = {
        {"#BEGINTABLE\r\n#ENDTABLE\r\n"_q, true, ""},
        {QStringLiteral("\uFEFF#BEGINTABLE\r\n\"a\"\r\n\"\"\r\n\"a\" x\n#ENDTABLE"), true, "a||a|"},
        {"#BEGINTABLE \"a\"\n\"b"_q, true, "a|"},
        {"#BEGINTABLE\n\"a\"\n\n\"b\"\n"_q, true, "a|"},
        {"\"a\"\n#ENDTABLE"_q, false, ""},
        {QString(), false, ""},
    };
    for (const auto& [text, isRead, items] : cases) {
        QStringList list = {"old"_q};
        EXPECT_EQ(GListReader::ReadText(text, list), isRead) << text.toStdString();
        list += QString();
        EXPECT_EQ(list.join(QLatin1Char('|')).toStdString(), items) << text.toStdString();
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
            groups["B"][key] = "v"_q;
    }
    const GBuffer begin = "#BEGINPREFS\r\n";
    const GBuffer document = begin + cGroupA + WriteDocument(groups, GEncoding::GetUTF8()).mid(begin.size());
    const ReadDocument read = ParseDocument(document, GEncoding::GetUTF8());
    EXPECT_EQ(read.groups, cOnlyA);
    EXPECT_NEAR(read.damagePosition, document.size() / 2, document.size() / 6);
}

TEST(PrefReadersTest, WrittenBytesAreExact)
{
    GString list;
    GPrefWriter::AppendList(list, {"C:\\Jobs\\a.pdf"_q});
    EXPECT_EQ(list, "#BEGINTABLE\r\n\"C:\\\\Jobs\\\\a.pdf\"\r\n#ENDTABLE\r\n"_q);

    const GBuffer document =
        WriteDocument({{"General", {{"Recent", list}}}, {"Left out", {}}}, GEncoding::GetUTF8());
    EXPECT_EQ(document,
              GBuffer("#BEGINPREFS\r\n\r\n\"General\"\r\n#BEGINDICT\r\n"
                      "\"Recent\" \"#BEGINTABLE\\n\\\"C:\\\\\\\\Jobs\\\\\\\\a.pdf\\\"\\n#ENDTABLE\\n\"\r\n"
                      "#ENDDICT\r\n\r\n#ENDPREFS\r\n"));
}

TEST(PrefReadersTest, BlocksWithinBlocksComeBack)
{
    GDict<GString, GString> inner;
    inner.Insert("\u4E2D \"key\""_q, "\\ and \"\n"_q);
    GString innerText;
    GPrefWriter::AppendDict(innerText, inner);

    GOrderedDictWriter writer;
    writer.Add("Z"_q, innerText);
    writer.Add(GBuffer("A\xE9"), "1"_q);
    const GString outerText = writer.Finish();
    EXPECT_LT(outerText.indexOf("\"Z\""_q), outerText.indexOf("\"A\u00E9\""_q));
    GDict<GString, GString> outer;
    GDictBufferReader<GString, GString> reader;
    ASSERT_TRUE(reader.ReadText(outerText, outer));
    EXPECT_EQ(outer.GetCount(), 2);
    ASSERT_TRUE(reader.ReadText(*outer.Find("Z"_q), inner));
    EXPECT_EQ(*inner.Find("\u4E2D \"key\""_q), "\\ and \"\r\n"_q);
}

// Blocks that stand as they are written take a shorter way; every cut and every change of one character leads
// to the same entries as the long one.
TEST(PrefReadersTest, TheShortWayThroughABlockReadsWhatTheLongOneReads)
{
    GOrderedDictWriter writer;
    for (const char* value : {"", "plain", "C:\\new\\table", "say \"yes\"", "a\r\nb\tc"})
        writer.Add(QStringLiteral("key %1").arg(QLatin1String(value).size()), QString::fromLatin1(value));
    const GString block = writer.Finish();
    GDictBufferReader<GString, GString> reader;
    const auto expectSame = [&](const GString& text) {
        GDict<GString, GString> expected;
        const bool isRead = reader.ReadText(text, expected);
        std::map<GString, GString> entries;
        EXPECT_EQ(reader.ReadText(text,
                                  [&](const QStringRef& key, const DictValue& value) {
                                      GString memory;
                                      EXPECT_EQ(value.GetText(memory), value.GetText());
                                      entries[key.toString()] = value.GetText();
                                  }),
                  isRead)
            << text.toStdString();
        EXPECT_EQ(entries.size(), static_cast<size_t>(expected.GetCount())) << text.toStdString();
        for (const auto& entry : expected)
            EXPECT_EQ(entries[entry.key], entry.value) << text.toStdString();
    };
    expectSame(block + QStringLiteral("more"));
    for (int position = 0; position <= block.size(); ++position) {
        expectSame(block.left(position));
        for (const QChar change : QStringLiteral("\"\\\r\n #n\uFEFF")) {
            expectSame(GString(block).insert(position, change));
            expectSame(block.left(position) + change + block.mid(position + 1));
        }
    }
}
