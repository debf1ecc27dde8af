#include "hopbox/HopboxFolder.h"

#include "tests/support/Test.h"

TEST(HopboxFolder, NamesStayInTheirFolderOnEverySystem)
{
    const GString longest(240, QLatin1Char('x'));
    const std::pair<GString, GString> cases[] = {
        {"Gr\u00F6\u00DFe 1.2 \u65E5\u672C \U0001F4E6"_q, "Gr\u00F6\u00DFe 1.2 \u65E5\u672C \U0001F4E6"_q},
        {QString(), "_"_q},
        {"."_q, "_"_q},
        {".."_q, "__"_q},
        {"../../etc"_q, ".._.._etc"_q},
        {"C:\\a/b"_q, "C__a_b"_q},
        {"<a>|\"b\"?*"_q, "_a___b___"_q},
        {"a\n\x7F"_q + QChar(0) + "\u0085"_q, "a____"_q},
        {"a. ."_q, "a___"_q},
        {"nul"_q, "_nul"_q},
        {"COM1.txt"_q, "_COM1.txt"_q},
        {"LPT\u00B9"_q, "_LPT\u00B9"_q},
        {"CONSOLE"_q, "CONSOLE"_q},
        {QChar(0xD83D) + "a"_q + QChar(0xDE00), "_a_"_q},
        {longest + "y"_q, longest},
        {GString(300, QChar(0x65E5)), GString(80, QChar(0x65E5))},
        {GString(239, QLatin1Char('x')) + "\U0001F4E6"_q, GString(239, QLatin1Char('x'))},
    };
    const Sandbox sandbox;
    const GPathName parent(sandbox.GetPath());
    for (const auto& [text, name] : cases) {
        EXPECT_EQ(HopboxFolder::MakeName(text).toStdString(), name.toStdString());
        const GPathName folder = HopboxFolder::MakeFresh(parent, name);
        EXPECT_EQ(folder.GetParent(), parent);
        EXPECT_TRUE(QDir(folder.GetNativePath()).exists());
    }
}
