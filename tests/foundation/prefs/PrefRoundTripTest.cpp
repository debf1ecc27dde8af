#include "PrefDocument.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

#include <random>

namespace
{
// A document of random names and texts that hold only characters that the encoding has.
SortedGroups MakeDocument(unsigned seed, const GEncodingRef& encoding)
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

// What a text is after it was in a file: each of its line breaks is CR LF.
GString WithFileLineBreaks(GString text)
{
    static const QRegularExpression lineBreak(QStringLiteral("\r\n|\n\r|\r|\n"));
    return text.replace(lineBreak, QStringLiteral("\r\n"));
}

// The document as it is after it was in a file.
SortedGroups AsInFile(const SortedGroups& written)
{
    const auto nameInFile = [](const GBuffer& name) {
        return WithFileLineBreaks(GString::fromLatin1(name.constData(), name.size())).toLatin1();
    };
    SortedGroups groups;
    for (const auto& group : written) {
        for (const auto& entry : group.second)
            groups[nameInFile(group.first)][nameInFile(entry.first)] = WithFileLineBreaks(entry.second);
    }
    return groups;
}

const SortedGroups cDocument = {
    {"First", {{"key", QStringLiteral("value")}, {"\xE9", QStringLiteral("a \"\\b\"\n")}}},
    {"Second", {{"list", QStringLiteral("#BEGINTABLE\r\n\"\u4E2D\"\r\n#ENDTABLE\r\n")}}},
    {"Third", {{"", QString()}, {"x", QStringLiteral("\U0001D11E")}}},
};

// Where each group of the document begins in its bytes.
std::map<int, GBuffer> FindGroups(const GBuffer& bytes, const GEncodingRef& encoding)
{
    std::map<int, GBuffer> starts;
    for (const auto& group : cDocument)
        starts[bytes.indexOf(encoding->Encode(QLatin1Char('"') + QString::fromLatin1(group.first)))] =
            group.first;
    return starts;
}

// The groups that end before the byte are there and whole.
void ExpectGroupsBefore(int position, const std::map<int, GBuffer>& starts, const SortedGroups& whole,
                        const SortedGroups& read)
{
    for (auto group = starts.begin(); group != starts.end(); ++group) {
        const auto next = std::next(group);
        if (next == starts.end() || next->first > position)
            return;
        const auto found = read.find(group->second);
        ASSERT_TRUE(found != read.end()) << group->second.constData() << ", damage at " << position;
        ASSERT_TRUE(found->second == whole.at(group->second)) << "damage at " << position;
    }
}
}  // namespace

TEST(PrefRoundTripTest, AnyDocumentComesBackInEveryEncoding)
{
    for (const GEncodingRef& encoding : {GEncoding::GetUTF16LittleEndian(), GEncoding::GetUTF16BigEndian(),
                                         GEncoding::GetUTF8(), GEncoding::GetWinAnsi()}) {
        for (unsigned seed = 0; seed < 150; ++seed) {
            const SortedGroups written = MakeDocument(seed, encoding);
            const GBuffer bytes = WriteDocument(written, encoding);
            const bool isFound = encoding->GetCharWidth() == 2 && seed % 2 == 0;  // by its mark
            const ReadDocument read = ParseDocument(bytes, isFound ? nullptr : encoding);
            ASSERT_TRUE(read.isRead && read.stopPosition == -1 && read.groups == AsInFile(written))
                << encoding->GetName().toStdString() << ", seed " << seed;
        }
    }
}

TEST(PrefRoundTripTest, EveryPrefixAndEveryChangedByteKeepTheGroupsBeforeTheDamage)
{
    for (const GEncodingRef& encoding : {GEncoding::GetUTF16(), GEncoding::GetUTF8()}) {
        const GBuffer bytes = WriteDocument(cDocument, encoding);
        const SortedGroups whole = ParseDocument(bytes, encoding).groups;
        const auto starts = FindGroups(bytes, encoding);
        const int markEnd = encoding->GetCharWidth() == 2 ? 2 : 0;
        for (int position = 0; position < bytes.size(); ++position) {
            ExpectGroupsBefore(position, starts, whole, ParseDocument(bytes.left(position), encoding).groups);
            GBuffer values("\"\\# \n\0\xFF", position < markEnd ? 0 : 7);
            for (int bit = 0; bit < 8 && position >= markEnd; ++bit)
                values.append(static_cast<char>(bytes.at(position) ^ (1 << bit)));
            for (const char value : values) {
                GBuffer damaged = bytes;
                damaged[position] = value;
                ExpectGroupsBefore(position, starts, whole, ParseDocument(damaged, encoding).groups);
            }
        }
    }
}
