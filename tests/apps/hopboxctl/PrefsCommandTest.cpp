#include "foundation/core/GEncoding.h"

#include "CommandFixture.h"

#include <vector>

namespace
{
class PrefsCommandTest : public CommandTest
{
protected:
    struct Answer
    {
        int status;
        std::string output, error;
    };

    void Write(const QString& text, const GEncodingRef& encoding) const
    {
        ASSERT_TRUE(WriteFile(GetPath(), encoding->Encode(text)));
    }

    // Runs "prefs"; "FILE" stands for the file's path. Messages show it as FILE, too.
    Answer Run(const std::vector<const char*>& arguments)
    {
        QStringList all = {"prefs"_q};
        for (const char* argument : arguments)
            all.append(qstrcmp(argument, "FILE") == 0 ? GetPath() : QString::fromUtf8(argument));
        const int status = CommandTest::Run(all);
        return {status, mOutput.toStdString(), mError.replace(GetPath().toUtf8(), "FILE").toStdString()};
    }

    QString GetPath() const { return CommandTest::GetPath("M\u00FCller.prefs"); }
};

const QString cDocument = QStringLiteral(
    R"(#BEGINPREFS
"B)"
    "\u00E9"
    R"(" #BEGINDICT
"Path" "C:\\x\n\t"
"Dict" "#BEGINDICT\n\"List\" \"#BEGINTABLE\\n\\\"1\\\"\\n\\\"2\\\"\\n\"\n#ENDDICT\n"
"Text" "#BEGINDICT is no block"
#ENDDICT
"A" #BEGINDICT
"On" "true"
#ENDDICT
#ENDPREFS
)");
}  // namespace

TEST_F(PrefsCommandTest, PrintsWithBlocksUnfolded)
{
    Write(QChar(QChar::ByteOrderMark) + cDocument, GEncoding::GetUTF16BigEndian());
    const Answer text = Run({"FILE"});
    EXPECT_EQ(text.error, "");
    EXPECT_EQ(text.output,
              "[A]\nOn = true\n[B\xC3\xA9]\nDict = {\n    List = [\n        - 1\n        - 2\n    ]\n}\n"
              "Path = C:\\x\\x0d\\x0a\\x09\nText = #BEGINDICT is no block\n");
    const Answer json = Run({"--json", "FILE"});
    EXPECT_EQ(json.error, "");
    EXPECT_EQ(QJsonDocument(GetResult().toObject()).toJson(QJsonDocument::Compact).replace(" ", ""),
              "{\"A\":{\"On\":\"true\"},\"B\xC3\xA9\":{\"Dict\":{\"List\":[\"1\",\"2\"]},"
              "\"Path\":\"C:\\\\x\\r\\n\\t\",\"Text\":\"#BEGINDICTisnoblock\"}}");
}

TEST_F(PrefsCommandTest, SaysWhereTheFileIsDamaged)
{
    const QString document =
        "#BEGINPREFS\r\n\"A\" #BEGINDICT\r\n\"k\" \"v\"\r\n#ENDDICT\r\n\"B\" #BEGINDICT\r\n\"k\"\r\n"_q;
    Write(document, GEncoding::GetUTF8());
    const std::string message = "hopboxctl: FILE: damaged at line 6 (byte 64)\n";
    EXPECT_EQ(Run({"FILE"}).output, "[A]\nk = v\n");
    EXPECT_EQ(Run({"FILE"}).status, 1);
    EXPECT_EQ(Run({"FILE"}).error, message);
    EXPECT_EQ(Run({"FILE", "--get", "A", "k"}).output, "v\n");
    EXPECT_EQ(Run({"FILE", "--get", "A", "k"}).error, message);
    EXPECT_NE(Run({"FILE", "--json"}).output.find("\"damaged\":{\"Byte\":64,"), std::string::npos);
    for (const std::vector<const char*>& set : {std::vector<const char*>{"FILE", "--set", "A", "k", "w"},
                                                {"--shared", "FILE", "--set", "A", "k", "w"}}) {
        EXPECT_EQ(Run(set).status, 1);
        EXPECT_EQ(Run({"FILE"}).output, "[A]\nk = v\n") << "a damaged file stays as it is";
    }
    Write("nonsense"_q, GEncoding::GetUTF8());
    EXPECT_EQ(Run({"FILE"}).error, "hopboxctl: FILE: damaged at line 1 (byte 0)\n");
    EXPECT_EQ(Run({"FILE.missing"}).status, 1);
}

TEST_F(PrefsCommandTest, SetsWhatGetGives)
{
    const std::tuple<std::vector<const char*>, const char*, const char*> cases[] = {
        {{}, "Path", "--json"},
        {{}, "New\xC3\xA9", "\xE4\xB8\xAD \"x\""},
        {{"--shared"}, "Path", "shared"},
        {{"--shared"}, "Dict", ""},
    };
    Write(cDocument, GEncoding::GetPlatform8Bit());
    for (const auto& [access, key, value] : cases) {
        std::vector<const char*> set = access;
        set.insert(set.end(), {"FILE", "--set", "B\xC3\xA9", key, value});
        EXPECT_EQ(Run(set).error, "");
        EXPECT_EQ(Run({"FILE", "--get", "B\xC3\xA9", key}).output, std::string(value) + '\n');
    }
    EXPECT_EQ(Run({"FILE"}).output,
              "[A]\nOn = true\n[B\xC3\xA9]\nDict = \nNew\xC3\xA9 = \xE4\xB8\xAD \"x\"\nPath = shared\n"
              "Text = #BEGINDICT is no block\n");
    EXPECT_TRUE(QFile::exists(GetPath() + "lock"_q));
}

TEST_F(PrefsCommandTest, WrongCallsAndMissingKeysFail)
{
    Write(cDocument, GEncoding::GetPlatform8Bit());
    EXPECT_EQ(Run({"FILE", "--get", "A", "Off"}).error,
              "hopboxctl: There is no \"Off\" in the group \"A\".\n");
    for (const std::vector<const char*>& call : {std::vector<const char*>{},
                                                 {"FILE", "other"},
                                                 {"FILE", "--get", "A"},
                                                 {"FILE", "--set", "A", "On"},
                                                 {"FILE", "--shared"},
                                                 {"FILE", "--get", "A", "On", "--get", "A", "On"},
                                                 {"FILE", "--get", "A", "On", "--set", "A", "On", "x"},
                                                 {"FILE", "--other"}}) {
        const Answer answer = Run(call);
        EXPECT_EQ(answer.status, 2);
        EXPECT_NE(answer.error.find("\"hopboxctl prefs --help\" tells"), std::string::npos);
    }
}
