#include "DialogFixture.h"
#include "tests/support/ChildProcess.h"
#include "widgets/GQUIUnitSpinBox.h"
#include "widgets/values/AdjustmentValues.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>

#include <random>

// At each line, offers all Hopboxes to the plug-in, under numbers that it counts up.
CHILD_ROLE(OfferAllAndCount)
{
    while (!HearFromParent().isEmpty())
        for (const GString& key : HopboxRegistry().GetKeys())
            EXPECT_TRUE(HopboxRegistry().ChangeEntry(key, [&](HopboxRegistryEntry& entry) {
                entry.isPlugin = true;
                entry.pdfSettings = QString::number(entry.pdfSettings.toInt() + 1);
            }));
    return testing::Test::HasFailure() ? 1 : 0;
}

// Somebody who knows nothing of the dialog and does anything, while other processes change the registry.
// After each thing done, what the dialog shows is held against what it does.
class MonkeyTest : public DialogFixture, public testing::WithParamInterface<int>
{
protected:
    void Run(unsigned seed, int events)
    {
        mRandom.seed(seed);
        HopboxRegistry().Clear();
        party.host.commands.clear();
        party.alerts.clear();
        Add("a", "Alpha", "UserSettings=true MarkOffset=3 BleedChoice=1 BleedTopValue=4");
        Add("b", "Beta", "UserSettings=true");
        Add("c", "Gamma", "UserSettings=false");
        Open();
        mModifiers = Qt::NoModifier;
        mHeld.clear();
        for (int event = 0; event < events && !HasFailure(); ++event) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << ", event " << event);
            if (!mDialog->isVisible()) {
                Open();
                mModifiers = Qt::NoModifier;
            }
            Observe();
            Act();
            QCoreApplication::processEvents();
            Compare();
        }
        while (QWidget* popup = QApplication::activePopupWidget())
            popup->close();
    }

    // The registry is changed by another process, at any moment.
    void RunBesideAnotherProcess(unsigned seed, int events)
    {
        mOther = std::make_unique<ChildProcess>("OfferAllAndCount"_q, QStringList());
        mChanges = 0;
        Run(seed, events);
        ChangeRegistry();
        mOther->Say("");
        EXPECT_EQ(mOther->WaitForExit(), 0);
        mOther.reset();
        for (const GString& key : HopboxRegistry().GetKeys())
            EXPECT_EQ(HopboxRegistry().GetRecord(key)->entry.pdfSettings, QString::number(mChanges));
    }

private:
    int Draw(int count) { return static_cast<int>(mRandom() % static_cast<unsigned>(count)); }

    template <typename Item>
    Item Draw(std::initializer_list<Item> items)
    {
        return items.begin()[Draw(static_cast<int>(items.size()))];
    }

    QList<QWidget*> GetTargets() const
    {
        QList<QWidget*> targets;
        for (QWidget* widget : mDialog->findChildren<QWidget*>())
            if (widget->isVisible() && widget->window() == mDialog.get())
                targets.append(widget);
        return targets;
    }

    void Act()
    {
        switch (Draw(8)) {
            case 0:
            case 1:
                return PressKey();
            case 2:
                return TurnModifier();
            case 3:
            case 4:
                return UseMouse();
            case 5:
                return TypeText();
            case 6:
                return Paste();
            default:
                return ChangeRegistry();
        }
    }

    void SendKey(QEvent::Type type, int key, const QString& text, bool isRepeated)
    {
        QWidget* target = QApplication::activePopupWidget();
        if (target == nullptr)
            target = mDialog->focusWidget() != nullptr ? mDialog->focusWidget() : mDialog.get();
        QKeyEvent event(type, key, mModifiers, text, isRepeated);
        QApplication::sendEvent(target, &event);
    }

    void PressKey()
    {
        const Qt::Key key = Draw({Qt::Key_Tab, Qt::Key_Backtab, Qt::Key_Return, Qt::Key_Space, Qt::Key_Up,
                                  Qt::Key_Down, Qt::Key_Backspace, Qt::Key_Delete, Qt::Key_Home, Qt::Key_End,
                                  Qt::Key_PageUp, Qt::Key_Escape});
        const bool isRepeated = Draw(3) == 0;
        mWasRepeatedEnter = isRepeated && key == Qt::Key_Return;
        SendKey(QEvent::KeyPress, key, key == Qt::Key_Space ? " "_q : QString(), isRepeated);
        SendKey(QEvent::KeyRelease, key, QString(), isRepeated);
    }

    void TurnModifier()
    {
        const struct
        {
            Qt::Key key;
            Qt::KeyboardModifier modifier;
        } keys[] = {{Qt::Key_Alt, Qt::AltModifier},
                    {Qt::Key_Alt, Qt::AltModifier},
                    {Qt::Key_Shift, Qt::ShiftModifier},
                    {Qt::Key_Control, Qt::ControlModifier}};
        const auto& key = keys[Draw(4)];
        const bool isDown = mModifiers & key.modifier;
        mModifiers.setFlag(key.modifier, !isDown);
        if (Draw(8) > 0)  // the rest gets lost
            SendKey(isDown ? QEvent::KeyRelease : QEvent::KeyPress, key.key, QString(), Draw(5) == 0);
    }

    void UseMouse()
    {
        const QList<QWidget*> targets = GetTargets();
        QWidget* target = Draw(4) == 0 ? ok : targets.at(Draw(targets.size()));
        const QPoint place(Draw(target->width()), Draw(target->height()));
        if (mHeld != nullptr && Draw(2) == 0) {
            QTest::mouseRelease(mHeld, Qt::LeftButton, mModifiers,
                                Draw(4) == 0 ? QPoint(-5, -5) : mHeld->rect().center());
            mHeld.clear();
            return;
        }
        switch (Draw(6)) {
            case 0: {
                QWheelEvent wheel(place, target->mapToGlobal(place), {}, {0, Draw(2) ? 120 : -120},
                                  Qt::NoButton, mModifiers, Qt::NoScrollPhase, false);
                QApplication::sendEvent(target, &wheel);
                return;
            }
            case 1: {
                QContextMenuEvent menu(QContextMenuEvent::Mouse, place, target->mapToGlobal(place),
                                       mModifiers);
                QApplication::sendEvent(target, &menu);
                return;
            }
            case 2:
                QTest::mousePress(target, Qt::LeftButton, mModifiers, place);
                mHeld = target;
                return;
            default:
                if (target == ok && ok->isEnabled() && mShown == "Remove"_q && mModifiers & Qt::AltModifier)
                    mToRemove = list->currentData().toString();
                QTest::mouseClick(target, Qt::LeftButton, mModifiers, place);
        }
    }

    void TypeText()
    {
        const char* text =
            Draw({"5", "2p6", "0.25in", "7 mm", "-3", "4 m", "999", "1,", "2", "9-1", "a", "p"});
        for (const char* letter = text; *letter != '\0'; ++letter)
            SendKey(QEvent::KeyPress, QTest::asciiToKey(*letter), QString(QLatin1Char(*letter)), false);
    }

    void Paste()
    {
        QGuiApplication::clipboard()->setText(
            QLatin1String(Draw({"1-3", "3 mm", "600 mm", "x", "1-2-3", "-"})));
        QTest::keySequence(mDialog->focusWidget() != nullptr ? mDialog->focusWidget() : mDialog.get(),
                           QKeySequence(QKeySequence::Paste));
    }

    // As another process would, or by one.
    void ChangeRegistry()
    {
        if (mOther != nullptr) {
            ++mChanges;
            return mOther->Say("once more");
        }
        const QStringList keys = HopboxRegistry().GetKeys();
        const GString key = keys.at(Draw(keys.size()));
        const bool isTurned = Draw(3) == 0;
        EXPECT_TRUE(HopboxRegistry().ChangeEntry(key, [isTurned](HopboxRegistryEntry& entry) {
            entry.isPlugin = isTurned ? !entry.isPlugin : true;
        }));
    }

    static bool IsOffered(const GString& key) { return HopboxRegistry().GetRecord(key)->entry.isPlugin; }

    static int CountOffered()
    {
        const QStringList keys = HopboxRegistry().GetKeys();
        return static_cast<int>(std::count_if(keys.begin(), keys.end(), IsOffered));
    }

    QStringList GetListedKeys() const
    {
        QStringList keys;
        for (int index = 0; index < list->count(); ++index)
            keys.append(list->itemData(index).toString());
        return keys;
    }

    void Observe()
    {
        mShown = ok->text();
        mWasRepeatedEnter = false;
        mCommands = party.host.commands.size();
        mListed = GetListedKeys();
        mToRemove.clear();
        mHasMenu = qobject_cast<QMenu*>(QApplication::activePopupWidget()) != nullptr;
        mIsRange = Find("Range:").isChecked();
        mRange = range->text();
        mIsPackage = Find("Include File Package").isChecked();
        mPackages = party.host.packages.size();
        mLengths.clear();
        mSwitches.clear();
        mArePagesJoined = false;
        if (!Find<QWidget>("Options").isVisible())
            return;
        for (const auto& [mark, text] : {std::pair(PDFSwitch::CropMarks, "Crop"),
                                         {PDFSwitch::BleedMarks, "Bleed"},
                                         {PDFSwitch::RegistrationMarks, "Registration"},
                                         {PDFSwitch::ColorBars, "Color Bars"},
                                         {PDFSwitch::PageInformation, "Page Information"},
                                         {PDFSwitch::UseDocumentBleed, "Use Document Bleed Settings"}})
            if (const auto state = Find<QCheckBox>(text).checkState(); state != Qt::PartiallyChecked)
                mSwitches[mark] = state == Qt::Checked;
        if (Find("Include Slug Area (For Bleed)").isChecked())
            mSwitches[PDFSwitch::IncludeSlug] = true;
        mArePagesJoined = Find("Print Spreads").isChecked();
        const auto fields = mDialog->findChildren<GQUIUnitSpinBox*>();
        Note(PDFLength::MarkOffset, fields.at(0)->GetPoints());
        if (const int weight = mDialog->findChildren<QComboBox*>().last()->currentIndex(); weight >= 0)
            Note(PDFLength::MarkWeight, AdjustmentValues::cWeightPoints.at(weight));
        if (static_cast<QCheckBox&>(Find("Use Document Bleed Settings")).checkState() != Qt::Checked)
            for (const auto& [length, field] :
                 {std::pair(PDFLength::BleedTop, 1), std::pair(PDFLength::BleedBottom, 2),
                  std::pair(PDFLength::BleedInside, 3), std::pair(PDFLength::BleedOutside, 4)})
                Note(length, fields.at(field)->GetPoints());
    }

    void Note(PDFLength length, std::optional<double> points)
    {
        if (points)
            mLengths[length] = *points;
    }

    // The field is empty, or a length as it is shown; or it is not open, and then it doesn't count.
    bool AreLengthsWhole() const
    {
        for (const auto* field : mDialog->findChildren<GQUIUnitSpinBox*>())
            if (field->isEnabled() && !field->IsAcceptable())
                return false;
        return true;
    }

    void Compare()
    {
        const size_t exports = party.host.commands.size() - mCommands;
        const bool isRemoving = mShown == "Remove"_q;
        EXPECT_LE(exports, 1u);
        EXPECT_TRUE(exports == 0 || !isRemoving) << "exported while the button showed Remove";
        EXPECT_TRUE(exports == 0 || !mWasRepeatedEnter) << "a repeated Enter exports";
        EXPECT_TRUE(!mDialog->isVisible() || mOther != nullptr ||
                    list->count() >= std::min(mListed.size() - 1, CountOffered()));
        EXPECT_TRUE(isRemoving || mHasMenu || GetListedKeys() == mListed) << "removed while it showed OK";
        EXPECT_FALSE(mOther == nullptr && !mToRemove.isEmpty() && IsOffered(mToRemove))
            << "Remove does nothing";
        EXPECT_EQ(exports > 0 && mDialog->isVisible(), false);
        if (exports > 0)
            CompareExport(*party.host.commands.back());
        if (!mDialog->isVisible())
            return;
        const bool adjusts = Find<QWidget>("Options").isVisible();
        const bool isRangeWhole = !Find("Range:").isChecked() || range->text().isEmpty() ||
                                  (range->hasAcceptableInput() && GetMessage() != cNoPage);
        const bool isValid = isRangeWhole && (!adjusts || AreLengthsWhole());
        EXPECT_EQ(ok->isEnabled(), list->count() > 0 && (isValid || ok->text() == "Remove"_q));
        EXPECT_EQ(list->count() == 0 || !isValid,
                  !GetMessage().isEmpty() && !GetMessage().contains("nearest"_q));
    }

    // What was handed over is what the fields showed before.
    void CompareExport(const FakeCommandRecord& command)
    {
        EXPECT_EQ(command.lengths, mLengths);
        EXPECT_EQ(command.switches, mSwitches);
        EXPECT_EQ(command.readerSpreads, mArePagesJoined ? cReaderSpreadsOn : cReaderSpreadsOff);
        const bool isPDFMade = !mIsRange || !mRange.isEmpty();
        EXPECT_EQ(party.host.packages.size() - mPackages, mIsPackage && isPDFMade ? 1u : 0u)
            << party.alerts.join(QLatin1Char('\n')).toStdString();
        EXPECT_EQ(command.pages.size() == 3, !mIsRange || mRange == "1-3"_q) << mRange.toStdString();
    }

    const QString cNoPage = "The document does not have all of these pages, or a range runs backwards."_q;
    std::mt19937 mRandom;
    Qt::KeyboardModifiers mModifiers;
    QString mShown, mRange;
    bool mIsRange = false;
    std::map<PDFLength, double> mLengths;
    std::map<PDFSwitch, bool> mSwitches;
    bool mArePagesJoined = false;
    bool mIsPackage = false;
    size_t mPackages = 0;
    QPointer<QWidget> mHeld;  // under a mouse button that is down
    bool mWasRepeatedEnter = false;
    size_t mCommands = 0;
    QStringList mListed;
    GString mToRemove;  // what a click on "Remove" is to take off
    bool mHasMenu = false;
    std::unique_ptr<ChildProcess> mOther;
    int mChanges = 0;  // of the registry by it
};

// Ten seeds in each of ten parts; HOPBOX_MONKEY_SEEDS asks for another number of them in each.
TEST_P(MonkeyTest, TheDialogDoesWhatItShowsWhateverIsDone)
{
    bool isGiven = false;
    const int given = qEnvironmentVariableIntValue("HOPBOX_MONKEY_SEEDS", &isGiven);
    const int count = isGiven ? given : 10;
    for (int seed = GetParam() * count; seed < (GetParam() + 1) * count && !HasFailure(); ++seed)
        seed % 5 == 4 ? RunBesideAnotherProcess(static_cast<unsigned>(seed), 150)
                      : Run(static_cast<unsigned>(seed), 150);
}

INSTANTIATE_TEST_SUITE_P(Parts, MonkeyTest, testing::Range(0, 10));
