#include "foundation/cli/NearestWord.h"
#include "tests/support/Test.h"

TEST(NearestWordTest, AMistypedWordIsFoundAndAnotherIsNot)
{
    const QStringList words = {"list"_q, "set"_q, "show"_q, "UserSettings"_q, "remove"_q, "rename"_q};
    const struct
    {
        const char *typed, *meant;
    } cases[] = {
        {"lsit", "list"},
        {"lst", "list"},
        {"SHOW", "show"},
        {"UserSetings", "UserSettings"},
        {"st", "set"},
        {"renam", "rename"},
        {"usersettings", "UserSettings"},
        {"shows", "show"},
        {"banana", ""},
        {"x", ""},
        {"", ""},
        {"lost and found", ""},
    };
    for (const auto& test : cases)
        EXPECT_EQ(FindNearestWord(QLatin1String(test.typed), words), QLatin1String(test.meant)) << test.typed;
    EXPECT_EQ(AskForNearestWord("sett"_q, words), " Did you mean \"set\"?"_q);
    EXPECT_EQ(AskForNearestWord("banana"_q, words), QString());
    EXPECT_EQ(FindNearestWord(QString(1 << 20, QLatin1Char('s')), words), QString());
}
