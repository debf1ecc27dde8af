#include "DialogFixture.h"
#include "XServer.h"

using ScreenReaderTest = DialogFixture;

// The controls of this process, a line each, as a program on the accessibility bus reads them.
static QString ReadTree()
{
    QProcess reader;
    reader.setStandardErrorFile(QProcess::nullDevice());
    reader.start("/usr/bin/python3"_q,
                 {QStringLiteral(HOPBOX_TREE_READER), QString::number(QCoreApplication::applicationPid())});
    EXPECT_TRUE(QTest::qWaitFor([&] { return reader.state() == QProcess::NotRunning; }, 60000));
    return QString::fromUtf8(reader.readAll()).trimmed();
}

TEST_F(ScreenReaderTest, IsToldNameRoleValueLabelAndStateOfEveryControl)
{
    Add("Press", "Magazine", "UserSettings=true MarkOffset=3 Trim=true BleedSlugArea=true");
    Open();
    Find("Options").click();
    // Role, name, value, text, label, description and states; blank lengths have no number.
    const QString length = ", in any unit: 3 mm, 0.125 in, 1p6, 9 pt|"_q;
    const QString left = "As the job options say"_q;
    const QString leftBox = "||||"_q + left + "|checked half"_q;
    const QString leftBleed = left + " 0 pt to 432 pt"_q + length;
    const QStringList controls = {
        "combo box|Magazine|||PDF Settings:|Magazine Hopbox: Press|focused"_q,
        "radio button|All||||Pages:|checked"_q,
        "radio button|Range:||||Pages:|"_q,
        "text|Page range|||Pages:|e.g. 1-5,8,11-13|closed"_q,
        "check box|Include File Package||||Check this option to deliver an InDesign file Package.|"_q,
        "check box|Options||||Expanded|checked"_q,
        "check box|All Printer's Marks|||||checked half"_q,
        "check box|Crop|||||checked"_q,
        "check box|Bleed"_q + leftBox,
        "check box|Registration"_q + leftBox,
        "check box|Color Bars"_q + leftBox,
        "check box|Page Information"_q + leftBox,
        "combo box|Weight:|||Weight:|"_q + left + "|"_q,
        "spin button|Offset|3.0|3 pt|Offset:|0.01 pt to 72 pt"_q + length,
        "check box|Use Document Bleed Settings"_q + leftBox,
        "spin button|Bleed at the top|||Top:|"_q + leftBleed,
        "spin button|Bleed at the bottom|||Bottom:|"_q + leftBleed,
        "spin button|Bleed on the inside|||Inside:|"_q + leftBleed,
        "spin button|Bleed on the outside|||Outside:|"_q + leftBleed,
        "check box|Make all settings the same||||Make all settings the same|checked"_q,
        "check box|Include Slug Area (For Bleed)|||||checked"_q,
        "check box|Print Spreads|||||"_q,
        "push button|OK||||Hold down the \"Alt\" key to remove a Hopbox from the list.|"_q,
        "push button|Cancel|||||"_q};
    const std::string wanted = controls.join(QLatin1Char('\n')).toStdString();
    QString tree;
    EXPECT_TRUE(QTest::qWaitFor([&] { return (tree = ReadTree()).count(QLatin1Char('\n')) > 10; }, 60000));
    EXPECT_EQ(tree.toStdString(), wanted);
}
