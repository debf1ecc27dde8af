#include "DialogFixture.h"
#include "widgets/GCUSPDFSettingsAdjWdt.h"
#include "widgets/GCUSTranslation.h"
#include "widgets/GQUIUnitSpinBox.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QToolButton>

#include <cmath>
#include <set>

class KeyboardTest : public DialogFixture
{
protected:
    // The texts with a mnemonic, and all others, of what is on the screen.
    QStringList GetVisibleTexts() const
    {
        QStringList texts;
        for (const auto* button : mDialog->findChildren<QAbstractButton*>())
            texts.append(button->isVisible() ? button->text() : QString());
        for (const auto* label : mDialog->findChildren<QLabel*>())
            texts.append(label->isVisible() ? label->text() : QString());
        texts.removeAll(QString());
        return texts;
    }

    QList<QWidget*> GetFocusStops() const
    {
        QList<QWidget*> stops;
        for (int count = 0; count < 100 && !stops.contains(mDialog->focusWidget()); ++count) {
            stops.append(mDialog->focusWidget());
            WindowDriver::Click(Qt::Key_Tab);
        }
        return stops;
    }

    // The middle of an empty check box.
    QColor GetIndicator()
    {
        const QImage box = Find("Include File Package").grab().toImage();
        return box.pixel(8, box.height() / 2);
    }

    // How much brighter one grey is than another.
    static double GetContrast(const QColor& bright, const QColor& dark)
    {
        const auto getLight = [](const QColor& grey) { return std::pow(grey.valueF(), 2.2) + 0.05; };
        return getLight(bright) / getLight(dark);
    }

    void SendAlt(QEvent::Type type, bool isRepeated)
    {
        QKeyEvent event(type, Qt::Key_Alt, Qt::AltModifier, QString(), isRepeated);
        QApplication::sendEvent(mDialog->focusWidget(), &event);
    }
};

TEST_F(KeyboardTest, AltTurnsOKIntoRemoveAndGivesTheFocusBack)
{
    Add("Press", "Press");
    Open();
    Find("Options").click();
    Find("Range:").click();
    for (QWidget* widget : GetFocusStops()) {
        widget->setFocus();
        SendAlt(QEvent::KeyPress, true);
        EXPECT_EQ(ok->text(), "OK"_q);
        WindowDriver::Press(Qt::Key_Alt, Qt::AltModifier);
        EXPECT_EQ(ok->text(), "Remove"_q) << widget->metaObject()->className();
        SendAlt(QEvent::KeyPress, true);
        EXPECT_EQ(mDialog->focusWidget(), mDialog.get());
        SendAlt(QEvent::KeyRelease, true);
        EXPECT_EQ(ok->text(), "Remove"_q);
        WindowDriver::Release(Qt::Key_Alt);
        EXPECT_EQ(ok->text(), "OK"_q) << widget->metaObject()->className();
        EXPECT_EQ(mDialog->focusWidget(), widget);
    }
    const std::pair<QWidget*, Qt::Key> clicks[] = {{list, Qt::Key_Return}, {ok, Qt::Key_Space}};
    for (const auto& [focus, key] : clicks) {
        WindowDriver::Press(Qt::Key_Alt, Qt::AltModifier);  // its release gets lost
        focus->setFocus();
        WindowDriver::Click(key);
        EXPECT_EQ(ok->text(), "OK"_q);
        EXPECT_TRUE(party.host.commands.empty()) << "the button showed Remove";
    }
    WindowDriver::Click(Qt::Key_Return);
    EXPECT_EQ(party.host.commands.size(), 1u);
}

TEST_F(KeyboardTest, AltIsLeftToMnemonicsAndLists)
{
    Add("Press", "Press");
    Open();
    range->setFocus();
    WindowDriver::Press(Qt::Key_Alt, Qt::AltModifier);
    WindowDriver::Click(Qt::Key_P, Qt::AltModifier);
    WindowDriver::Release(Qt::Key_Alt);
    EXPECT_TRUE(list->hasFocus());

    WindowDriver::Press(Qt::Key_Alt, Qt::AltModifier);
    WindowDriver::Click(Qt::Key_Down, Qt::AltModifier);
    EXPECT_NE(QApplication::activePopupWidget(), nullptr);
    WindowDriver::Release(Qt::Key_Alt);
    EXPECT_EQ(ok->text(), "OK"_q);
    WindowDriver::Click(Qt::Key_Escape);
    EXPECT_TRUE(mDialog->isVisible());

    WindowDriver::Press(Qt::Key_Alt, Qt::AltModifier);
    QWidget other;
    other.show();
    other.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&other));
    EXPECT_EQ(ok->text(), "OK"_q);
}

TEST_F(KeyboardTest, AltWithEnterRemoves)
{
    Add("a", "A");
    Add("b", "B");
    Open();
    WindowDriver::Press(Qt::Key_Alt, Qt::AltModifier);
    WindowDriver::Click(Qt::Key_Return, Qt::AltModifier);
    EXPECT_EQ(GetList(), "[B]"_q);
    WindowDriver::Click(Qt::Key_Enter, Qt::AltModifier);
    EXPECT_EQ(GetList(), QString());
    EXPECT_FALSE(ok->isEnabled());
    EXPECT_TRUE(mDialog->isVisible());
    EXPECT_TRUE(party.host.commands.empty());
}

// What the system calls the release, and whether it comes at all.
TEST_F(KeyboardTest, WhatTheButtonShowsAtTheClickIsWhatHappens)
{
    constexpr quint32 cAltCode = 64;
    const auto send = [this](QEvent::Type type, int key, Qt::KeyboardModifiers modifiers, quint32 code) {
        QKeyEvent event(type, key, modifiers, code, 0, 0);
        QApplication::sendEvent(mDialog->focusWidget(), &event);
    };
    const Qt::KeyboardModifiers both = Qt::AltModifier | Qt::ShiftModifier;
    const auto click = [this] { QTest::mouseClick(ok, Qt::LeftButton, Qt::AltModifier); };
    const std::tuple<const char*, std::function<void()>, const char*, bool> cases[] = {
        {"Alt goes up as Meta",
         [&] {
             send(QEvent::KeyPress, Qt::Key_Alt, Qt::AltModifier, cAltCode);
             send(QEvent::KeyPress, Qt::Key_Shift, both, 50);
             EXPECT_EQ(ok->text(), "Remove"_q);
             send(QEvent::KeyRelease, Qt::Key_Meta, both, cAltCode);
         },
         "OK", false},
        {"another key goes up",
         [&] {
             send(QEvent::KeyPress, Qt::Key_Alt, Qt::AltModifier, cAltCode);
             send(QEvent::KeyPress, Qt::Key_Meta, Qt::AltModifier, 133);
             send(QEvent::KeyRelease, Qt::Key_Meta, Qt::AltModifier, 133);
             click();
         },
         "Remove", true},
        {"Meta that is no Alt", [&] { send(QEvent::KeyPress, Qt::Key_Meta, Qt::NoModifier, cAltCode); }, "OK",
         false},
        {"Alt goes up under the mouse",
         [&] {
             send(QEvent::KeyPress, Qt::Key_Alt, Qt::AltModifier, cAltCode);
             QTest::mousePress(ok, Qt::LeftButton, Qt::AltModifier);
             send(QEvent::KeyRelease, Qt::Key_Alt, Qt::AltModifier, cAltCode);
             QTest::mouseRelease(ok, Qt::LeftButton);
         },
         "OK", false},
        {"the release got lost",
         [&] {
             send(QEvent::KeyPress, Qt::Key_Alt, Qt::AltModifier, cAltCode);
             QTest::mouseClick(mDialog->windowHandle(), Qt::LeftButton, Qt::NoModifier,
                               ok->mapTo(mDialog.get(), ok->rect().center()));
         },
         "OK", false},
        {"the list's menu, without Alt",
         [&] {
             QContextMenuEvent menu(QContextMenuEvent::Keyboard, {}, list->mapToGlobal({}));
             QApplication::sendEvent(list, &menu);
             WindowDriver::ChooseFromMenu("Remove");
         },
         "OK", true},
    };
    for (const auto& [name, act, text, isRemoved] : cases) {
        SCOPED_TRACE(name);
        HopboxRegistry().Clear();
        Add("a", "A");
        Add("b", "B");
        Open();
        act();
        EXPECT_EQ(ok->text(), QString::fromLatin1(text));
        EXPECT_EQ(list->count(), isRemoved ? 1 : 2);
        EXPECT_TRUE(mDialog->isVisible());
        EXPECT_TRUE(party.host.commands.empty());
    }
}

// Enter held down is one click: neither one Hopbox after the other goes, nor an export starts by the Enter
// that opened the dialog.
TEST_F(KeyboardTest, EnterHeldDownCountsOnce)
{
    for (const char* name : {"a", "b", "c", "d"})
        Add(name, name);
    Open();
    const auto hold = [this](Qt::KeyboardModifiers modifiers) {
        for (int repeat = 0; repeat < 5 && mDialog->isVisible(); ++repeat) {
            QKeyEvent event(QEvent::KeyPress, Qt::Key_Return, modifiers, "\r"_q, true);
            QApplication::sendEvent(mDialog->focusWidget(), &event);
        }
    };
    for (QWidget* focus : {static_cast<QWidget*>(list), static_cast<QWidget*>(ok)}) {
        focus->setFocus();
        hold(Qt::NoModifier);
        EXPECT_TRUE(mDialog->isVisible());
        WindowDriver::Press(Qt::Key_Alt, Qt::AltModifier);
        focus->setFocus();  // as a click on "Remove" leaves it
        hold(Qt::AltModifier);
        const int count = list->count();
        WindowDriver::Press(Qt::Key_Return, Qt::AltModifier);
        hold(Qt::AltModifier);
        EXPECT_EQ(list->count(), count - 1);
        WindowDriver::Release(Qt::Key_Alt);
    }
}

TEST_F(KeyboardTest, TheTabKeyGoesDownTheScreenAndEveryStopHasAName)
{
    Add("Press", "Press");
    Open();
    Find("Options").click();
    Find("Range:").click();
    list->setFocus();
    const QList<QWidget*> stops = GetFocusStops();
    EXPECT_GT(stops.size(), 10);
    QPoint last;
    for (QWidget* widget : stops) {
        const QString name = QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name);
        EXPECT_FALSE(name.isEmpty()) << widget->metaObject()->className();
        if (!mDialog->findChild<GCUSPDFSettingsAdjWdt*>()->isAncestorOf(widget)) {
            const QPoint place = widget->mapTo(mDialog.get(), QPoint(0, 0));
            EXPECT_TRUE(place.y() > last.y() + 5 || place.x() > last.x()) << name.toStdString();
            last = place;
        }
    }
}

TEST_F(KeyboardTest, InEachLanguageNothingIsCutOrJumpsAndMnemonicsAreUnique)
{
    for (const char* language : {"", "deDE", "frFR"}) {
        SCOPED_TRACE(language);
        EXPECT_EQ(GCUSTranslation::Load(GPathName(
                      QStringLiteral(HOPBOX_TRANSLATIONS "/Plugin_%1.qm").arg(QLatin1String(language)))),
                  *language != '\0');
        HopboxRegistry().Clear();
        Add("Press", "A text that is longer than the list of the dialog can show at once, by far, by far");
        Open();
        const QSize closed = mDialog->size();
        mDialog->findChild<QToolButton*>()->click();
        QTest::qWait(0);
        EXPECT_EQ(mDialog->width(), closed.width());
        EXPECT_GT(mDialog->height(), closed.height());
        std::set<QChar> mnemonics;
        for (const QString& text : GetVisibleTexts()) {
            const int mark = text.indexOf(QLatin1Char('&'));
            EXPECT_TRUE(mark < 0 || mnemonics.insert(text.at(mark + 1).toLower()).second)
                << text.toStdString();
        }
        for (const QWidget* widget : mDialog->findChildren<QWidget*>()) {
            const bool hasText =
                qobject_cast<const QLabel*>(widget) || qobject_cast<const QAbstractButton*>(widget);
            EXPECT_TRUE(!hasText || !widget->isVisible() || widget->width() >= widget->sizeHint().width())
                << widget->metaObject()->className();
        }
        const int width = mDialog->width();
        WindowDriver::Press(Qt::Key_Alt, Qt::AltModifier);
        QTest::qWait(0);
        EXPECT_EQ(mDialog->width(), width);
        WindowDriver::Release(Qt::Key_Alt);
    }
    GCUSTranslation::Unload();
}

// Wherever the dialog stands, and however low the screen is for its letters.
TEST_F(KeyboardTest, OKAndCancelStayOnTheScreenAndAllOptionsWithinReach)
{
    Add("Press", "Press");
    Add("Proofs", "Proofs", "UserSettings=false");
    const QFont font = QApplication::font();
    for (const int size : {9, 22}) {
        SCOPED_TRACE(size);
        QFont large = font;
        large.setPointSize(size);
        QApplication::setFont(large);
        Open();
        const QRect room = mDialog->screen()->availableGeometry();
        const int centre = std::max(room.center().x(), mDialog->width() / 2);
        EXPECT_NEAR(mDialog->frameGeometry().center().x(), centre, 2) << "the window manager's choice";
        mDialog->move(room.right() - mDialog->width() / 2, room.bottom() - mDialog->height());
        const auto isOnScreen = [&](const QWidget& widget) {
            const QRect place(widget.mapToGlobal({}), widget.size());
            return room.top() <= place.top() && place.bottom() <= room.bottom();
        };
        Find("Options").click();
        EXPECT_TRUE(QTest::qWaitFor([&] { return isOnScreen(*ok) && isOnScreen(Find("Cancel")); }));
        EXPECT_LE(mDialog->frameGeometry().height(), room.height());
        EXPECT_GE(mDialog->frameGeometry().top(), room.top());
        EXPECT_LE(mDialog->frameGeometry().right(), std::max(room.right(), mDialog->frameGeometry().width()));
        auto* panel = mDialog->findChild<GCUSPDFSettingsAdjWdt*>();
        EXPECT_EQ(panel->findChild<QScrollArea*>()->horizontalScrollBar()->maximum(), 0);
        for (GQUIUnitSpinBox* field : panel->findChildren<GQUIUnitSpinBox*>()) {
            field->setFocus(Qt::ShortcutFocusReason);
            QTest::qWait(0);
            EXPECT_TRUE(panel->rect().contains(QRect(field->mapTo(panel, {}), field->size())));
        }
        const QSize most = panel->sizeHint();
        list->setCurrentIndex(1);  // without options
        QTest::qWait(0);
        EXPECT_EQ(panel->sizeHint(), most);
        list->setCurrentIndex(0);
        EXPECT_TRUE(QTest::qWaitFor([&] { return panel->sizeHint() == most && isOnScreen(*ok); }));
        Find("Options").click();
        EXPECT_TRUE(QTest::qWaitFor([&] { return isOnScreen(*ok); }));
        EXPECT_EQ(panel->sizeHint(), most);
    }
    QApplication::setFont(font);
}

TEST_F(KeyboardTest, AnEmptyCheckBoxIsSeenInDarkColours)
{
    Add("Press", "Press");
    const QPalette before = QApplication::palette();
    QApplication::setPalette(QPalette(QColor(50, 50, 53)));
    Open();
    EXPECT_GT(GetContrast(GetIndicator(), QColor(50, 50, 53)), 2.9);
    QApplication::setPalette(QPalette(QColor(230, 230, 230)));
    Open();
    EXPECT_EQ(GetIndicator(), QColor(Qt::white));
    QApplication::setPalette(before);
}

// What screen readers are told that the controls can do.
static QSet<QString> GetActionTexts(const QWidget& dialog)
{
    QSet<QString> texts;
    for (QWidget* widget : dialog.findChildren<QWidget*>())
        if (auto* actions = QAccessible::queryAccessibleInterface(widget)->actionInterface())
            for (const QString& action : actions->actionNames())
                texts += {actions->localizedActionName(action), actions->localizedActionDescription(action)};
    texts.remove(QString());
    return texts;
}

TEST_F(KeyboardTest, QtsOwnTextsAreInTheLanguageOfTheDialog)
{
    Add("Press", "Press");
    Open();
    const QSet<QString> english = GetActionTexts(*mDialog);
    const struct
    {
        const char *language, *wanted, *keys;
    } languages[] = {{"deDE", "Alles auswählen", "Strg+Umschalt+Z"},
                     {"frFR", "Tout sélectionner", "Ctrl+Maj+Z"}};
    for (const auto& [language, wanted, keys] : languages) {
        EXPECT_EQ(GCUSTranslation::Load(GPathName(
                      QStringLiteral(HOPBOX_TRANSLATIONS "/Plugin_%1.qm").arg(QLatin1String(language)))),
                  *language != '\0');
        EXPECT_EQ(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z).toString(QKeySequence::NativeText),
                  QLatin1String(keys));
        Open();
        const QSet<QString> untranslated = GetActionTexts(*mDialog).intersect(english);
        EXPECT_TRUE(untranslated.isEmpty()) << untranslated.values().join(QLatin1Char('\n')).toStdString();
        mDialog->findChild<QToolButton*>()->click();
        range->setEnabled(true);
        range->setText("1"_q);
        auto* length = mDialog->findChild<GQUIUnitSpinBox*>();
        length->SetPoints(1);
        for (QWidget* field : {static_cast<QWidget*>(range), static_cast<QWidget*>(length)}) {
            QContextMenuEvent event(QContextMenuEvent::Keyboard, {}, field->mapToGlobal({}));
            QApplication::sendEvent(field, &event);
            WindowDriver::ChooseFromMenu(wanted);
        }
    }
    GCUSTranslation::Unload();
}

TEST_F(KeyboardTest, TheCallersOptionsDecideWhatIsOffered)
{
    Add("Press", "Press");
    const std::pair<DialogOption, const char*> controls[] = {
        {DialogOption::cSlugArea, "Include Slug Area (For Bleed)"},
        {DialogOption::cSpreads, "Print Spreads"},
        {DialogOption::cBleedMark, "Bleed"},
        {DialogOption::cMarkWeight, "Weight:"},
        {DialogOption::cFilePackage, "Include File Package"}};
    for (const auto& left : controls) {
        DialogOptions options = GetAllOptions();
        options[left.first] = false;
        Open(options);
        Find("Options").click();
        for (const auto& [option, text] : controls)
            EXPECT_EQ(Find<QWidget>(text).isVisible(), option != left.first) << text;
    }
    Open({});
    Find("Options").click();
    for (const auto& [option, text] : controls)
        EXPECT_FALSE(Find<QWidget>(text).isVisible()) << text;
    EXPECT_TRUE(Find("Range:").isEnabled());
    Open({{DialogOption::cPageRange, false}});
    for (const char* text : {"All", "Range:"})
        EXPECT_FALSE(Find(text).isEnabled()) << text;
    EXPECT_TRUE(Find("All").isChecked());
    EXPECT_FALSE(range->isEnabled());
}
