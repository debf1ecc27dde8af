#include "PrefDocument.h"
#include "tests/support/Test.h"

#include <QRegularExpression>

#include <climits>
#include <random>

// A document of random names and texts that hold only characters that the encoding has.
static SortedGroups MakeDocument(unsigned seed, const GEncodingRef& encoding)
{
    std::mt19937 random(seed);
    const auto pick = [&random](int count) {
        return static_cast<int>(random() % static_cast<unsigned>(count));
    };
    const auto makeName = [&pick] {
        GBuffer name;
        for (int length = pick(12); length > 0; --length)
            name.append(static_cast<char>(pick(256)));
        return name;
    };
    const auto makeCharacter = [&] {
        static const GString special = QStringLiteral("\"\\\r\n\t'#n \uFEFF\uFFFE\u00A5") + QChar(0);
        static const int ranges[] = {0x80, 0x100, 0xD800, 0x10F800};
        uint code = static_cast<uint>(pick(ranges[pick(4)]));
        code += code >= 0xD800 ? 0x800 : 0;  // no halves of pairs
        const GString character =
            pick(3) == 0 ? GString(special.at(pick(special.size()))) : GString::fromUcs4(&code, 1);
        return encoding->Decode(encoding->Encode(character));
    };
    SortedGroups groups;
    for (int group = pick(6); group >= 0; --group) {
        auto& entries = groups[makeName()];
        for (int entry = pick(12); entry >= 0; --entry) {
            GString& text = entries[makeName()];
            text.clear();
            for (int length = pick(pick(10) == 0 ? 1500 : 20); length > 0; --length)
                text += makeCharacter();
        }
    }
    return groups;
}

// The document as it is after it was in a file: each line break is CR LF.
static SortedGroups AsInFile(const SortedGroups& written)
{
    const auto inFile = [](GString text) {
        static const QRegularExpression lineBreak("\r\n|\n\r|\r|\n"_q);
        return text.replace(lineBreak, "\r\n"_q);
    };
    const auto nameInFile = [&](const GBuffer& name) {
        return inFile(GString::fromLatin1(name.constData(), name.size())).toLatin1();
    };
    SortedGroups groups;
    for (const auto& group : written) {
        for (const auto& entry : group.second)
            groups[nameInFile(group.first)][nameInFile(entry.first)] = inFile(entry.second);
    }
    return groups;
}

static const SortedGroups cDocument = {
    {"First", {{"key", "value"_q}, {"\xE9", "a \"\\b\"\n"_q}}},
    {"Second", {{"list", "#BEGINTABLE\r\n\"\u4E2D\"\r\n#ENDTABLE\r\n"_q}}},
    {"Third", {{"", QString()}, {"x", "\U0001D11E"_q}}},
};

static size_t CountEntries(const SortedGroups& groups)
{
    size_t count = 0;
    for (const auto& group : groups)
        count += group.second.size();
    return count;
}

TEST(PrefRoundTripTest, AnyDocumentComesBackInEveryEncoding)
{
    for (const GEncodingRef& encoding : {GEncoding::GetUTF16LittleEndian(), GEncoding::GetUTF16BigEndian(),
                                         GEncoding::GetUTF8(), GEncoding::GetWinAnsi()}) {
        for (unsigned seed = 0; seed < 150; ++seed) {
            const SortedGroups written = MakeDocument(seed, encoding);
            const GBuffer bytes = WriteDocument(written, encoding);
            const GString begin = encoding->GetCharWidth() == 2 ? QStringLiteral("\uFEFF#BEGIN") : "#BEGIN"_q;
            ASSERT_TRUE(bytes.startsWith(encoding->Encode(begin)));
            const bool isFound = encoding->GetCharWidth() == 2 && seed % 2 == 0;  // by its mark
            const ReadDocument read = ParseDocument(bytes, isFound ? nullptr : encoding);
            ASSERT_TRUE(read.isRead && read.damagePosition == -1 && read.groups == AsInFile(written))
                << encoding->GetName().toStdString() << ", seed " << seed;
        }
    }
}

TEST(PrefRoundTripTest, EveryPrefixAndEveryChangedByteKeepTheGroupsBeforeTheDamage)
{
    for (const GEncodingRef& encoding : {GEncoding::GetUTF16(), GEncoding::GetUTF8()}) {
        const GBuffer bytes = WriteDocument(cDocument, encoding);
        const SortedGroups whole = ParseDocument(bytes, encoding).groups;
        std::map<int, GBuffer> starts = {{INT_MAX, GBuffer()}};
        for (const auto& group : whole)
            starts[bytes.indexOf(encoding->Encode("\""_q + QString::fromLatin1(group.first)))] = group.first;
        const auto expectGroupsBefore = [&](int position, const GBuffer& damaged) {
            const ReadDocument document = ParseDocument(damaged, encoding);
            SortedGroups read = document.groups;
            const bool isWhole = document.damagePosition < 0;
            ASSERT_TRUE(!isWhole || CountEntries(read) == CountEntries(whole))
                << "left out in silence at " << position;
            for (auto group = starts.begin(); std::next(group)->first <= position; ++group)
                ASSERT_EQ(read[group->second], whole.at(group->second)) << "damage at " << position;
        };
        const GBuffer end = encoding->Encode("\r\n"_q);
        for (int length = 0; length < bytes.size() - end.size(); ++length)
            ASSERT_GE(ParseDocument(bytes.left(length), encoding).damagePosition, 0) << "cut at " << length;
        const int markEnd = encoding->GetCharWidth() == 2 ? 2 : 0;
        for (int position = 0; position < bytes.size(); ++position) {
            expectGroupsBefore(position, bytes.left(position));
            GBuffer values("\"\\# \n\0\xFF", position < markEnd ? 0 : 7);
            for (int bit = 0; bit < 8 && position >= markEnd; ++bit)
                values.append(static_cast<char>(bytes.at(position) ^ (1 << bit)));
            for (const char value : values) {
                GBuffer damaged = bytes;
                damaged[position] = value;
                expectGroupsBefore(position, damaged);
            }
        }
    }
}
