#include "foundation/core/GEncoding.h"

#include "HopboxCommandsFixture.h"

TEST_F(HopboxCommands, CheckTellsWhatIsWrong)
{
    ASSERT_EQ(Create("Press"_q), 0);
    ASSERT_EQ(Run("show|Press|--json"), 0);
    const QString archive = GetText("ContextFilePath");
    ASSERT_EQ(Run("set|Press|HopboxIconPath=/none.png"), 0);
    EXPECT_EQ(Run("check|Press"), 1);
    EXPECT_TRUE(mError.contains("There is no icon"));

    WriteFile(archive, "no archive");
    EXPECT_EQ(Run("check|Press|--json"), 1);
    EXPECT_EQ(GetAnswer().value("errors"_q).toArray().size(), 2);
    EXPECT_TRUE(mError.contains("Can't open zip archive"));

    ASSERT_TRUE(QFile::remove(archive));
    EXPECT_EQ(Run("check|Press"), 1);
    EXPECT_TRUE(mError.contains("There is no project archive"));
    EXPECT_EQ(Run("delete|Press"), 0);
}

TEST_F(HopboxCommands, DamagedSettingsOfAnArchiveAreToldAndKeptBeforeTheyAreReplaced)
{
    ASSERT_TRUE(WriteFile(GetPath("PrinterFiles/a.joboptions"), "<< /A 1 >> setdistillerparams"));
    const QString text =
        "#BEGINPREFS\r\n\"PluginSettings\"\r\n#BEGINDICT\r\n\"Trim\" \"true\"\r\n#ENDDICT\r\n\"Other\" x"_q;
    ASSERT_TRUE(WriteFile(GetPath("Project/Project.prefs"), GEncoding::GetUTF16LittleEndian()->Encode(text)));
    ASSERT_EQ(Create("Press"_q), 0);
    ASSERT_EQ(Run("show|Press|--json"), 0);
    const QString archive = GetText("ContextFilePath");
    ASSERT_EQ(Run({"zip"_q, "create"_q, archive, "Project"_q, "PrinterFiles"_q}), 0);
    const QByteArray damaged = ReadFile(archive);
    const auto isKept = [this] { return GetAnswer().value("damaged"_q)["IsKept"_q]; };
    EXPECT_EQ(Run("check|Press|--json"), 1);
    EXPECT_TRUE(mError.contains("are damaged at byte"));
    EXPECT_EQ(isKept(), QJsonValue(false));
    for (int count = 0; count < 2; ++count) {
        EXPECT_EQ(Run("set|Press|--setting|Bleed=true|--json"), 0);
        EXPECT_EQ(mError.contains("were damaged at byte"), count == 0);
        EXPECT_EQ(isKept(), count == 0 ? QJsonValue(true) : QJsonValue(QJsonValue::Undefined));
        EXPECT_EQ(ReadFile(archive + ".damaged"_q), damaged);
        EXPECT_FALSE(QFile::exists(archive + ".damaged.1"_q));
        EXPECT_EQ(Run("check|Press"), 0);
    }
    EXPECT_TRUE(mOutput.contains("Trim=true"));
    EXPECT_EQ(Run("delete|Press"), 0);
}

TEST_F(HopboxCommands, CheckTellsOfAHopboxThatCannotExport)
{
    // An archive that another program has made: only its job options and settings are odd.
    ASSERT_TRUE(WriteFile(GetPath("PrinterFiles/Old.joboptions"), "<< /CompatibilityLevel 1.4 >>"));
    ASSERT_TRUE(
        WriteFile(GetPath("Project/Project.prefs"),
                  "#BEGINPREFS\r\n\"PluginSettings\" #BEGINDICT\r\n\"Bleed\" \"on\"\r\n\"Paper\" \"A4\"\r\n"
                  "#ENDDICT\r\n#ENDPREFS\r\n"));
    ASSERT_EQ(Create("Press"_q), 0);
    EXPECT_EQ(Run("check|Press"), 0);
    EXPECT_FALSE(mOutput.contains("Note")) << "nothing is odd about a Hopbox of ours";

    const QString utf16 = GetPath("Project/Project.prefs");
    WriteFile(utf16, GEncoding::GetUTF16LittleEndian()->Encode(QString::fromLatin1(ReadFile(utf16))));
    ASSERT_EQ(Run("zip|create|odd.zip|Project|PrinterFiles"), 0);
    ASSERT_EQ(Run({"set"_q, "Press"_q, "ContextFilePath="_q + GetPath("odd.zip")}), 0);
    EXPECT_EQ(Run("check|Press|--json"), 1);
    const QJsonArray problems = GetAnswer().value("errors"_q).toArray();
    ASSERT_EQ(problems.size(), 1);
    EXPECT_TRUE(
        problems.at(0).toString().startsWith("The job options \"Old.joboptions\" can't be used: at"_q));
    EXPECT_EQ(
        GetObject().value(QLatin1String("Notes")).toArray(),
        (QJsonArray{
            "The plug-in passes over a setting. The setting \"Bleed\" can't be \"on\". It takes true or false."_q,
            "The plug-in passes over a setting. A Hopbox has no setting \"Paper\"."_q}));
}

// Only what the system says is not there is missing.
TEST_F(HopboxCommands, WhatCannotBeLookedAtIsToldWithItsReason)
{
    ASSERT_EQ(Create("Press"_q), 0);
    ASSERT_EQ(Run({"set"_q, "Press"_q, "HopboxIconPath=gone.png"_q}), 0);
    EXPECT_EQ(Run("export|Press|Press.hopbox"), 0);
    EXPECT_TRUE(mError.contains("is not there and is left out"));
    if (QDir::separator() != QLatin1Char('/'))
        GTEST_SKIP() << "Names that are too long are names of nothing here.";
    const QString unknown = QString(300, QLatin1Char('x'));
    const char* const reason = "File name too long";
    EXPECT_EQ(Run({"submit"_q, "Press"_q, unknown}), 1);
    EXPECT_TRUE(mError.contains(reason));
    ASSERT_EQ(Run({"set"_q, "Press"_q, "HopboxIconPath="_q + unknown}), 0);
    EXPECT_EQ(Run("export|Press|Press.hopbox"), 1);
    EXPECT_TRUE(mError.contains(reason));
    ASSERT_EQ(Run({"set"_q, "Press"_q, "ContextFilePath="_q + unknown, "ApplicationPath="_q + unknown}), 0);
    EXPECT_EQ(Run("check|Press"), 1);
    EXPECT_EQ(mError.count(reason), 2);
    EXPECT_TRUE(mOutput.contains(reason));
}
