#include "DialogFixture.h"

#include <QProcess>

// What becomes of the dialog when the registry is changed, emptied or closed to it meanwhile.
using DialogTest = DialogFixture;

TEST_F(DialogTest, WhatCannotBeRemovedStaysWithAnAlert)
{
    const GString key = Add("Press", "Press");
    const std::function<void()> faults[] = {[&] { WriteRecord(key.toLatin1().constData(), "garbage"_q); },
                                            [&] { EXPECT_TRUE(HopboxRegistry().RemoveEntry(key)); }};
    Open();
    for (const auto& fault : faults) {
        fault();
        party.alerts.clear();
        ClickOKWithAlt();
        EXPECT_EQ(party.alerts,
                  QStringList{"Export as Stamplex PDF error|Unable to remove selected PDF setting."_q});
        EXPECT_EQ(GetList(), "[Press]"_q);
        EXPECT_TRUE(mDialog->isVisible());
    }
}

TEST_F(DialogTest, AListThatAnotherProcessHasEmptiedLeavesNothingToExportOrRemove)
{
    const GString keys[] = {Add("a", "A"), Add("b", "B")};
    Open();
    for (const GString& key : keys)
        Withdraw(key);
    WindowDriver::Press(Qt::Key_Alt, Qt::AltModifier);
    for (int press = 0; press < 3; ++press) {
        WindowDriver::Click(Qt::Key_Return, Qt::AltModifier);
        QTest::mouseClick(ok, Qt::LeftButton, Qt::AltModifier);
        EXPECT_EQ(GetList(), QString());
        EXPECT_EQ(GetMessage(), "No PDF Settings found"_q);
        EXPECT_FALSE(ok->isEnabled());
    }
    WindowDriver::Release(Qt::Key_Alt);
    EXPECT_FALSE(ok->isEnabled());
    WindowDriver::Click(Qt::Key_Return);
    EXPECT_TRUE(mDialog->isVisible());
    EXPECT_TRUE(party.host.commands.empty());
    EXPECT_EQ(party.alerts, QStringList());
    EXPECT_EQ(HopboxRegistry().GetKeys().size(), 2);
}

TEST_F(DialogTest, ARegistryThatCannotBeReadIsToldAndLeavesADialogThatCloses)
{
    Add("Press", "Press");
    Open();
    const QString folder = HopboxRegistry::GetPathName().GetParent().GetNativePath();
    ASSERT_TRUE(QDir().rename(folder, folder + "_"_q) && WriteFile(folder, "in the way"));
    ClickOKWithAlt();
    EXPECT_EQ(party.alerts,
              QStringList{"Export as Stamplex PDF error|Unable to remove selected PDF setting."_q});
    EXPECT_EQ(GetList(), "[Press]"_q);
    WindowDriver::Click(Qt::Key_Escape);
    EXPECT_FALSE(mDialog->isVisible());
    party.alerts.clear();
    Open();
    ASSERT_EQ(party.alerts.size(), 1);
    EXPECT_TRUE(party.alerts.front().startsWith("Export as Stamplex PDF Error|"_q));
    EXPECT_TRUE(Find<QLabel>("No PDF Settings found").isVisible());
}

// Nobody knows what Hopboxes there are.
TEST_F(DialogTest, ARegistryThatCannotBeReadMakesThePlugInForgetNothing)
{
    const GString key = Add("Press", "Press");
    const QString registry = HopboxRegistry::GetPathName().GetNativePath();
    const QByteArray whole = ReadFile(registry);
    const auto putFolder = [&] { QFile::remove(registry) && QDir().mkpath(registry); };
    const auto cut = [&] { WriteFile(registry, whole.left(whole.size() / 4)); };
    for (const auto& fault : {std::function<void()>(putFolder), std::function<void()>(cut)}) {
        PlugInPreferences::SetLastSelection(key);
        PlugInPreferences::SetPackageChoice("Press"_q, true);
        fault();
        party.alerts.clear();
        Open();
        EXPECT_EQ(party.alerts.join(QLatin1Char(' ')).contains(registry), QFileInfo(registry).isDir());
        WindowDriver::Click(Qt::Key_Escape);
        EXPECT_EQ(PlugInPreferences::GetLastSelection(), key);
        EXPECT_TRUE(PlugInPreferences::GetPackageChoice("Press"_q));
        EXPECT_TRUE(QDir().rmdir(registry) || QFile::remove(registry));
        EXPECT_TRUE(WriteFile(registry, whole));
    }
    Open();
    EXPECT_EQ(GetList(), "[Press]"_q);
}

TEST_F(DialogTest, NoNameRemovesNothing)
{
    const GString key = Add("", "U");
    EXPECT_FALSE(HopboxList::Withdraw(GString()));
    EXPECT_TRUE(HopboxRegistry().GetRecord(key)->entry.isPlugin);
}

// Other processes register Hopboxes while the user removes one after the other.
TEST_F(DialogTest, RemovingAndAddingAtOnceLosesNothing)
{
    constexpr int cCount = 6;
    for (int number = 0; number < cCount; ++number)
        Add(QByteArray::number(number).constData(), "Old");
    const QString jobOptions = GetSandbox().GetPath("a.joboptions"_q);
    ASSERT_TRUE(WriteFile(jobOptions, "<< /A 1 >> setdistillerparams"));
    Open();
    constexpr int cAdded = 3;
    QProcess adders[cAdded];
    for (int number = 0; number < cAdded; ++number)
        adders[number].start(GetProgramPath("hopboxctl"), {"create"_q, QStringLiteral("New %1").arg(number),
                                                           "--job-options"_q, jobOptions});
    for (int number = 0; number < cCount; ++number) {
        list->setFocus();
        WindowDriver::Click(Qt::Key_End);  // a new one may have come to the top
        ASSERT_EQ(list->currentText(), "Old"_q);
        ClickOKWithAlt();
    }
    for (QProcess& adder : adders) {
        EXPECT_TRUE(adder.state() == QProcess::NotRunning || adder.waitForFinished());
        EXPECT_EQ(adder.exitCode(), 0) << adder.readAllStandardError().toStdString();
    }
    EXPECT_EQ(party.alerts, QStringList());
    int left = 0;
    for (const GString& key : HopboxRegistry().GetKeys())
        left += HopboxRegistry().GetRecord(key)->entry.isPlugin ? 1 : 0;
    EXPECT_EQ(left, cAdded);
    EXPECT_EQ(HopboxRegistry().GetKeys().size(), cCount + cAdded);
}
