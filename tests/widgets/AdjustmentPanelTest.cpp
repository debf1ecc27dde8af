#include "foundation/core/GUnitSupport.h"
#include "tests/support/Test.h"
#include "widgets/GCUSPDFSettingsAdjWdt.h"
#include "widgets/GQUIUnitSpinBox.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QMenu>
#include <QTest>

namespace
{
using Panel = GCUSPDFSettingsAdjWdt;

// "Trim=true MarkWeight=1"
Panel::Values ToValues(const QString& text)
{
    Panel::Values values;
    if (text.isEmpty())
        return values;
    for (const QString& entry : text.split(QLatin1Char(' ')))
        values.Insert(entry.section(QLatin1Char('='), 0, 0).toLatin1(), entry.section(QLatin1Char('='), 1));
    return values;
}

QString ToText(const Panel::Values& values)
{
    QStringList entries;
    for (const auto& entry : values)
        entries << QString::fromLatin1(entry.key) + QLatin1Char('=') + entry.value;
    entries.sort();
    return entries.join(QLatin1Char(' '));
}

QCheckBox* FindBox(QWidget* panel, const char* text)
{
    for (QCheckBox* box : panel->findChildren<QCheckBox*>())
        if (box->text().remove(QLatin1Char('&')) == QString::fromUtf8(text))
            return box;
    ADD_FAILURE() << "no check box " << text;
    return nullptr;
}

void Click(QWidget* panel, const char* text)
{
    QCheckBox* box = FindBox(panel, text);
    QTest::mouseClick(box, Qt::LeftButton, {}, {8, box->height() / 2});
}

// The fields in the order on screen: offset, then top, bottom, inside, outside.
GQUIUnitSpinBox* GetField(QWidget* panel, int number)
{
    return panel->findChildren<GQUIUnitSpinBox*>().at(number);
}

void Type(QWidget* panel, int number, const char* text)
{
    GetField(panel, number)->setFocus();
    GetField(panel, number)->selectAll();
    if (*text == '\b')
        QTest::keyClick(GetField(panel, number), Qt::Key_Backspace);
    else
        QTest::keyClicks(GetField(panel, number), QString::fromUtf8(text));
}

void ClickChain(QWidget* panel)
{
    for (QAbstractButton* button : panel->findChildren<QAbstractButton*>())
        if (button->text().isEmpty() && button->isCheckable())
            QTest::mouseClick(button, Qt::LeftButton);
}

// Chooses the last entry of a control's context menu.
void BringBack(QWidget* panel, QWidget* control)
{
    QContextMenuEvent event(QContextMenuEvent::Mouse,
                            control->mapTo(panel, QPoint(8, control->height() / 2)));
    if (qobject_cast<GQUIUnitSpinBox*>(control) != nullptr)
        QApplication::sendEvent(control, &event);
    else
        QApplication::sendEvent(panel, &event);
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(menu->actions().last()->text(), "As the job options say"_q);
    menu->actions().last()->trigger();
    menu->close();
}

class TipCounter : public QObject
{
public:
    explicit TipCounter(QWidget& widget) { widget.installEventFilter(this); }

    int count = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        count += event->type() == QEvent::ToolTipChange ? 1 : 0;
        return false;
    }
};

constexpr char cMarksOff[] = "Bleed=false ColorBars=false PageInfo=false PrinterRegistration=false ";
constexpr char cEqualBleeds[] =
    "BleedBottomValue=5 BleedChoice=1 BleedInsideValue=5 BleedOutsideValue=5 BleedTopValue=5";
}  // namespace

TEST(AdjustmentPanel, ChangesNoValueThatTheUserLeavesAlone)
{
    const QString cases[] = {
        QString(),
        "PrinterMarks=true"_q,
        "Other=1 PrinterMarks=true Trim=false"_q,
        "PrinterMarks=yes Trim=TRUE"_q,
        "BleedChoice=0 BleedTopValue=-1"_q,
        "BleedChoice=2 BleedInsideValue=8.503937007874017 BleedTopValue=nan"_q,
        "BleedBottomValue=1e9 BleedChoice=x BleedTopValue=0"_q,
        "BleedSlugArea=false PrintSpreads=maybe"_q,
        "MarkOffset=0 MarkWeight=7"_q,
        "MarkOffset=0.001 MarkWeight=x"_q,
        "MarkOffset=5000 MarkWeight=0"_q,
    };
    for (const int32_t unit : {GUnitSupport::cPicas, GUnitSupport::cMillimetres}) {
        GUnitSupport::SetDefaultUnitCode(unit);
        Panel panel;
        for (const QString& text : cases) {
            Panel::Values values = ToValues(text);
            panel.Load(values);
            panel.Store(values);
            EXPECT_EQ(ToText(values), text);
        }
    }
    GUnitSupport::SetDefaultUnitCode(GUnitSupport::cPoints);
}

TEST(AdjustmentPanel, StoresWhatTheUserChanges)
{
    using Action = std::function<void(QWidget*)>;
    const auto click = [](const char* text) { return [text](QWidget* panel) { Click(panel, text); }; };
    const auto type = [](int field, const char* text) {
        return [field, text](QWidget* panel) { Type(panel, field, text); };
    };
    const auto back = [](const char* text) {
        return [text](QWidget* panel) { BringBack(panel, FindBox(panel, text)); };
    };
    const auto areEmpty = [](QWidget* panel) {
        EXPECT_EQ(GetField(panel, 1)->text() + GetField(panel, 2)->text(), QString());
    };
    const auto both = [](const Action& first, const Action& second) {
        return [first, second](QWidget* panel) {
            first(panel);
            second(panel);
        };
    };
    const QString marksOff = QString::fromLatin1(cMarksOff);
    const QString equalBleeds = QString::fromLatin1(cEqualBleeds);
    const std::tuple<QString, Action, QString> cases[] = {
        // A mark that nothing is known about is first turned on, and nothing is said about the others.
        {{}, click("Crop"), "Trim=true"_q},
        {"Trim=true"_q, click("Crop"), "Trim=false"_q},
        {"PrinterMarks=true"_q, click("Crop"),
         "Bleed=true ColorBars=true PageInfo=true PrinterMarks=false PrinterRegistration=true Trim=false"_q},
        {"PrinterMarks=false "_q + marksOff + "Trim=true"_q, click("All Printer's Marks"),
         "Bleed=true ColorBars=true PageInfo=true PrinterMarks=true PrinterRegistration=true Trim=true"_q},
        {"PrinterMarks=true"_q, click("All Printer's Marks"),
         "Bleed=false ColorBars=false PageInfo=false PrinterMarks=false PrinterRegistration=false Trim=false"_q},
        {{},
         [](QWidget* panel) { QTest::keyClick(panel->findChild<QComboBox*>(), Qt::Key_End); },
         "MarkWeight=2"_q},
        {"MarkOffset=6"_q, type(0, "12"), "MarkOffset=12"_q},
        // An emptied length is left to the job options.
        {"MarkOffset=6"_q, type(0, "\b"), {}},
        {"BleedBottomValue=1e9 BleedChoice=1 BleedTopValue=4"_q, type(1, "\b"),
         "BleedBottomValue=1e9 BleedChoice=1"_q},
        {equalBleeds, type(2, "\b"), "BleedChoice=1"_q},
        // Own lengths count under the own choice only.
        {{}, type(1, "5"), equalBleeds},
        {"BleedChoice=1 BleedTopValue=1"_q, type(2, "5"),
         "BleedBottomValue=5 BleedChoice=1 BleedTopValue=1"_q},
        {equalBleeds, type(3, "6.5 pt"), QString(equalBleeds).replace("Value=5"_q, "Value=6.5"_q)},
        {"BleedChoice=1 BleedTopValue=5"_q, ClickChain, equalBleeds},
        {"BleedBottomValue=5 BleedChoice=1"_q, ClickChain, equalBleeds},
        {"BleedChoice=1 BleedTopValue=5"_q,
         both(both(type(2, "4 m"), ClickChain),
              [](QWidget* panel) { EXPECT_EQ(GetField(panel, 2)->text(), "4 m"_q); }),
         "BleedBottomValue=4 BleedChoice=1 BleedTopValue=5"_q},
        {equalBleeds,
         both(both(type(2, "4 m"), type(3, "6")),
              [](QWidget* panel) { EXPECT_EQ(GetField(panel, 2)->text(), "4 m"_q); }),
         "BleedBottomValue=4 BleedChoice=1 BleedInsideValue=6 BleedOutsideValue=6 BleedTopValue=6"_q},
        {equalBleeds, both(both(type(2, "4 m"), type(3, "6")), type(2, "7")),
         QString(equalBleeds).replace("Value=5"_q, "Value=7"_q)},
        {QString(equalBleeds).remove("BleedChoice=1 "_q), ClickChain,
         QString(equalBleeds).remove("BleedChoice=1 "_q)},  // opened, it changes nothing
        {"BleedChoice=2 BleedTopValue=1"_q, ClickChain, "BleedChoice=2 BleedTopValue=1"_q},
        {equalBleeds, both(ClickChain, type(3, "6pt")),
         QString(equalBleeds).replace("InsideValue=5"_q, "InsideValue=6"_q)},
        {"BleedChoice=1 BleedTopValue=1"_q, click("Use Document Bleed Settings"),
         "BleedChoice=2 BleedTopValue=1"_q},
        {"BleedChoice=2 BleedTopValue=1"_q,
         // The first is not open to the user.
         both(both(type(1, "5"), click("Use Document Bleed Settings")),
              [](QWidget* panel) { EXPECT_TRUE(GetField(panel, 1)->isEnabled()); }),
         "BleedChoice=1 BleedTopValue=1"_q},
        // Everything can be brought back to the job options.
        {"Trim=true"_q, back("Crop"), {}},
        {"PrinterMarks=true"_q, back("Crop"),
         "Bleed=true ColorBars=true PageInfo=true PrinterRegistration=true"_q},
        {"Bleed=true PrinterMarks=false"_q, back("All Printer's Marks"), {}},
        {"BleedChoice=2"_q, back("Use Document Bleed Settings"), {}},
        // Lengths that don't count are not shown.
        {"BleedBottomValue=5 BleedChoice=1 BleedTopValue=4"_q,
         both(back("Use Document Bleed Settings"), areEmpty), "BleedBottomValue=5 BleedTopValue=4"_q},
        {"BleedBottomValue=5 BleedTopValue=4"_q,
         both(areEmpty, [](QWidget* panel) { EXPECT_TRUE(GetField(panel, 1)->isEnabled()); }),
         "BleedBottomValue=5 BleedTopValue=4"_q},
        {"MarkWeight=2"_q, [](QWidget* panel) { BringBack(panel, panel->findChild<QComboBox*>()); }, {}},
        {"MarkOffset=6"_q, [](QWidget* panel) { BringBack(panel, GetField(panel, 0)); }, {}},
        {{}, click("Include Slug Area (For Bleed)"), "BleedSlugArea=true"_q},
        {"PrintSpreads=true"_q, click("Print Spreads"), "PrintSpreads=false"_q},
    };
    int number = 0;
    for (const auto& [before, action, after] : cases) {
        SCOPED_TRACE(number++);
        Panel panel;
        panel.show();
        Panel::Values values = ToValues(before);
        panel.Load(values);
        action(&panel);
        panel.Store(values);
        EXPECT_EQ(ToText(values), after);
        panel.Load(values);
        Panel::Values again = ToValues(before);
        panel.Store(again);
        EXPECT_EQ(ToText(again), after) << "not all of it is shown again";
    }
}

// However many values are new, and whatever values the fields had.
TEST(AdjustmentPanel, LoadingShowsTheValuesAndMakesEachTipOnce)
{
    Panel panel;
    panel.Load(ToValues(QString::fromLatin1(cEqualBleeds)));
    TipCounter tips(*GetField(&panel, 0));
    const QString values =
        "BleedBottomValue=2 BleedChoice=2 BleedInsideValue=3 BleedTopValue=1 MarkOffset=4 Trim=true"_q;
    panel.Load(ToValues(values));
    EXPECT_EQ(tips.count, 1);
    Panel::Values stored;
    panel.Store(stored);
    EXPECT_EQ(ToText(stored), values);
    EXPECT_EQ(FindBox(&panel, "Use Document Bleed Settings")->checkState(), Qt::Checked);
}

TEST(AdjustmentPanel, LeavesTheBleedMarkAloneWhereItIsNotOffered)
{
    Panel panel;
    panel.Load(ToValues("Bleed=true PrinterMarks=false"_q));
    panel.SetShown(Panel::Control::cBleedMark, false);
    EXPECT_EQ(panel.findChild<QCheckBox*>()->checkState(), Qt::Unchecked);
    panel.show();
    const QString before = QString::fromLatin1(cMarksOff) + "Trim=false"_q;
    Panel::Values values = ToValues(before);
    panel.Load(values);
    Click(&panel, "All Printer's Marks");
    auto* all = panel.findChild<QCheckBox*>();
    EXPECT_EQ(all->checkState(), Qt::Checked);
    panel.Store(values);
    EXPECT_EQ(ToText(values),
              "Bleed=false ColorBars=true PageInfo=true PrinterRegistration=true Trim=true"_q);
    Click(&panel, "All Printer's Marks");
    panel.Store(values);
    EXPECT_EQ(ToText(values), before);
}

TEST(AdjustmentPanel, TheTabKeyGoesDownTheLeftSideAndThenTheRight)
{
    Panel panel;
    panel.Load(ToValues("BleedChoice=1"_q));
    panel.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&panel));
    panel.findChild<QCheckBox*>()->setFocus();
    QPoint last;
    for (int stop = 0; stop < 16; ++stop) {
        const QWidget* widget = panel.focusWidget();
        const QPoint place = widget->mapTo(&panel, widget->rect().center());
        EXPECT_TRUE(place.y() > last.y() || place.x() > last.x()) << stop;
        last = place;
        QTest::keyClick(panel.focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(panel.focusWidget(), panel.findChild<QCheckBox*>());
}
