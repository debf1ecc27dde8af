#include "foundation/cli/CliHelp.h"
#include "tests/support/Test.h"

#include "CliSample.h"

static const CliCommand& GetMake()
{
    return GetSampleProgram().commands.front();
}

TEST(CliTextsTest, HelpShowsTheCallItsWordsAndItsExamples)
{
    EXPECT_EQ(CliHelp::GetCommand(GetSampleProgram(), GetMake(), CliHelp::Style::cPlain).toStdString(),
              "tool make: make a thing\n\n"
              "usage:\n"
              "  tool make NAME --from FILE [--part KEY=VALUE]... [--fast]\n\n"
              "arguments:\n"
              "  NAME  the thing\n\n"
              "options:\n"
              "  --from FILE       what it is made of\n"
              "  --part KEY=VALUE  a part: it's [one] of 'many'\n"
              "  --fast            be quick\n"
              "  --help            print this help\n\n"
              "examples:\n"
              "  tool make it --from a.txt\n"
              "      .Makes it - really.\n");
    const QString program = CliHelp::GetProgram(GetSampleProgram(), CliHelp::Style::cBold);
    EXPECT_TRUE(program.contains("First paragraph, of a line.\n\n  kept\n   as it stands\n"_q));
    EXPECT_TRUE(program.contains("\x1b[1mexit status:\x1b[0m\n  0  done\n"_q));
    EXPECT_TRUE(program.contains("  pack make  make packs\n"_q));
    const QString group = CliHelp::GetGroup(GetSampleProgram(), "pack"_q, CliHelp::Style::cPlain);
    EXPECT_TRUE(group.contains("  pack list  list packs\n"_q));
    EXPECT_FALSE(group.contains("make a thing"_q));
    for (const QString& line : program.split(QLatin1Char('\n')))
        EXPECT_LE(line.size(), 110);
}

TEST(CliTextsTest, TheManualHoldsEveryWordAsText)
{
    const QString page = CliHelp::GetManual(GetSampleProgram());
    EXPECT_TRUE(page.startsWith(".TH tool 1"_q));
    EXPECT_TRUE(
        page.contains(".SS tool make NAME \\-\\-from\\ FILE [\\-\\-part\\ KEY=VALUE]... [\\-\\-fast]\n"_q))
        << page.toStdString();
    EXPECT_TRUE(page.contains("a part: it\\(aqs [one] of \\(aqmany\\(aq\n"_q));
    EXPECT_TRUE(page.contains(".nf\n  kept\n   as it stands\n.fi\n"_q));
    EXPECT_TRUE(page.contains("Example: \\&.Makes it \\- really.\n"_q));
    EXPECT_TRUE(page.contains(".SH EXIT STATUS\n"_q));
}
