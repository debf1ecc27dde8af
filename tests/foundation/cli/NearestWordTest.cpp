#include "foundation/cli/NearestWord.h"
#include "tests/support/Test.h"

TEST(NearestWordTest, AMistypedWordIsFoundAndAnotherIsNot)
{
    const QStringList words = {"list"_q, "set"_q, "show"_q, "UserSettings"_q, "remove"_q, "rename"_q};
    const std::pair<const char*, const char*> cases[] = {
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
    for (const auto& [typed, meant] : cases)
        EXPECT_EQ(FindNearestWord(QLatin1String(typed), words), QLatin1String(meant)) << typed;
    EXPECT_EQ(AskForNearestWord("sett"_q, words), " Did you mean \"set\"?"_q);
    EXPECT_EQ(AskForNearestWord("banana"_q, words), QString());
    EXPECT_EQ(FindNearestWord(QString(1 << 20, QLatin1Char('s')), words), QString());
}
