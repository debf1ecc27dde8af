#include "DialogFixture.h"
#include "foundation/prefs/GPrefMemoryModule.h"
#include "hopbox/HopboxProject.h"
#include "widgets/GQUIUnitSpinBox.h"

// The options of the dialog: lengths that are typed, and what is left to the job options.

using DialogTest = DialogFixture;

// Puts a project with these job options in the place of a Hopbox's; gives its path.
static QString SetJobOptions(const GString& key, const char* text)
{
    HopboxRegistryEntry entry;
    EXPECT_TRUE(HopboxRegistry().GetEntry(key, entry));
    HopboxProject project(entry.contextFilePath);
    GPrefMemoryModule settings;
    EXPECT_EQ(project.ReadSettings(settings).GetReason(), QString());
    const GPathName file = entry.contextFilePath.GetParent().GetChild("new.joboptions"_q);
    EXPECT_TRUE(WriteFile(file.GetNativePath(), text));
    EXPECT_EQ(project.Create(file, settings).GetReason(), QString());
    return entry.contextFilePath.GetNativePath();
}

TEST_F(DialogTest, ALengthIsExportedAsItIsShownOrKeepsOKFromBeingPressed)
{
    constexpr double cNone = -1;
    const QString corrected = "Bleed at the top: the nearest length that is possible was set, %1."_q;
    const struct
    {
        const char* typed;
        QString note;      // after Enter, where that doesn't export at once
        bool isTakenThen;  // by another Enter
        double top;        // that is exported; none where the job options decide
    } cases[] = {
        {"5", {}, true, 5},
        {"2p6", {}, true, 30},
        {"0.25in", {}, true, 18},
        {"", {}, true, cNone},
        {"4 m", "Bleed at the top takes a length, 0 pt to 432 pt, or nothing."_q, false, cNone},
        {"-3", corrected.arg("0 pt"_q), true, 0},
        {"599 mm", corrected.arg("432 pt"_q), true, 432},
    };
    Add("Press", "Press", "UserSettings=true BleedChoice=1 BleedTopValue=9");
    for (const auto& entry : cases) {
        SCOPED_TRACE(entry.typed);
        Open();
        Find("Options").click();
        auto* field = mDialog->findChildren<GQUIUnitSpinBox*>().at(1);
        field->setFocus();
        field->selectAll();
        WindowDriver::Click(Qt::Key_Backspace);
        WindowDriver::Type(QString::fromUtf8(entry.typed));
        EXPECT_EQ(ok->isEnabled(), entry.note.isEmpty());
        party.host.commands.clear();
        WindowDriver::Click(Qt::Key_Return);
        EXPECT_EQ(mDialog->isVisible(), !entry.note.isEmpty());
        if (!entry.note.isEmpty()) {
            EXPECT_TRUE(Find<QLabel>(entry.note.toUtf8().constData()).isVisible());
            EXPECT_EQ(ok->isEnabled(), entry.isTakenThen);
            WindowDriver::Click(Qt::Key_Return);
        }
        ASSERT_EQ(party.host.commands.size(), entry.isTakenThen ? 1u : 0u);
        if (!entry.isTakenThen)
            continue;
        const auto& lengths = party.host.commands.front()->lengths;
        const auto top = lengths.find(PDFLength::BleedTop);
        EXPECT_NEAR(top == lengths.end() ? cNone : top->second, entry.top, 1e-9);
    }
}

TEST_F(DialogTest, AFieldThatIsCorrectedHidesNoComplaintAboutAnother)
{
    Add("Press", "1", "UserSettings=true BleedChoice=1 BleedTopValue=1");
    Open();
    Find("Options").click();
    const auto fields = mDialog->findChildren<GQUIUnitSpinBox*>();
    fields.at(1)->GetTextField()->setText("4 m"_q);
    fields.at(2)->setFocus();
    fields.at(2)->GetTextField()->setText("999"_q);
    fields.at(3)->setFocus();
    EXPECT_EQ(fields.at(2)->GetPoints(), 432);
    EXPECT_FALSE(ok->isEnabled());
    EXPECT_EQ(GetMessage(), "Bleed at the top takes a length, 0 pt to 432 pt, or nothing."_q);
}

TEST_F(DialogTest, TheClickThatLeavesAFieldDoesNotExportWhatTheFieldIsCorrectedTo)
{
    Add("Press", "1", "UserSettings=true");
    Open();
    Find("Options").click();
    auto* field = mDialog->findChildren<GQUIUnitSpinBox*>().at(0);
    field->setFocus();
    field->GetTextField()->setText("999"_q);
    EXPECT_FALSE(ok->isEnabled());
    const auto clickOK = [this] {
        QTest::mouseClick(mDialog->windowHandle(), Qt::LeftButton, Qt::NoModifier,
                          ok->mapTo(mDialog.get(), ok->rect().center()));
    };
    clickOK();
    EXPECT_EQ(field->GetPoints(), 72);
    EXPECT_TRUE(party.host.commands.empty());
    EXPECT_TRUE(QTest::qWaitFor([&] { return ok->isEnabled(); }));
    clickOK();
    EXPECT_EQ(party.host.commands.size(), 1u);
}

TEST_F(DialogTest, ATextThatIsNoLengthKeepsNobodyFromRemovingNorCountsWhereItsFieldIsClosed)
{
    Add("Press", "1", "UserSettings=true BleedChoice=1");
    Add("Fixed", "2", "UserSettings=false");
    Open();
    Find("Options").click();
    mDialog->findChildren<GQUIUnitSpinBox*>().at(1)->setFocus();
    WindowDriver::Type("4m"_q);
    EXPECT_FALSE(ok->isEnabled());
    WindowDriver::Press(Qt::Key_Alt, Qt::AltModifier);
    EXPECT_TRUE(ok->isEnabled());
    WindowDriver::Release(Qt::Key_Alt);
    EXPECT_FALSE(ok->isEnabled());
    Find("Use Document Bleed Settings").click();
    EXPECT_TRUE(ok->isEnabled());
    Find("Use Document Bleed Settings").click();
    EXPECT_FALSE(ok->isEnabled());
    list->setCurrentIndex(1);
    EXPECT_TRUE(ok->isEnabled());
    list->setCurrentIndex(0);
    EXPECT_TRUE(ok->isEnabled()) << "the text of another visit";
}

// Read once for each selection, and only for those who look.
TEST_F(DialogTest, WhatIsLeftToTheJobOptionsTellsWhatTheyGive)
{
    Add("Press", "1", "UserSettings=true MarkOffset=3");
    const QString project =
        SetJobOptions("Press"_q,
                      "<< /OtherNamespaces [<< /AddCropMarks true /AddBleedMarks false "
                      "/AddRegMarks (x) /MarksWeight 0.25 /MarksOffset 6 /UseDocumentBleed false "
                      "/BleedOffset [9 8 (x) 0] >>] >> setdistillerparams");
    Add("Second", "2");
    SetJobOptions("Second"_q,
                  "<< /OtherNamespaces [<< /AddCropMarks false /BleedOffset [1 2 3] >>] >> "
                  "setdistillerparams");
    Add("Fixed", "3", "UserSettings=false");
    Open();
    const auto getTip = [](QWidget& widget) {
        EXPECT_EQ(widget.accessibleDescription(), widget.toolTip());
        return widget.toolTip();
    };
    const QString unknown = "As the job options say"_q;
    EXPECT_EQ(getTip(Find("Crop")), unknown);
    Find("Options").click();
    const auto fields = mDialog->findChildren<GQUIUnitSpinBox*>();
    const QString anyBleed = "\n0 pt to 432 pt, in any unit: 3 mm, 0.125 in, 1p6, 9 pt"_q;
    const std::pair<QWidget*, QString> cases[] = {
        {&Find("Crop"), unknown + ": on"_q},
        {&Find("Bleed"), unknown + ": off"_q},
        {&Find("Registration"), unknown},
        {&Find("Use Document Bleed Settings"), unknown + ": off"_q},
        {mDialog->findChildren<QComboBox*>().last(), unknown + ": 0.25 pt"_q},
        {fields.at(0), "0.01 pt to 72 pt, in any unit: 3 mm, 0.125 in, 1p6, 9 pt"_q},
        {fields.at(1), unknown + ": 9 pt"_q + anyBleed},
        {fields.at(3), unknown + anyBleed}};
    QFile::remove(project);
    for (int look = 0; look < 3; ++look) {
        for (const auto& [widget, tip] : cases)
            EXPECT_EQ(getTip(*widget), tip);
        Find("Options").click();
    }
    Find("Crop").click();
    EXPECT_EQ(getTip(Find("Crop")), QString());
    // Other Hopboxes' options say other things, or are not open to the user.
    Find("Options").click();
    list->setCurrentIndex(1);
    EXPECT_EQ(getTip(Find("Crop")), unknown + ": off"_q);
    EXPECT_EQ(getTip(*fields.at(1)), unknown + anyBleed);
    list->setCurrentIndex(2);
    list->setCurrentIndex(1);
    EXPECT_EQ(getTip(Find("Crop")), unknown + ": off"_q);
}

TEST_F(DialogTest, WithoutATemporaryFolderTheOptionsOpenAndNothingIsWrittenElsewhere)
{
    Add("Press", "1", "UserSettings=true");
    SetJobOptions("Press"_q, "<< /OtherNamespaces [<< /AddCropMarks true >>] >> setdistillerparams");
    Open();
    const QString here = GetSandbox().GetPath("here"_q);
    ASSERT_TRUE(QDir().mkpath(here));
    const QString before = QDir::currentPath();
    const QString temporary = GFileSystemBase::GetSpecialPath(GSpecialPath::cTemporary).GetNativePath();
    QDir(temporary).removeRecursively();
    ASSERT_TRUE(WriteFile(temporary, "in the way"));
    QDir::setCurrent(here);
    Find("Options").click();
    EXPECT_EQ(QDir(here).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), QStringList());
    QDir::setCurrent(before);
    EXPECT_EQ(Find("Crop").toolTip(), "As the job options say"_q);
}
