#include "foundation/core/GUnitSupport.h"
#include "tests/support/Test.h"
#include "widgets/GQUIUnitSpinBox.h"

#include <QAccessible>
#include <QApplication>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>
#include <QToolTip>
#include <QWheelEvent>

#include <cmath>
#include <vector>

using namespace GUnitSupport;

class UnitSpinBox : public testing::Test
{
protected:
    UnitSpinBox()
    {
        box.setLocale(QLocale::c());
        box.SetPoints(9);
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        box.setFocus();
    }

    ~UnitSpinBox() override { SetDefaultUnitCode(cPoints); }

    void Retype(const char* text)
    {
        box.selectAll();
        QTest::keyClick(&box, Qt::Key_Delete);
        QTest::keyClicks(&box, QString::fromUtf8(text));
    }

    void Type(const char* text)
    {
        Retype(text);
        QTest::keyClick(&box, Qt::Key_Return);
    }

    QWidget window;
    QLineEdit other{&window};
    GQUIUnitSpinBox box{&window};
};

TEST_F(UnitSpinBox, TakesAnyUnitAndShowsTheDefaultOne)
{
    const std::tuple<int32_t, const char*, double, const char*> cases[] = {
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
        {cPoints, "x7y", 7, "7 pt"},  // what no length holds is not let in
    };
    for (const auto& [unit, typed, points, shown] : cases) {
        SetDefaultUnitCode(unit);
        box.SetPoints(9);
        Type(typed);
        EXPECT_NEAR(box.GetPoints().value_or(-1), points, 1e-6) << typed;
        EXPECT_EQ(box.text(), QString::fromUtf8(shown)) << typed;
    }
}

TEST_F(UnitSpinBox, LeavesATextThatIsNoLengthAndCorrectsOneBeyondTheRangeVisibly)
{
    const std::tuple<int32_t, const char*, const char*> cases[] = {
        {cPoints, "4 m", "4 m"},         {cPoints, "p", "p"},         {cPoints, "-", "-"},
        {cPoints, "3mmm", "3mmm"},       {cPoints, "1.2.3", "1.2.3"}, {cPoints, "12345678901", "12345678901"},
        {cPoints, "1441", "1440 pt"},    {cPoints, "-3", "0 pt"},     {cInches, "-1", "0 in"},
        {cMillimetres, "599", "508 mm"},
    };
    for (const auto& [unit, typed, left] : cases)
        for (const bool withEnter : {true, false}) {
            SCOPED_TRACE(typed);
            SetDefaultUnitCode(unit);
            box.SetPoints(9);
            box.setFocus();
            QTest::qWait(0);
            QToolTip::hideText();
            QSignalSpy corrections(&box, &GQUIUnitSpinBox::Corrected);
            Retype(typed);
            EXPECT_FALSE(box.IsAcceptable());
            EXPECT_TRUE(corrections.isEmpty());
            QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
            if (withEnter)
                QApplication::sendEvent(&box, &enter);
            else
                other.setFocus();
            EXPECT_TRUE(!withEnter || enter.isAccepted()) << "the dialog would close";
            EXPECT_TRUE(!withEnter || box.GetTextField()->hasSelectedText());
            EXPECT_EQ(box.text(), QString::fromUtf8(left));
            const bool isCorrected = box.text() != QString::fromUtf8(typed);
            EXPECT_EQ(corrections.count(), isCorrected ? 1 : 0);
            EXPECT_EQ(box.IsAcceptable(), isCorrected);
            EXPECT_TRUE(QTest::qWaitFor(
                [&] { return QToolTip::isVisible() && QToolTip::text() == box.GetRangeTip(); }));
            QApplication::sendEvent(&box, &enter);
            EXPECT_EQ(enter.isAccepted(), !isCorrected);
        }
}

// Every way from one length to another is open.
TEST_F(UnitSpinBox, IsEditedInAnyOrder)
{
    using Keys = std::vector<Qt::Key>;
    const std::tuple<Keys, Qt::KeyboardModifier, const char*, std::optional<double>> cases[] = {
        {{Qt::Key_End, Qt::Key_Backspace, Qt::Key_Backspace, Qt::Key_Backspace}, Qt::NoModifier, "9", 9},
        {{Qt::Key_Backspace}, Qt::NoModifier, "", {}},
        {{Qt::Key_X}, Qt::ControlModifier, "", {}},
        {{Qt::Key_5}, Qt::NoModifier, "5", 5},
        {{Qt::Key_Home, Qt::Key_Delete}, Qt::NoModifier, " pt", 9},
        {{Qt::Key_Home, Qt::Key_Delete, Qt::Key_4}, Qt::NoModifier, "4 pt", 4},
        {{Qt::Key_Home, Qt::Key_1}, Qt::NoModifier, "19 pt", 19},
        {{Qt::Key_End, Qt::Key_Left, Qt::Key_Backspace, Qt::Key_P}, Qt::NoModifier, "9 pt", 9},
    };
    for (const auto& [keys, modifier, text, points] : cases) {
        box.SetPoints(9);
        box.selectAll();
        for (const Qt::Key key : keys)
            QTest::keyClick(&box, key, modifier);
        EXPECT_EQ(box.text(), QString::fromUtf8(text));
        EXPECT_EQ(box.GetPoints(), points) << text;
    }
}

TEST_F(UnitSpinBox, ATextThatIsBeingTypedOutlivesAMenuAndAnotherWindow)
{
    Retype("1441");
    QFocusEvent menu(QEvent::FocusOut, Qt::PopupFocusReason);
    QApplication::sendEvent(&box, &menu);
    EXPECT_EQ(box.text(), "1441"_q);
    QWidget another;
    another.show();
    another.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&another));
    EXPECT_EQ(box.text(), "1441"_q);
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    other.setFocus(Qt::ActiveWindowFocusReason);  // as Alt takes the focus within the window
    EXPECT_EQ(box.text(), "1440 pt"_q);
    QToolTip::hideText();
    box.setFocus();
    Retype("1441");
    window.hide();
    QTest::qWait(10);
    EXPECT_FALSE(QToolTip::isVisible()) << "a tip of a window that is closed";
}

TEST_F(UnitSpinBox, ReadsBackWhatItShowsInALocaleWithACommaAndKeepsTheLengthUntouched)
{
    box.setLocale(QLocale(QLocale::German, QLocale::Germany));
    for (const int32_t unit : {cPoints, cPicas, cInches, cCentimetres, cMillimetres}) {
        SetDefaultUnitCode(unit);
        box.SetPoints(1234.567891);
        QTest::keyClick(&box, Qt::Key_Return);
        EXPECT_DOUBLE_EQ(*box.GetPoints(), 1234.567891) << box.text().toStdString();
        Type(box.text().toUtf8().constData());
        EXPECT_NEAR(*box.GetPoints(), 1234.567891, 0.02) << box.text().toStdString();
    }
    EXPECT_EQ(box.text(), "435,528 mm"_q);
}

TEST_F(UnitSpinBox, StepsToWholeStepsOfTheUnit)
{
    SetDefaultUnitCode(cMillimetres);
    box.SetPoints(ToPoints(3.2, cMillimetres));
    const QSignalSpy changes(&box, &GQUIUnitSpinBox::Changed);
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

TEST_F(UnitSpinBox, StepsFromNothingAndShowsAnyLengthThatItIsGiven)
{
    box.SetRangePoints(0.5, 72);
    EXPECT_EQ(box.toolTip(), box.GetRangeTip());
    QContextMenuEvent menu(QContextMenuEvent::Keyboard, {}, box.mapToGlobal({}));
    QApplication::sendEvent(&box, &menu);
    auto* entries = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    EXPECT_FALSE(entries->actions().last()->text().isEmpty());
    entries->close();
    box.SetPoints({});
    QTest::keyClick(&box, Qt::Key_Up);
    EXPECT_EQ(box.text(), "1 pt"_q);
    box.SetPoints(5000);
    QTest::keyClick(&box, Qt::Key_Return);
    EXPECT_EQ(box.text(), "5000 pt"_q);
    EXPECT_TRUE(box.IsAcceptable());
    Retype("80 pt");
    box.SetPoints(80);
    EXPECT_TRUE(box.IsAcceptable());
    QTest::keyClick(&box, Qt::Key_Up);
    EXPECT_EQ(box.text(), "72 pt"_q);
    box.SetRangePoints(0.01, 72);
    SetDefaultUnitCode(cInches);
    Type("0");
    EXPECT_EQ(box.text(), "0.0001 in"_q);
    box.SetPoints(9);
    Retype("0.0001 in");  // rounded to less than the least length
    EXPECT_TRUE(box.IsAcceptable());
    EXPECT_EQ(box.GetPoints(), 0.01);
}

TEST_F(UnitSpinBox, TakesFromAScreenReaderWhatTheUserCouldType)
{
    auto* value = QAccessible::queryAccessibleInterface(&box)->valueInterface();
    const std::pair<double, double> cases[] = {{-5, 0}, {99999, 1440}, {12, 12}, {std::nan(""), 12}};
    for (const auto& [set, taken] : cases) {
        value->setCurrentValue(set);
        EXPECT_EQ(box.GetPoints(), taken);
    }
    box.setEnabled(false);
    value->setCurrentValue(3);
    EXPECT_EQ(box.GetPoints(), 12);
}

TEST_F(UnitSpinBox, AWheelChangesOnlyTheFieldThatIsEdited)
{
    for (const bool isEdited : {true, false}) {
        box.SetPoints(9);
        (isEdited ? static_cast<QWidget*>(&box) : &other)->setFocus();
        ASSERT_EQ(box.hasFocus(), isEdited);
        QWheelEvent wheel(box.rect().center(), box.mapToGlobal(box.rect().center()), {}, {0, 120},
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&box, &wheel);
        EXPECT_EQ(box.GetPoints(), isEdited ? 10 : 9);
        EXPECT_EQ(wheel.isAccepted(), isEdited);
    }
}
