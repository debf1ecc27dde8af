#include "DialogFixture.h"
#include "XServer.h"

using ScreenReaderTest = DialogFixture;

// The controls of this process, a line each, as a program on the accessibility bus reads them.
static QStringList ReadTree()
{
    QProcess reader;
    reader.setStandardErrorFile(QProcess::nullDevice());
    reader.start("/usr/bin/python3"_q,
                 {QStringLiteral(HOPBOX_TREE_READER), QString::number(QCoreApplication::applicationPid())});
    EXPECT_TRUE(QTest::qWaitFor([&] { return reader.state() == QProcess::NotRunning; }, 60000));
    return QString::fromUtf8(reader.readAll()).split(QLatin1Char('\n'));
}

TEST_F(ScreenReaderTest, IsToldNameRoleValueAndLabelOfEveryControl)
{
    Add("Press", "Magazine", "UserSettings=true MarkOffset=3 Trim=true");
    Open();
    Find("Options").click();
    QStringList tree;
    EXPECT_TRUE(QTest::qWaitFor(
        [&] {
            tree = ReadTree();
            return tree.size() > 10;
        },
        60000));
    // Its role, name, value, text, label and description; blank lengths have no number.
    const QString anyBleed = "0 pt to 432 pt, in any unit: 3 mm, 0.125 in, 1p6, 9 pt"_q;
    const QStringList wanted = {
        "combo box|Magazine|||PDF Settings:|Magazine Hopbox: Press"_q,
        "radio button|All||||Pages:"_q,
        "radio button|Range:||||Pages:"_q,
        "text|Page range|||Pages:|e.g. 1-5,8,11-13"_q,
        "check box|Include File Package||||Check this option to deliver an InDesign file Package."_q,
        "check box|Options||||Expanded"_q,
        "check box|All Printer's Marks||||"_q,
        "check box|Crop||||"_q,
        "check box|Bleed||||As the job options say"_q,
        "combo box|Weight:|||Weight:|As the job options say"_q,
        "spin button|Offset|3.0|3 pt|Offset:|0.01 pt to 72 pt, in any unit: 3 mm, 0.125 in, 1p6, 9 pt"_q,
        "spin button|Bleed at the top|||Top:|As the job options say "_q + anyBleed,
        "spin button|Bleed on the outside|||Outside:|As the job options say "_q + anyBleed,
        "check box|Make all settings the same||||Make all settings the same"_q,
        "push button|OK||||Hold down the \"Alt\" key to remove a Hopbox from the list."_q,
        "push button|Cancel||||"_q};
    for (const QString& control : wanted)
        EXPECT_TRUE(tree.contains(control)) << control.toStdString() << "\nin\n"
                                            << tree.join(QLatin1Char('\n')).toStdString();
}
