#include "hopbox/HopboxFolder.h"

#include "tests/support/Sandbox.h"

#include <QDir>

#include <gtest/gtest.h>

TEST(HopboxFolder, NamesStayInTheirFolderOnEverySystem)
{
    const GString longest(240, QLatin1Char('x'));
    const struct
    {
        GString text, name;
    } cases[] = {
        {QStringLiteral("Gr\u00F6\u00DFe 1.2 \u65E5\u672C \U0001F4E6"),
         QStringLiteral("Gr\u00F6\u00DFe 1.2 \u65E5\u672C \U0001F4E6")},
        {QString(), QStringLiteral("_")},
        {QStringLiteral("."), QStringLiteral("_")},
        {QStringLiteral(".."), QStringLiteral("__")},
        {QStringLiteral("../../etc"), QStringLiteral(".._.._etc")},
        {QStringLiteral("C:\\a/b"), QStringLiteral("C__a_b")},
        {QStringLiteral("<a>|\"b\"?*"), QStringLiteral("_a___b___")},
        {QStringLiteral("a\n\x7F") + QChar(0) + QStringLiteral("\u0085"), QStringLiteral("a____")},
        {QStringLiteral("a. ."), QStringLiteral("a___")},
        {QStringLiteral("nul"), QStringLiteral("_nul")},
        {QStringLiteral("COM1.txt"), QStringLiteral("_COM1.txt")},
        {QStringLiteral("LPT\u00B9"), QStringLiteral("_LPT\u00B9")},
        {QStringLiteral("CONSOLE"), QStringLiteral("CONSOLE")},
        {QChar(0xD83D) + QStringLiteral("a") + QChar(0xDE00), QStringLiteral("_a_")},
        {longest + QStringLiteral("y"), longest},
        {GString(300, QChar(0x65E5)), GString(80, QChar(0x65E5))},
        {GString(239, QLatin1Char('x')) + QStringLiteral("\U0001F4E6"), GString(239, QLatin1Char('x'))},
    };
    const Sandbox sandbox;
    const GPathName parent(sandbox.GetPath());
    for (const auto& test : cases) {
        EXPECT_EQ(HopboxFolder::MakeName(test.text).toStdString(), test.name.toStdString());
        const GPathName folder = HopboxFolder::MakeFresh(parent, test.name);
        EXPECT_EQ(folder.GetParent(), parent);
        EXPECT_TRUE(QDir(folder.GetNativePath()).exists());
    }
}

TEST(HopboxFolder, ATakenNameGivesAnotherFolder)
{
    const Sandbox sandbox;
    const GPathName parent(sandbox.GetPath());
    const GPathName first = HopboxFolder::MakeFresh(parent, QStringLiteral("aX"));
    EXPECT_EQ(first.GetLeaf(), QStringLiteral("aX"));
    const GPathName second = HopboxFolder::MakeFresh(parent, QStringLiteral("aX"));
    EXPECT_NE(second, first);
    EXPECT_TRUE(second.GetLeaf().startsWith(QStringLiteral("aX_")));
    EXPECT_ANY_THROW(HopboxFolder::MakeFresh(parent.GetChild(QStringLiteral("none")), QStringLiteral("a")));
}
