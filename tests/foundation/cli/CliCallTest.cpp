#include "foundation/cli/CliCall.h"
#include "tests/support/Test.h"

#include "CliSample.h"

static QString Join(const QStringList& words)
{
    return words.join(QLatin1Char('|'));
}

static CliCall Read(const char* words)
{
    const QString text = QString::fromUtf8(words);
    return CliCall::Read(GetSampleProgram(), text.isEmpty() ? QStringList() : text.split(QLatin1Char('|')));
}

TEST(CliCallTest, WordsAreTakenAsTheyStand)
{
    const struct
    {
        const char *words, *command, *arguments, *option, *values;
    } cases[] = {
        {"make|it|--from|a", "make", "it", "from", "a"},
        {"make|--from=a|it", "make", "it", "from", "a"},
        {"make|--from=a=b|it", "make", "it", "from", "a=b"},
        {"make|--from=|it", "make", "it", "from", ""},
        {"make|--from|--fast|it", "make", "it", "from", "--fast"},
        {"make|--from|a|--from|b|it", "make", "it", "from", "a|b"},
        {"make|it|--from|a|--part|x=|--part=y=]", "make", "it", "part", "x=|y=]"},
        {"make|--from|a|--|--fast", "make", "--fast", "from", "a"},
        {"make|--from|a|--|--", "make", "--", "from", "a"},
        {"make|[a,b]|--from|[c,d]", "make", "[a,b]", "from", "[c,d]"},
        {"make|++|--from|=", "make", "++", "from", "="},
        {"make|keep|--from|make", "make", "keep", "from", "make"},
        {"make|\u65E5\u672C|--from|\x01", "make", "\u65E5\u672C", "from", "\x01"},
        {"make|-|--from|/from", "make", "-", "from", "/from"},
        {"make|/fast|--from|x", "make", "/fast", "from", "x"},
        {"keep|--set|--set|--help", "keep", "", "set", "--set|--help"},
        {"pack|list|a|b|c", "pack list", "a|b|c", "", ""},
        {"maybe", "maybe", "", "", ""},
        {"maybe|x", "maybe", "x", "", ""},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.words);
        const CliCall call = Read(test.words);
        ASSERT_EQ(call.GetKind(), CliCall::Kind::cRun) << call.GetError().toStdString();
        EXPECT_STREQ(call.GetCommand()->name, test.command);
        EXPECT_EQ(Join(call.GetArguments()), QString::fromUtf8(test.arguments));
        EXPECT_EQ(Join(call.GetAll(test.option)), QString::fromUtf8(test.values));
        EXPECT_EQ(call.Has(test.option), *test.option != '\0');
        EXPECT_FALSE(call.Has("fast"));
    }
    EXPECT_TRUE(Read("make|it|--from|a|--fast").Has("fast"));
    EXPECT_EQ(Read("make|it|--from|a|--from|b").Get("from"), "b"_q);
}

TEST(CliCallTest, AWrongCallNamesTheWrongWordAndTheNearestRightOne)
{
    const std::pair<const char*, const char*> cases[] = {
        {"", "A command is missing."},
        {"mak|x", "There is no command \"mak\". Did you mean \"make\"?"},
        {"banana", "There is no command \"banana\"."},
        {"--fast", "There is no option \"--fast\" before a command."},
        {"--verison", "There is no option \"--verison\" before a command. Did you mean \"--version\"?"},
        {"pack", "\"pack\" needs a command: list, make."},
        {"pack|lits", "There is no command \"lits\" in \"pack\": it has list, make. Did you mean \"list\"?"},
        {"make|--from|a", "NAME is missing."},
        {"make||--from|a", "NAME is missing."},
        {"make|it", "--from FILE is missing."},
        {"make|it|--from", "\"--from\" needs a value: --from FILE."},
        {"make|it|more|--from|a", "Unexpected \"more\"."},
        {"make|it|--form=a", "There is no option \"--form\". Did you mean \"--from\"?"},
        {"make|it|-f|a", "There is no option \"-f\"."},
        {"make|it|--from|a|--fast=yes", "\"--fast\" takes no value."},
        {"keep|--set|a", "\"--set\" needs a value: --set GROUP KEY."},
        {"pack|make", "WORD is missing."},
        {"maybe|a|b", "Unexpected \"b\"."},
        {"--completion|tcsh", "\"--completion\" needs a shell: bash, zsh or fish."},
        {"--completion", "\"--completion\" needs a shell: bash, zsh or fish."},
    };
    for (const auto& [words, error] : cases) {
        const CliCall call = Read(words);
        EXPECT_EQ(call.GetKind(), CliCall::Kind::cWrong) << words;
        EXPECT_EQ(call.GetError().toStdString(), error);
    }
}

TEST(CliCallTest, HelpIsGivenWhereverItIsAskedFor)
{
    const std::tuple<const char*, CliCall::Kind, const char*, const char*> cases[] = {
        {"--help", CliCall::Kind::cHelp, "", ""},
        {"-h", CliCall::Kind::cHelp, "", ""},
        {"help", CliCall::Kind::cHelp, "", ""},
        {"help|make", CliCall::Kind::cHelp, "make", ""},
        {"make|--help", CliCall::Kind::cHelp, "make", ""},
        {"make|it|-h", CliCall::Kind::cHelp, "make", ""},
        {"make|--fsat|--help", CliCall::Kind::cHelp, "make", ""},
        {"pack|--help", CliCall::Kind::cHelp, "", "pack"},
        {"help|pack", CliCall::Kind::cHelp, "", "pack"},
        {"help|pack|list", CliCall::Kind::cHelp, "pack list", ""},
        {"--version", CliCall::Kind::cVersion, "", ""},
        {"--manual", CliCall::Kind::cManual, "", ""},
        {"--completion|zsh", CliCall::Kind::cCompletion, "", "zsh"},
        {"--completion=fish", CliCall::Kind::cCompletion, "", "fish"},
    };
    for (const auto& [words, kind, command, topic] : cases) {
        const CliCall call = Read(words);
        EXPECT_EQ(call.GetKind(), kind) << words << ": " << call.GetError().toStdString();
        EXPECT_STREQ(call.GetCommand() == nullptr ? "" : call.GetCommand()->name, command) << words;
        EXPECT_EQ(call.GetTopic(), QLatin1String(topic)) << words;
    }
}
