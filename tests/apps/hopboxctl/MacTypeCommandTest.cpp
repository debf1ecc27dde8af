#include "CommandFixture.h"

TEST_F(CommandTest, MacTypePrintsTheTypeOrSaysWhatIsWrong)
{
    const QString file = GetPath("Gr\u00F6\u00DFe");
    const QString companion = GetPath("._Gr\u00F6\u00DFe");
    WriteFile(file, "data");
    EXPECT_EQ(Run({"mactype"_q, file}), 1);
    EXPECT_EQ(mOutput + mError, "hopboxctl: \"" + file.toUtf8() + "\" has no AppleDouble file.\n");

    const QByteArray header("\0\5\26\7\0\2\0\0................\0\1\0\0\0\11\0\0\0\46\0\0\0\10", 38);
    WriteFile(companion, header + "PDF CARO");
    EXPECT_EQ(Run({"mactype"_q, file}), 0);
    EXPECT_EQ(mOutput + mError, "type: PDF \ncreator: CARO\nextension: pdf\n");
    Run({"mactype"_q, "--json"_q, file});
    EXPECT_TRUE(
        mOutput.contains("\"result\":{\"creator\":\"CARO\",\"extension\":\"pdf\",\"type\":\"PDF \"}"));

    WriteFile(GetPath("types.xml"),
              "<MacFileTypes><Record Type=\"PDF \" Creator=\"CARO\" PCExtension=\"own\"/></MacFileTypes>");
    EXPECT_EQ(Run({"mactype"_q, "--table"_q, "types.xml"_q, file}), 0);
    EXPECT_TRUE(mOutput.endsWith("extension: own\n"));

    WriteFile(companion, "nonsense");
    EXPECT_EQ(Run({"mactype"_q, file}), 1);
    EXPECT_EQ(mOutput + mError, "hopboxctl: Can't read magic number from appledouble file\n");
    EXPECT_EQ(Run({"mactype"_q}), 2);
}

// A pipe under the name would be waited for.
TEST_F(CommandTest, MacTypeSaysWhatIsInThePlaceOfAFile)
{
    for (const char* place : {"folder", "._folder"})
        QDir().mkpath(GetPath(place));
    QStringList kinds = {"folder"_q};
    if (QProcess::execute("mkfifo"_q, {GetPath("pipe"), GetPath("._pipe")}) == 0)
        kinds.append("pipe"_q);
    WriteFile(GetPath("a"), "data");
    for (const QString& kind : kinds) {
        EXPECT_EQ(Run({"mactype"_q, "a"_q, "--table"_q, kind}), 1);
        EXPECT_TRUE(mError.contains("\"" + kind.toUtf8() + "\": it is a " + kind.toUtf8()));
        EXPECT_EQ(Run({"mactype"_q, "._"_q + kind}), 1);
        EXPECT_TRUE(mError.contains("\": it is a " + kind.toUtf8()));
    }
}
