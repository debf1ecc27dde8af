#include "DialogFixture.h"
#include "archive/ZipArchiver.h"

#include <QAbstractItemView>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QRegularExpression>
#include <QScreen>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTextDocument>

using DialogTest = DialogFixture;

static QString ToText(bool value)
{
    return value ? "true"_q : "false"_q;
}

TEST_F(DialogTest, ListsWhatOffersItselfByTextAndSelectsTheLastChoice)
{
    const GString beta = Add("b", "Beta");
    Add("a", "Alpha");
    const GString unnamed = Add("c", "");
    Withdraw(Add("d", "Delta"));
    WriteRecord("x1", "garbage"_q);
    WriteRecord("x2", "#DICT"_q);
    const std::pair<GString, GString> cases[] = {
        {beta, "Beta"_q}, {unnamed, unnamed}, {"Beta"_q, {}}, {{}, {}}};
    for (const auto& [remembered, wanted] : cases) {
        PlugInPreferences::SetLastSelection(remembered);
        party.alerts.clear();
        Open();
        const QString missing = HopboxRegistry().GetKeys().filter("x"_q).join(", "_q);
        EXPECT_EQ(party.alerts, QStringList{"Export as Stamplex PDF Error|PDF settings are missing for %1. "
                                            "Launch the Hopbox manually and try again."_q.arg(missing)});
        QStringList texts = {"Alpha"_q, "Beta"_q, unnamed};
        texts.sort(Qt::CaseInsensitive);
        const GString selected = wanted.isEmpty() ? texts.front() : wanted;
        texts[texts.indexOf(selected)] = QStringLiteral("[%1]").arg(selected);
        EXPECT_EQ(GetList().toStdString(), texts.join(QLatin1Char(' ')).toStdString());
        EXPECT_EQ(PlugInPreferences::GetLastSelection(), list->currentData().toString());
    }
    list->setFocus();
    WindowDriver::Click(Qt::Key_End);
    Open();
    EXPECT_EQ(list->currentIndex(), 2);
}

TEST_F(DialogTest, SortsAsTheLanguageDoesAndTellsHopboxesOfOneTextApart)
{
    const QString keys[] = {Add("Zurich <b>", "Zeitung & Co"), Add("Aarau", "Zeitung & Co"),
                            Add("x", "Zebra")};
    Add("a", "\u00C4pfel");
    Add("b", "apfel");
    Open();
    EXPECT_EQ(GetList().remove(QRegularExpression("[][]"_q)),
              "apfel \u00C4pfel Zebra Zeitung & Co Zeitung & Co"_q);
    EXPECT_EQ(list->itemData(3).toString(), std::min(keys[0], keys[1]));
    const int zurich = list->findData(keys[0]);
    list->setCurrentIndex(zurich);
    const QString plain = "Zeitung & Co\nHopbox: Zurich <b>"_q;
    EXPECT_EQ(list->accessibleDescription(), plain);
    EXPECT_EQ(list->itemData(zurich, Qt::AccessibleDescriptionRole).toString(), plain);
    for (const QString& tip : {list->toolTip(), list->itemData(zurich, Qt::ToolTipRole).toString()}) {
        QTextDocument shown;
        shown.setHtml(tip);
        EXPECT_EQ(shown.toPlainText(), plain);
    }
}

TEST_F(DialogTest, ALongTextIsCutInTheMiddle)
{
    Add("a", QByteArray(400, 'a').append(QByteArray(400, ' ').replace(' ', "z ")).constData());
    Open();
    const int half = mDialog->screen()->availableSize().width() / 2;
    const int width = mDialog->width();
    list->showPopup();
    EXPECT_LE(list->view()->window()->width(), std::max(half, list->width()));
    EXPECT_FALSE(list->view()->horizontalScrollBar()->isVisible());
    EXPECT_EQ(list->view()->textElideMode(), Qt::ElideMiddle);
    QLabel tip(list->toolTip());
    tip.setWordWrap(true);
    EXPECT_LT(tip.minimumSizeHint().width(), 2 * half);
    list->hidePopup();
    // As the field is painted with a text that has another end.
    const QImage before = list->grab().toImage();
    HopboxRegistry().Clear();
    Add("a", QByteArray(400, 'a').append(QByteArray(400, ' ').replace(' ', "zz")).constData());
    Add("b", "short");
    Open();
    EXPECT_EQ(mDialog->width(), width);
    const bool drawsLetters = QLabel("z z"_q).grab().toImage() != QLabel("zzz"_q).grab().toImage();
    EXPECT_TRUE(!drawsLetters || list->grab().toImage() != before) << "the end of the text is not shown";
}

TEST_F(DialogTest, ASpaceWithinATextThatIsTypedBelongsToIt)
{
    for (const char* name : {"Mag", "Mag coated", "Mag matt"})
        Add(name, name);
    Open();
    for (const bool isOpen : {false, true}) {
        list->setCurrentIndex(0);
        if (isOpen)
            list->showPopup();
        WindowDriver::Type("mag m"_q);
        EXPECT_EQ(QApplication::activePopupWidget() != nullptr, isOpen);
        if (isOpen)
            WindowDriver::Click(Qt::Key_Return);
        EXPECT_EQ(list->currentText(), "Mag matt"_q);
        QTest::qWait(QApplication::keyboardInputInterval() + 50);
    }
    WindowDriver::Type(" "_q);
    ASSERT_NE(QApplication::activePopupWidget(), nullptr);
    list->hidePopup();
    // Also where the list was filled anew meanwhile.
    const int interval = QApplication::keyboardInputInterval();
    QApplication::setKeyboardInputInterval(100000);
    WindowDriver::Type("m"_q);
    WindowDriver::Press(Qt::Key_Alt, Qt::AltModifier);
    WindowDriver::Click(Qt::Key_Return, Qt::AltModifier);
    WindowDriver::Release(Qt::Key_Alt);
    EXPECT_EQ(list->count(), 2);
    WindowDriver::Type(" "_q);
    EXPECT_EQ(list->currentIndex(), 0);
    QApplication::setKeyboardInputInterval(interval);
}

TEST_F(DialogTest, WithoutHopboxesOnlyCancelIsLeft)
{
    PlugInPreferences::SetLastSelection("gone"_q);
    Open();
    EXPECT_TRUE(Find<QLabel>("No PDF Settings found").isVisible());
    EXPECT_FALSE(ok->isEnabled());
    EXPECT_FALSE(Find("Options").isVisible());
    EXPECT_FALSE(Find("Include File Package").isVisible());
    EXPECT_EQ(PlugInPreferences::GetLastSelection(), GString());
    EXPECT_EQ(list->accessibleDescription(), "No PDF Settings found"_q);
    WindowDriver::Press(Qt::Key_Alt, Qt::AltModifier);
    EXPECT_FALSE(ok->isEnabled());
    QMetaObject::invokeMethod(mDialog.get(), "OkOrRemoveClicked");
    EXPECT_EQ(party.alerts, QStringList());
    EXPECT_TRUE(mDialog->isVisible());
    WindowDriver::Release(Qt::Key_Alt);
    WindowDriver::Click(Qt::Key_Escape);
    EXPECT_FALSE(mDialog->isVisible());
    Open();
    QContextMenuEvent menu(QContextMenuEvent::Keyboard, {}, list->mapToGlobal({}));
    QApplication::sendEvent(list, &menu);
    EXPECT_FALSE(list->findChild<QMenu*>()->actions().front()->isEnabled());
    EXPECT_TRUE(party.host.commands.empty());
}

TEST_F(DialogTest, ThePackageIsTheUsersChoiceWhereTheSettingLeavesIt)
{
    const struct
    {
        bool isOffered;
        const char *settings, *remembered;
        bool isShown, isChecked;
        const char* stored;
    } cases[] = {
        {true, "UserSettings=true IncludeFilePackage=true", "", true, true, "true"},
        {true, "UserSettings=true", "", true, false, "false"},
        {true, "UserSettings=true IncludeFilePackage=true", "false", true, false, "false"},
        {true, "UserSettings=true IncludeFilePackage=false", "true", true, true, "true"},
        {true, "UserSettings=True IncludeFilePackage=true", "false", false, true, "false"},
        {true, "IncludeFilePackage=true", "", false, true, ""},
        {true, "UserSettings=false IncludeFilePackage=false", "true", false, false, "true"},
        {false, "UserSettings=true IncludeFilePackage=true", "true", false, false, "true"},
    };
    for (const auto& entry : cases) {
        SCOPED_TRACE(entry.settings);
        HopboxRegistry().Clear();
        PlugInPreferences::Prune({});
        Add("Press", "Press", entry.settings);
        if (*entry.remembered != '\0')
            PlugInPreferences::SetPackageChoice("Press"_q, QByteArray(entry.remembered) == "true");
        DialogOptions options = GetAllOptions();
        options[DialogOption::cFilePackage] = entry.isOffered;
        Open(options);
        EXPECT_EQ(Find("Include File Package").isVisible(), entry.isShown);
        EXPECT_EQ(Find("Include File Package").isChecked(), entry.isChecked);
        EXPECT_EQ(Find("Options").isVisible(), QByteArray(entry.settings).contains("UserSettings=true"));
        EXPECT_EQ(GPreferences::Get("Press", "IncludeFilePackageChecked"), QString::fromLatin1(entry.stored));
        if (entry.isShown) {
            WindowDriver::Click(Qt::Key_F, Qt::AltModifier);
            EXPECT_TRUE(QTest::qWaitFor([&] {
                return GPreferences::Get("Press", "IncludeFilePackageChecked") == ToText(!entry.isChecked);
            }));
        }
        party.host.packages.clear();
        WindowDriver::Click(Qt::Key_Return);
        EXPECT_EQ(party.host.packages.size() == 1, entry.isChecked != entry.isShown);
    }
}

// Only the user's own click is a choice that is remembered.
TEST_F(DialogTest, GoingFromOneHopboxToAnotherRemembersNothingForEither)
{
    Add("Chooses", "1");
    Add("Fixed", "2", "IncludeFilePackage=true");
    PlugInPreferences::SetPackageChoice("Chooses"_q, false);
    Open();
    const int width = mDialog->width();
    const QSignalSpy selections(list, QOverload<int>::of(&QComboBox::currentIndexChanged));
    list->setCurrentIndex(1);
    EXPECT_TRUE(Find("Include File Package").isChecked());
    EXPECT_EQ(mDialog->width(), width);
    EXPECT_FALSE(PlugInPreferences::HasPackageChoice("Fixed"_q));
    list->setCurrentIndex(0);
    EXPECT_FALSE(PlugInPreferences::GetPackageChoice("Chooses"_q));
    Find("Include File Package").click();
    Find("Include File Package").setFocus();
    WindowDriver::Press(Qt::Key_Alt, Qt::AltModifier);
    WindowDriver::Click(Qt::Key_Return, Qt::AltModifier);
    WindowDriver::Click(Qt::Key_Return, Qt::AltModifier);
    WindowDriver::Release(Qt::Key_Alt);
    EXPECT_EQ(GetList(), QString());
    EXPECT_EQ(selections.count(), 2) << "the list says nothing while it is filled again";
    EXPECT_FALSE(Find("Include File Package").isChecked());
    EXPECT_TRUE(mDialog->focusWidget()->isVisible());
}

TEST_F(DialogTest, ClosingForgetsThePackageChoicesOfHopboxesThatAreGone)
{
    Add("Stays", "S");
    Add("Goes", "G");
    const GString unnamed = Add("", "U");
    Withdraw(Add("Withdrawn", "W"));
    for (const QString& group : {"Stays"_q, unnamed, "Goes"_q, "Withdrawn"_q, "Gone before \u65E5"_q})
        PlugInPreferences::SetPackageChoice(group, true);
    GPreferences::Set(GPreferences::cUserFileModule, "Other", "Key", "value"_q);
    Open();
    ASSERT_EQ(GetList(), "[G] S U"_q);
    ClickOKWithAlt();
    EXPECT_EQ(GetList(), "[S] U"_q);
    EXPECT_TRUE(PlugInPreferences::HasPackageChoice("Goes"_q));
    WindowDriver::Click(Qt::Key_Escape);
    PlugInPrefModule written(PlugInStore::GetFile());
    for (const QString& group : {"Goes"_q, "Withdrawn"_q, "Gone before \u65E5"_q})
        EXPECT_FALSE(written.Has(group.toUtf8(), "IncludeFilePackageChecked")) << group.toStdString();
    for (const QString& group : {"Stays"_q, unnamed})
        EXPECT_TRUE(written.Has(group.toUtf8(), "IncludeFilePackageChecked")) << group.toStdString();
    EXPECT_EQ(written.Get("Other", "Key"), "value"_q);
}

TEST_F(DialogTest, APageRangeNamesPagesOrKeepsOKFromBeingPressed)
{
    Add("Press", "Press");
    party.host.documents.front().pageCount = 13;
    Open();
    EXPECT_TRUE(Find("All").isChecked());
    EXPECT_FALSE(range->isEnabled());
    QTest::mouseClick(&Find("Range:"), Qt::LeftButton);
    EXPECT_TRUE(range->isEnabled());
    const int width = mDialog->width();
    range->setText("1,"_q.repeated(200));
    QTest::qWait(0);
    EXPECT_EQ(mDialog->width(), width);
    EXPECT_TRUE(GetMessage().endsWith(",1,1,\"."_q));
    const char noPage[] = "The document does not have all of these pages, or a range runs backwards.";
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"1-5,8,11-13", "1-5,8,11-13", ""},
        {"1,", "1,", "A page number is missing after \"1,\"."},
        {"1-", "1-", "A page number is missing after \"1-\"."},
        {"2,3-", "2,3-", "A page number is missing after \"2,3-\"."},
        {"14", "14", noPage},
        {"3-1", "3-1", noPage},
        {"1-20", "1-20", noPage},
        {"1,99", "1,99", noPage},
        {"1 - 5", "", ""},
        {",3", "", ""},
        {"1-2-3", "", ""},
        {"1\n2", "", ""},
        {"a", "", ""}};
    for (const auto& [pasted, taken, complaint] : cases) {
        range->clear();
        QGuiApplication::clipboard()->setText(QString::fromLatin1(pasted));
        range->paste();
        EXPECT_EQ(range->text(), QString::fromLatin1(taken)) << pasted;
        EXPECT_EQ(ok->isEnabled(), *complaint == '\0') << pasted;
        EXPECT_EQ(GetMessage(), QString::fromLatin1(complaint));
    }
    party.host.DisturbCall(1, HostAnswer::Raises);
    EXPECT_NO_THROW(range->setText("16"_q));
    EXPECT_TRUE(party.host.IsDisturbed());
    EXPECT_TRUE(ok->isEnabled()) << "nobody knows";
    range->clear();
    range->setFocus();
    WindowDriver::Type("1 a,"_q);
    EXPECT_EQ(range->text(), "1,"_q);
    WindowDriver::Click(Qt::Key_Return);
    EXPECT_TRUE(mDialog->isVisible());
    WindowDriver::Press(Qt::Key_Alt, Qt::AltModifier);
    EXPECT_TRUE(ok->isEnabled());
    WindowDriver::Release(Qt::Key_Alt);
    EXPECT_FALSE(ok->isEnabled());
    QTest::mouseClick(&Find("All"), Qt::LeftButton, Qt::NoModifier, QPoint(8, 8));
    EXPECT_TRUE(ok->isEnabled());
}

TEST_F(DialogTest, TheDialogKeepsTheListOfPagesThatTheHostGivesWhenItOpens)
{
    Add("Press", "Press");
    for (const HostAnswer answer :
         {HostAnswer::Works, HostAnswer::Absent, HostAnswer::Raises, HostAnswer::RaisesNumber}) {
        party.host.Make(HostOperation::QueryPageList, answer);
        Open();
        party.host.Make(HostOperation::QueryPageList,
                        answer == HostAnswer::Works ? HostAnswer::Absent : HostAnswer::Works);
        Find("Range:").click();
        range->setText("14"_q);
        EXPECT_EQ(ok->isEnabled(), answer != HostAnswer::Works) << static_cast<int>(answer);
    }
}

TEST_F(DialogTest, OKExportsWhatIsChosen)
{
    const std::vector<UID> all = {GetPageUID(1), GetPageUID(2), GetPageUID(3)};
    const QString done = MakeAlert(cNobodyTakesIt);
    // typed: null for all pages
    const std::tuple<bool, const char*, std::vector<UID>, QString> cases[] = {
        {true, nullptr, all, done},
        {false, nullptr, all, done},
        {true, "3,2", {GetPageUID(3), GetPageUID(2)}, done},
        {true, "", {}, MakeFramedAlert("The pages to export are not in the document.")}};
    for (const auto& [isAdjustable, typed, pages, alert] : cases) {
        HopboxRegistry().Clear();
        party.host.commands.clear();
        party.alerts.clear();
        Add("Press", "Press", isAdjustable ? "UserSettings=true Trim=false" : "Trim=false");
        Open();
        Find("Crop").click();
        if (typed != nullptr) {
            Find("Range:").click();
            range->setText(QString::fromLatin1(typed));
        }
        WindowDriver::Click(Qt::Key_Return);
        EXPECT_FALSE(mDialog->isVisible());
        EXPECT_EQ(party.alerts, QStringList{alert});
        ASSERT_EQ(party.host.commands.size(), 1u);
        EXPECT_EQ(party.host.commands.front()->pages, pages);
        EXPECT_EQ(party.host.commands.front()->switches.at(PDFSwitch::CropMarks), isAdjustable);
    }
}

// What is exported is what the fields show. Nothing else is put in the place of a text that can't be.
TEST_F(DialogTest, AHopboxWithoutAReadableProjectIsListedAndFailsWhenChosen)
{
    const auto hurt = [](const GString& key, const std::function<void(const QString&)>& change) {
        HopboxRegistryEntry entry;
        EXPECT_TRUE(HopboxRegistry().GetEntry(key, entry));
        change(entry.contextFilePath.GetNativePath());
    };
    hurt(Add("Missing", "1"), [](const QString& path) { QFile::remove(path); });
    hurt(Add("Damaged", "2"), [](const QString& path) { WriteFile(path, ReadFile(path).left(200)); });
    hurt(Add("Locked", "3"), [](const QString& path) {
        const QString source = QFileInfo(path).path() + "/a.joboptions"_q;
        Morvane::ZipArchiver archive(path);
        EXPECT_TRUE(archive.StartWriting(Morvane::ZipStart::Create, "another password"_q, 6));
        for (const char* name : {"PrinterFiles/a.joboptions", "Project/Project.prefs"})
            EXPECT_TRUE(archive.AddFile(source, QLatin1String(name), Morvane::ZipArchiver::cStartLevel,
                                        Morvane::ZipNames::NameField, QString()));
        EXPECT_TRUE(archive.FinishWriting());
    });
    for (const char* name : {"Missing", "Damaged", "Locked"}) {
        Open();
        EXPECT_EQ(list->count(), 3);
        EXPECT_FALSE(Find("Options").isVisible());
        party.alerts.clear();
        WindowDriver::Click(Qt::Key_Return);
        EXPECT_EQ(party.alerts,
                  QStringList{MakeAlert("Unable to retrieve PDF setting: "_q + QLatin1String(name))});
        Open();
        WindowDriver::Click(Qt::Key_Down);
    }
}
