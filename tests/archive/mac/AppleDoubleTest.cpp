#include "archive/mac/AppleDouble.h"

#include "MacFixture.h"

using Morvane::AppleDouble;
using Morvane::MacFileInfo;

TEST_F(MacTest, TypeAndCreatorEndAtTheFirstZeroByte)
{
    const std::tuple<QByteArray, const char*, const char*> cases[] = {
        {QByteArray("PDF CARO\0\0\0\0....", 16), "PDF ", "CARO"},
        {QByteArray("TEXTttxt\1\2 xrest", 16), "TEXT", "ttxt\1\2 x"},
        {QByteArray("A\0CDttxt", 8), "A", "ttxt"},
        {QByteArray("\xC3\xBC!!CARO", 8), "\xC3\xBC!!", "CARO"},
        {QByteArray("TEXTttx", 7), "", ""},
        {QByteArray(), "", ""}};
    for (const auto& [finderInfo, type, creator] : cases) {
        MacFileInfo info;
        EXPECT_TRUE(AppleDouble::getMacFileType(Write("._x", MakeAppleDouble(finderInfo)), &info));
        EXPECT_EQ(info.type.toStdString(), type);
        EXPECT_EQ(info.creator.toStdString(), creator);
        EXPECT_EQ(info.finderInfo, finderInfo.size() < 8 ? QByteArray() : finderInfo);
    }
}

TEST_F(MacTest, EachDamageHasItsText)
{
    const QByteArray good = MakeAppleDouble("PDF CARO");
    const std::pair<QByteArray, const char*> cases[] = {
        {QByteArray(), "Can't read magic number from appledouble file"},
        {"\x00\x05\x16\x00" + good.mid(4), "Can't read magic number from appledouble file"},
        {good.left(6), "Invalid version of appledouble file"},
        {good.left(4) + BigEndian32(0x00010000) + good.mid(8), "Invalid version of appledouble file"},
        {good.left(23), "Invalid filler in the appledouble file"},
        {good.left(25), "Can't read entries number in the appledouble file"},
        {good.left(28), "Can't read version number of the entry"},
        {good.left(33), "Can't read offset of the entry"},
        {good.left(49), "Can't read version number of the entry"}};
    for (const auto& [bytes, text] : cases) {
        MacFileInfo info;
        info.type = "kept"_q;
        EXPECT_FALSE(AppleDouble::getMacFileType(Write("._x", bytes), &info));
        EXPECT_EQ(info.type, "kept"_q);
        EXPECT_EQ(TakeErrors(), std::string("Morvane::AppleDouble::getMacFileType|") + text);
    }
    MacFileInfo info;
    EXPECT_FALSE(AppleDouble::getMacFileType(At("missing"), &info));
    EXPECT_EQ(TakeErrors(), "Morvane::AppleDouble::getMacFileType|Can't open file for reading");
}

TEST_F(MacTest, DataFileAndCompanionFindEachOther)
{
    for (const char* name : {"zip/sub/a", "zip/__MACOSX/sub/._a", "plain/b", "plain/._b", "plain/._alone"})
        Write(name, "x");
    EXPECT_EQ(AppleDouble::getDataFile(At("zip/__MACOSX/sub/._a")), At("zip/sub/a"));
    EXPECT_EQ(AppleDouble::getDataFile(At("plain/._b")), At("plain/b"));
    EXPECT_EQ(AppleDouble::getAppleDouble(At("zip/sub/a")), At("zip/__MACOSX/sub/._a"));
    EXPECT_EQ(AppleDouble::getAppleDouble(At("plain/b")), At("plain/._b"));
    for (const char* name : {"plain/._alone", "plain/._missing", "plain/b"})
        EXPECT_EQ(AppleDouble::getDataFile(At(name)), QString()) << name;
    for (const char* name : {"plain/._b", "plain/alone2"})
        EXPECT_EQ(AppleDouble::getAppleDouble(At(name)), QString()) << name;
    EXPECT_TRUE(AppleDouble::isInMacOsxFolder("a/__MACOSX/._b"_q));
    EXPECT_FALSE(AppleDouble::isInMacOsxFolder("a/__MACOSX2/._b"_q));
}
