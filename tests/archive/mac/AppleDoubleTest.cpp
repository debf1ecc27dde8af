#include "archive/mac/AppleDouble.h"

#include "MacFixture.h"

using Morvane::AppleDouble;
using Morvane::MacFileInfo;

TEST_F(MacTest, TypeAndCreatorEndAtTheFirstZeroByte)
{
    struct Case
    {
        QByteArray finderInfo;
        const char* type;
        const char* creator;
    };
    for (const Case& entry : {Case{QByteArray("PDF CARO\0\0\0\0....", 16), "PDF ", "CARO"},
                              Case{QByteArray("TEXTttxt\1\2 xrest", 16), "TEXT", "ttxt\1\2 x"},
                              Case{QByteArray("A\0CDttxt", 8), "A", "ttxt"},
                              Case{QByteArray("\xC3\xBC"
                                              "abCARO",
                                              8),
                                   "\xC3\xBC"
                                   "ab",
                                   "CARO"},
                              Case{QByteArray("TEXTttx", 7), "", ""}, Case{QByteArray(), "", ""}}) {
        MacFileInfo info;
        EXPECT_TRUE(AppleDouble::getMacFileType(Write("._x", MakeAppleDouble(entry.finderInfo)), &info));
        EXPECT_EQ(info.type.toStdString(), entry.type);
        EXPECT_EQ(info.creator.toStdString(), entry.creator);
        EXPECT_EQ(info.finderInfo, entry.finderInfo.size() < 8 ? QByteArray() : entry.finderInfo);
    }
}

TEST_F(MacTest, EachDamageHasItsText)
{
    struct Case
    {
        QByteArray bytes;
        const char* text;
    };
    const QByteArray good = MakeAppleDouble("PDF CARO");
    for (const Case& entry :
         {Case{QByteArray(), "Can't read magic number from appledouble file"},
          Case{"\x00\x05\x16\x00" + good.mid(4), "Can't read magic number from appledouble file"},
          Case{good.left(6), "Invalid version of appledouble file"},
          Case{good.left(4) + BigEndian32(0x00010000) + good.mid(8), "Invalid version of appledouble file"},
          Case{good.left(23), "Invalid filler in the appledouble file"},
          Case{good.left(25), "Can't read entries number in the appledouble file"},
          Case{good.left(28), "Can't read version number of the entry"},
          Case{good.left(33), "Can't read offset of the entry"},
          Case{good.left(49), "Can't read version number of the entry"}}) {
        MacFileInfo info;
        info.type = "kept"_q;
        EXPECT_FALSE(AppleDouble::getMacFileType(Write("._x", entry.bytes), &info));
        EXPECT_EQ(info.type, "kept"_q);
        EXPECT_EQ(TakeErrors(), std::string("Morvane::AppleDouble::getMacFileType|") + entry.text);
    }
    MacFileInfo info;
    EXPECT_FALSE(AppleDouble::getMacFileType(At("missing"), &info));
    EXPECT_EQ(TakeErrors(), "Morvane::AppleDouble::getMacFileType|Can't open file for reading");
}

TEST_F(MacTest, AnnouncedLengthsAndOffsetsAreNotBelieved)
{
    struct Case
    {
        quint32 offset;
        quint32 length;
        int read;
    };
    for (const Case& entry : {Case{50, 0xFFFFFFFF, 12}, Case{0xFFFFFFFF, 32, 0}, Case{58, 32, 0}}) {
        QByteArray bytes = MakeAppleDouble("PDF CAROmore");
        bytes.replace(42, 8, BigEndian32(entry.offset) + BigEndian32(entry.length));
        MacFileInfo info;
        EXPECT_TRUE(AppleDouble::getMacFileType(Write("._x", bytes), &info));
        EXPECT_EQ(info.finderInfo.size(), entry.read) << entry.offset;
    }
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
