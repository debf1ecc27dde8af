#include "foundation/core/GUnitSupport.h"
#include "tests/support/Test.h"
#include "widgets/GQUIUnitSpinBox.h"

#include <QSignalSpy>
#include <QTest>
#include <QToolTip>

namespace
{
using namespace GUnitSupport;

class UnitSpinBox : public testing::Test
{
protected:
    UnitSpinBox()
    {
        box.setLocale(QLocale::c());
        box.SetPoints(9);
        box.show();
        box.setFocus();
    }

    ~UnitSpinBox() override { SetDefaultUnitCode(cPoints); }

    void Type(const char* text)
    {
        box.selectAll();
        QTest::keyClick(&box, Qt::Key_Delete);
        QTest::keyClicks(&box, QString::fromUtf8(text));
        QTest::keyClick(&box, Qt::Key_Return);
    }

    GQUIUnitSpinBox box;
};
}  // namespace

TEST_F(UnitSpinBox, TakesAnyUnitAndShowsTheDefaultOne)
{
    struct Case
    {
        int32_t unit;
        const char* typed;
        double points;
        const char* shown;
    };
    const Case cases[] = {
        {cMillimetres, "3 mm", 3 * 72 / 25.4, "3 mm"},
        {cMillimetres, "3", 3 * 72 / 25.4, "3 mm"},
        {cMillimetres, "2pt", 2, "0.706 mm"},
        {cMillimetres, "0.125in", 9, "3.175 mm"},
        {cMillimetres, ".5\"", 36, "12.7 mm"},
        {cMillimetres, "1,5 CM", 15 * 72 / 25.4, "15 mm"},
        {cMillimetres, "1p6", 18, "6.35 mm"},
        {cPicas, "20pt", 20, "1p8"},
        {cPicas, "p6", 6, "0p6"},
        {cPicas, "2", 24, "2p0"},
        {cPicas, "3 mm", 3 * 72 / 25.4, "0p8.504"},
        {cPicas, "11.9999pt", 11.9999, "1p0"},
        {cInches, "1p", 12, "0.1667 in"},
        {cCentimetres, " 1 cm ", 72 / 2.54, "1 cm"},
        {cPoints, "+1.25", 1.25, "1.25 pt"},
        // Beyond the range: the nearest within it.
        {cPoints, "1441", 1440, "1440 pt"},
        {cInches, "-1", 0, "0 in"},
        {cMillimetres, "999999p", 1440, "508 mm"},
        // No lengths: letters that lead nowhere are not let in, and what is left over is taken back.
        {cPoints, "x7y", 7, "7 pt"},
        {cPoints, "m", 9, "9 pt"},
        {cPoints, "", 9, "9 pt"},
        {cPoints, "p", 9, "9 pt"},
        {cPoints, "4 m", 9, "9 pt"},
    };
    for (const Case& test : cases) {
        SetDefaultUnitCode(test.unit);
        box.SetPoints(9);
        Type(test.typed);
        EXPECT_NEAR(box.GetPoints(), test.points, 1e-6) << test.typed;
        EXPECT_EQ(box.text(), QString::fromUtf8(test.shown)) << test.typed;
    }
}

TEST_F(UnitSpinBox, ReadsBackWhatItShowsInALocaleWithACommaAndKeepsTheLengthUntouched)
{
    box.setLocale(QLocale(QLocale::German, QLocale::Germany));
    for (const int32_t unit : {cPoints, cPicas, cInches, cCentimetres, cMillimetres}) {
        SetDefaultUnitCode(unit);
        box.SetPoints(1234.567891);
        QTest::keyClick(&box, Qt::Key_Return);
        EXPECT_DOUBLE_EQ(box.GetPoints(), 1234.567891) << box.text().toStdString();
        Type(box.text().toUtf8().constData());
        EXPECT_NEAR(box.GetPoints(), 1234.567891, 0.02) << box.text().toStdString();
    }
    EXPECT_EQ(box.text(), "435,528 mm"_q);
}

TEST_F(UnitSpinBox, ShowsTheRangeWhileATextBeyondItIsTyped)
{
    box.SetRangePoints(0, 55);
    box.selectAll();
    QTest::keyClicks(&box, "55"_q);
    EXPECT_FALSE(QToolTip::text().contains("55"_q));
    QTest::keyClicks(&box, "0"_q);
    EXPECT_TRUE(QToolTip::text().contains("0 pt to 55 pt"_q)) << QToolTip::text().toStdString();
}

TEST_F(UnitSpinBox, StepsToWholeStepsOfTheUnit)
{
    SetDefaultUnitCode(cMillimetres);
    box.SetPoints(ToPoints(3.2, cMillimetres));
    const QSignalSpy changes(&box, &GQUIUnitSpinBox::PointsChanged);
    const std::pair<Qt::Key, const char*> cases[] = {
        {Qt::Key_Up, "4 mm"}, {Qt::Key_Up, "5 mm"}, {Qt::Key_Down, "4 mm"}, {Qt::Key_PageDown, "0 mm"}};
    for (const auto& [key, shown] : cases) {
        QTest::keyClick(&box, key);
        EXPECT_EQ(box.text(), QString::fromUtf8(shown));
    }
    EXPECT_EQ(changes.count(), 4);
    SetDefaultUnitCode(cPicas);
    QTest::keyClick(&box, Qt::Key_Up);
    EXPECT_EQ(box.text(), "0p1"_q);
}

TEST_F(UnitSpinBox, StaysBlankUntilALengthIsGiven)
{
    box.SetRangePoints(0.5, 72);
    box.SetBlank();
    Type("");
    EXPECT_TRUE(box.IsBlank());
    EXPECT_EQ(box.text(), QString());
    Type("4");
    EXPECT_EQ(box.GetPoints(), 4);
    Type("");
    EXPECT_EQ(box.text(), "4 pt"_q);

    box.SetBlank();
    QTest::keyClick(&box, Qt::Key_Up);
    EXPECT_EQ(box.text(), "1 pt"_q);
    box.SetRangePoints(0.01, 72);
    SetDefaultUnitCode(cInches);
    Type("0");
    EXPECT_EQ(box.text(), "0.0001 in"_q);
}
