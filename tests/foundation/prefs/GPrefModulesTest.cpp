#include "foundation/core/GErrorCodes.h"
#include "foundation/prefs/GPrefMemoryModule.h"
#include "foundation/prefs/GPrefSharedFileModule.h"
#include "tests/support/ErrorCode.h"
#include "tests/support/Sandbox.h"
#include "tests/support/TestFiles.h"

#include <QDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

namespace
{
const GString cOne = QStringLiteral("one");
const GString cTwo = QStringLiteral("two");
}  // namespace

TEST(GPrefFileModule, FileComesWithTheFirstFlushAfterAChangeAndIsLeftAloneOtherwise)
{
    const Sandbox sandbox;
    const QString path = sandbox.GetPath(QStringLiteral("a.uprefs"));
    GPrefFileModule module(GPathName(path), GEncoding::GetUTF16LittleEndian());
    module.FlushPrefs();
    EXPECT_FALSE(QFile::exists(path));
    module.Set("G", "K", QStringLiteral("\u00E4\n"));
    module.FlushPrefs();
    EXPECT_TRUE(ReadFile(path).startsWith("\xFF\xFE#"));
    WriteFile(path, "another's");
    EXPECT_FALSE(module.IsDirty());
    module.FlushPrefs();
    EXPECT_EQ(ReadFile(path), "another's");

    const QString second = sandbox.GetPath(QStringLiteral("b.uprefs"));
    module.SetEncoding(GEncoding::GetUTF8());
    module.SaveAs(GPathName(second));
    EXPECT_EQ(module.GetPathName(), GPathName(second));
    EXPECT_EQ(
        ReadFile(second),
        "#BEGINPREFS\r\n\r\n\"G\"\r\n#BEGINDICT\r\n\"K\" \"\xC3\xA4\\n\"\r\n#ENDDICT\r\n\r\n#ENDPREFS\r\n");
    module.Set("G", "K", cTwo);
    module.Refresh();
    EXPECT_EQ(module.Get("G", "K"), QStringLiteral("\u00E4\r\n"));
    EXPECT_FALSE(module.IsDirty());
}

TEST(GPrefFileModule, WhatCouldNotBeReadIsNotOverwritten)
{
    const Sandbox sandbox;
    const QString path = sandbox.GetPath(QStringLiteral("a.uprefs"));
    QDir().mkpath(path);  // there, but no file
    GPrefFileModule module(GPathName(path), GEncoding::GetUTF8());
    module.Set("G", "K", cOne);
    EXPECT_THROW(module.FlushPrefs(), GCustomException);
    EXPECT_THROW(module.Refresh(), GCustomException);
    QDir().rmdir(path);
    WriteFile(path, "#BEGINPREFS\n\"G\"\n#BEGINDICT\n\"old\" \"one\"\n#ENDDICT\n#ENDPREFS\n");
    module.Set("G", "K", cOne);
    EXPECT_THROW(module.FlushPrefs(), GCustomException) << "It still has not been read.";
    module.Refresh();
    module.Set("G", "K", cTwo);
    module.FlushPrefs();
    const GPrefFileModule again(GPathName(path), GEncoding::GetUTF8());
    EXPECT_TRUE(again.Has("G", "old") && again.Has("G", "K"));
}

TEST(GPrefSharedFileModule, FileIsReadInAnyEncodingAndLockedBesideIt)
{
    const Sandbox sandbox;
    const GPathName path(sandbox.GetPath(QStringLiteral("Morvane.uprefs")));
    const QString lockPath = sandbox.GetPath(QStringLiteral("Morvane.uprefslock"));
    for (const GEncodingRef& encoding : {GEncoding::GetUTF16BigEndian(), GEncoding::GetPlatform8Bit()}) {
        GPrefSharedFileModule writer(path, encoding);
        EXPECT_EQ(writer.GetLockPathName(), GPathName(lockPath));
        writer.Set("G", "K", encoding->GetName());
        writer.FlushPrefs();
        EXPECT_EQ(GPrefSharedFileModule(path, GEncoding::GetUTF8()).Get("G", "K"), encoding->GetName());
    }
    EXPECT_TRUE(QFile::exists(lockPath));
    EXPECT_EQ(GPrefSharedFileModule(GPathName(QStringLiteral("bare")), nullptr).GetLockPathName(),
              GPathName(QStringLiteral("bare.lock")));

    GPrefSharedFileModule missing(GPathName(sandbox.GetPath(QStringLiteral("none/a.prefs"))),
                                  GEncoding::GetUTF16());
    missing.Set("G", "K", cOne);
    EXPECT_EQ(GetErrorCode([&] { missing.FlushPrefs(); }), GErrorCode::cLockFile);
    EXPECT_TRUE(missing.IsDirty());
}

TEST(GPrefSharedFileModule, ChangeUnderLockWorksOnTheFileAsItIs)
{
    const Sandbox sandbox;
    const GPathName path(sandbox.GetPath(QStringLiteral("Morvane.uprefs")));
    GPrefSharedFileModule first(path, GEncoding::GetUTF16());
    GPrefSharedFileModule second(path, GEncoding::GetUTF16());
    first.ChangeUnderLock([](GPrefModule& module) { module.Set("G", "first", cOne); });
    second.ChangeUnderLock([](GPrefModule& module) { module.Set("G", "second", cTwo); });
    first.Set("G", "unflushed", cOne);
    first.Remove("G", "first");
    first.StartUsingTempModule();
    first.Set("G", "temporary", cOne);
    first.ChangeUnderLock([](GPrefModule& module) { module.Set("G", "third", cOne); });
    EXPECT_EQ(first.Get("G", "temporary"), cOne);
    first.EndUsingTempModule(false);
    EXPECT_FALSE(first.IsDirty());
    second.Refresh();
    for (const GPrefModule* module : {&first, &second}) {
        std::vector<GBuffer> keys;
        module->GetGroupPreferences("G", keys);
        std::sort(keys.begin(), keys.end());
        EXPECT_EQ(keys, (std::vector<GBuffer>{"second", "third", "unflushed"}));
    }

    const QByteArray before = ReadFile(path.GetNativePath());
    first.Set("G", "unflushed", cTwo);
    EXPECT_THROW(first.ChangeUnderLock([](GPrefModule& module) {
        module.RemoveGroup("G");
        throw std::runtime_error("changed its mind");
    }),
                 std::runtime_error);
    EXPECT_TRUE(first.Has("G", "second"));
    EXPECT_EQ(first.Get("G", "unflushed"), cTwo);
    EXPECT_TRUE(first.IsDirty());
    EXPECT_EQ(ReadFile(path.GetNativePath()), before);
}

TEST(GPrefMemoryModule, HoldsADocumentFromTextOrBytesAndGivesItBack)
{
    GPrefMemoryModule module;
    module.Set("G", "K", QStringLiteral("a\"\u65E5"));
    module.Set("empty", "K", cOne);
    module.Remove("empty", "K");
    const GString text = module.GetPrefsData();
    EXPECT_EQ(text, QStringLiteral("#BEGINPREFS\r\n\r\n\"G\"\r\n#BEGINDICT\r\n\"K\" "
                                   "\"a\\\"\u65E5\"\r\n#ENDDICT\r\n\r\n#ENDPREFS\r\n"));
    EXPECT_EQ(GPrefMemoryModule(text).GetPrefsData(), text);
    const GBuffer bytes = GEncoding::GetUTF16BigEndian()->Encode(QChar(0xFEFF) + text);
    EXPECT_EQ(GPrefMemoryModule(bytes, nullptr).GetPrefsData(), text);
}
