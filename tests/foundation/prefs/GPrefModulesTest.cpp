#include "PrefDocument.h"
#include "foundation/core/GErrorCodes.h"
#include "foundation/prefs/GPrefMemoryModule.h"
#include "foundation/prefs/GPrefSharedFileModule.h"
#include "tests/support/ErrorCode.h"
#include "tests/support/Test.h"

#include <stdexcept>

class GPrefModules : public testing::Test
{
protected:
    const Sandbox mSandbox;
    const QString mFile = mSandbox.GetPath("a.uprefs"_q);
    const GPathName mPath = GPathName(mFile);
};

TEST_F(GPrefModules, FileComesWithTheFirstFlushAfterAChangeAndIsLeftAloneOtherwise)
{
    GPrefFileModule module(mPath, GEncoding::GetUTF16LittleEndian());
    module.FlushPrefs();
    EXPECT_FALSE(QFile::exists(mFile));
    module.Set("G", "K", "\u00E4\n"_q);
    module.FlushPrefs();
    EXPECT_TRUE(ReadFile(mFile).startsWith("\xFF\xFE#"));
    WriteFile(mFile, "another's");
    EXPECT_FALSE(module.IsDirty());
    module.FlushPrefs();
    EXPECT_EQ(ReadFile(mFile), "another's");

    const GPathName second(mSandbox.GetPath("b.uprefs"_q));
    module.SetEncoding(GEncoding::GetUTF8());
    module.SaveAs(second);
    EXPECT_EQ(module.GetPathName(), second);
    EXPECT_TRUE(ReadFile(second.GetNativePath()).startsWith("#"));
    module.Set("G", "K", "two"_q);
    module.Refresh();
    EXPECT_EQ(GetText(module), "G.K=\u00E4\r\n");
    GPrefFileModule marked(mPath, GEncoding::GetUTF16());
    WriteFile(mFile, WriteDocument({{"G", {{"K", "x"_q}}}}, GEncoding::GetUTF16LittleEndian()));
    marked.SetEncoding(GEncoding::GetUTF8());
    marked.Refresh();
    EXPECT_EQ(GetText(marked), "G.K=x") << "The file's own mark counts.";
    EXPECT_FALSE(module.IsDirty());
}

TEST_F(GPrefModules, WhatCouldNotBeReadIsNotOverwritten)
{
    QDir().mkpath(mFile);  // there, but no file
    GPrefFileModule module(mPath, GEncoding::GetUTF8());
    module.Set("G", "K", "one"_q);
    EXPECT_THROW(module.FlushPrefs(), GCustomException);
    EXPECT_THROW(module.Refresh(), GCustomException);
    QDir().rmdir(mFile);
    WriteFile(mFile, WriteDocument({{"G", {{"old", "one"_q}}}}, GEncoding::GetUTF8()));
    module.Set("G", "K", "one"_q);
    EXPECT_THROW(module.FlushPrefs(), GCustomException) << "It still has not been read.";
    module.Refresh();
    module.Set("G", "K", "two"_q);
    module.FlushPrefs();
    EXPECT_EQ(ReadText(mFile), "G.K=two G.old=one");
}

TEST_F(GPrefModules, SharedFileIsReadInAnyEncodingAndLockedBesideIt)
{
    for (const GEncodingRef& encoding : {GEncoding::GetUTF16BigEndian(), GEncoding::GetPlatform8Bit()}) {
        GPrefSharedFileModule writer(mPath, encoding);
        writer.Set("G", "K", encoding->GetName());
        writer.FlushPrefs();
        EXPECT_EQ(GPrefSharedFileModule(mPath, GEncoding::GetUTF8()).Get("G", "K"), encoding->GetName());
    }
    EXPECT_TRUE(QFile::exists(mSandbox.GetPath("a.uprefslock"_q)));
    EXPECT_EQ(GPrefSharedFileModule(GPathName("bare"_q), nullptr).GetLockPathName(),
              GPathName("bare.lock"_q));

    GPrefSharedFileModule missing(GPathName(mSandbox.GetPath("none/a.prefs"_q)), GEncoding::GetUTF16());
    missing.Set("G", "K", "one"_q);
    EXPECT_EQ(GetErrorCode([&] { missing.FlushPrefs(); }), GErrorCode::cLockFile);
    EXPECT_TRUE(missing.IsDirty());
}

TEST_F(GPrefModules, ChangeUnderLockWorksOnTheFileAsItIs)
{
    GPrefSharedFileModule first(mPath, GEncoding::GetUTF16());
    GPrefSharedFileModule second(mPath, GEncoding::GetUTF16());
    const auto change = [](GPrefSharedFileModule& changed, const char* key) {
        changed.ChangeUnderLock([key](GPrefModule& module) { module.Set("G", key, "1"_q); });
    };
    change(first, "first");
    change(second, "second");
    first.Set("G", "unflushed", "1"_q);
    first.Remove("G", "first");
    first.StartUsingTempModule();
    first.Set("G", "temporary", "1"_q);
    change(first, "third");
    EXPECT_EQ(first.Get("G", "temporary"), "1"_q);
    first.EndUsingTempModule(false);
    EXPECT_FALSE(first.IsDirty());
    EXPECT_EQ(GetText(first), "G.second=1 G.third=1 G.unflushed=1");
    EXPECT_EQ(ReadText(mFile), GetText(first));

    first.Set("G", "unflushed", "2"_q);
    const auto changeItsMind = [](GPrefModule& module) {
        module.RemoveGroup("G");
        throw std::runtime_error("changed its mind");
    };
    EXPECT_THROW(first.ChangeUnderLock(changeItsMind), std::runtime_error);
    EXPECT_EQ(GetText(first), "G.second=1 G.third=1 G.unflushed=2");
    EXPECT_TRUE(first.IsDirty());
    EXPECT_EQ(ReadText(mFile), "G.second=1 G.third=1 G.unflushed=1");
}

TEST_F(GPrefModules, MemoryHoldsADocumentFromTextOrBytesAndGivesItBack)
{
    GPrefMemoryModule module;
    module.Set("G", "K", "a\"\u65E5"_q);
    module.Set("empty", "K", "one"_q);
    module.Remove("empty", "K");
    const GString text = module.GetPrefsData();
    EXPECT_EQ(text.toUtf8(), WriteDocument({{"G", {{"K", "a\"\u65E5"_q}}}}, GEncoding::GetUTF8()));
    EXPECT_EQ(GPrefMemoryModule(text).GetPrefsData(), text);
    const GBuffer bytes = GEncoding::GetUTF16BigEndian()->Encode(QChar(0xFEFF) + text);
    EXPECT_EQ(GPrefMemoryModule(bytes, nullptr).GetPrefsData(), text);
}
