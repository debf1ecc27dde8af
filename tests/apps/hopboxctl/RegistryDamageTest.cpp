#include "CommandFixture.h"

static QByteArray GetUTF16(const char* text)
{
    const QString units = QString::fromLatin1(text);
    return QByteArray(reinterpret_cast<const char*>(units.utf16()), units.size() * 2);
}

static QByteArray Replace(QByteArray bytes, const char* before, const char* after)
{
    const QByteArray wanted = GetUTF16(before);
    return bytes.replace(bytes.indexOf(wanted), wanted.size(), GetUTF16(after));
}

// The sandbox has a registry with three Hopboxes.
class RegistryDamage : public CommandTest
{
protected:
    RegistryDamage()
    {
        for (const char* name : {"One", "Two", "Three"})
            EXPECT_EQ(Create(name), 0);
        mWhole = ReadFile(mFile);
    }

    int Create(const char* name) { return CommandTest::Create(QLatin1String(name), "--json"_list); }

    bool Says(const char* what) const
    {
        return mError.contains(what) && mError.contains(QDir::toNativeSeparators(mFile).toUtf8());
    }

    const QString mFile =
        GetPath("AppData/Morvane Prefs Folder/Printer Processor/MorvanePrinterProcessor.prefs");
    const QString mCopy = mFile + ".damaged"_q;
    QByteArray mWhole;
};

TEST_F(RegistryDamage, IsToldByWhoeverReadsAndKeptBeforeTheFirstChange)
{
    const struct
    {
        const char* what;
        std::function<QByteArray(const QByteArray&)> damage;
        bool isKept = true;
    } cases[] = {
        {"cut in half", [](const QByteArray& whole) { return whole.left(whole.size() / 2); }},
        {"cut before the end", [](const QByteArray& whole) { return whole.left(whole.size() - 14); }},
        {"an odd byte behind", [](const QByteArray& whole) { return whole + 'x'; }},
        {"wrong first mark", [](const QByteArray& whole) { return Replace(whole, "#BEGINP", "#BEGIMP"); }},
        {"wrong group", [](const QByteArray& whole) { return Replace(whole, "#BEGIND", "#BEGINE"); }},
        {"a value that ends early", [](const QByteArray& whole) { return Replace(whole, "\\\"", "x\""); }},
        {"wrong order of bytes",
         [](const QByteArray& whole) { return QByteArray("\xFE\xFF") + whole.mid(2); }},
        {"no mark of the encoding", [](const QByteArray& whole) { return whole.mid(2); }},
        {"bytes of another encoding",
         [](const QByteArray&) {
             return QByteArray(
                 "\xEF\xBB\xBF#BEGINPREFS\r\n\"G\"\r\n#BEGINDICT\r\n\"k\" \"\xE4\"\r\n#ENDDICT\r\n#ENDPREFS");
         }},
        {"nothing in it", [](const QByteArray&) { return QByteArray(); }, false},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.what);
        const QByteArray damaged = each.damage(mWhole);
        WriteFile(mFile, damaged);
        QFile::remove(mCopy);
        for (const QStringList& reading :
             {"list"_list, "list|--json"_list, "origins"_list, "receiver|status"_list}) {
            EXPECT_EQ(Run(reading), 1);
            EXPECT_TRUE(Says(" is damaged at line "));
            EXPECT_EQ(mError.contains("will be kept as"), each.isKept);
            if (reading.contains("--json"_q)) {
                EXPECT_EQ(GetAnswer().value("damaged"_q)["File"_q].toString(),
                          QDir::toNativeSeparators(mFile));
            }
        }
        EXPECT_EQ(ReadFile(mFile), damaged);

        EXPECT_EQ(Create("New"), 0);
        EXPECT_EQ(Says(" kept as "), each.isKept);
        const QJsonObject notice = GetAnswer().value("damaged"_q).toObject();
        EXPECT_EQ(notice.value("IsKept"_q).toBool(), each.isKept);
        EXPECT_EQ(ReadFile(mCopy), each.isKept ? damaged : QByteArray("none"));
        EXPECT_TRUE(!each.isKept || QFile::permissions(mCopy) == QFile::permissions(mFile + "lock"_q))
            << "for its owner only";
        EXPECT_EQ(Run({"list"_q}), 0) << "It is whole again.";
        EXPECT_TRUE(mError.isEmpty() && mOutput.contains("New"));
        ASSERT_EQ(Run({"delete"_q, "New"_q}), 0);
    }
}

TEST_F(RegistryDamage, IsToldByTheCommandsAboutOneHopbox)
{
    WriteFile(mFile, mWhole.left(mWhole.size() - 14));
    for (const char* command : {"show", "check"}) {
        EXPECT_EQ(Run({QString::fromLatin1(command), "Two"_q, "--json"_q}), 1);
        EXPECT_TRUE(Says("will be kept as") && mOutput.contains("\"damaged\":{"));
    }
    WriteFile(mFile, mWhole);
    ASSERT_EQ(Run({"export"_q, "Two"_q, "Two.hopbox"_q}), 0);
    WriteFile(mFile, mWhole.left(mWhole.size() - 14));
    for (const QStringList& failing :
         {"submit|Two|a.joboptions"_list, "receiver|remove|Two"_list, "import|Two.hopbox"_list,
          "create|Two|--job-options|a.joboptions"_list}) {
        EXPECT_EQ(Run(failing), 1);
        EXPECT_TRUE(Says("will be kept as")) << failing.first().toStdString();
    }
    EXPECT_EQ(Run({"set"_q, "Two"_q, "IsActive=false"_q}), 0);
    EXPECT_TRUE(Says("is kept as"));
    WriteFile(mFile, mWhole.left(mWhole.size() - 14));
    EXPECT_EQ(Run({"delete"_q, "Two"_q}), 0);
    EXPECT_TRUE(Says("is kept as"));
    WriteFile(mFile, ReadFile(mFile) + 'x');
    EXPECT_EQ(Run({"import"_q, "Two.hopbox"_q}), 0);
    EXPECT_TRUE(Says("is kept as"));
}

TEST_F(RegistryDamage, KeepsTheNewestThreeAndChangesNothingThatItCannotKeep)
{
    for (const char* mark : {"1", "2", "3", "4", "4"}) {
        WriteFile(mFile, mWhole + mark);
        EXPECT_EQ(Run({"set"_q, "One"_q, "IsActive=false"_q}), 0);
    }
    EXPECT_EQ(ReadFile(mCopy), mWhole + "4") << "The same is not kept twice.";
    EXPECT_EQ(ReadFile(mCopy + ".1"_q), mWhole + "3");
    EXPECT_EQ(ReadFile(mCopy + ".2"_q), mWhole + "2");
    const QString folder = QFileInfo(mFile).path();
    EXPECT_EQ(QDir(folder).entryList({"*.damaged*"_q, "*.new"_q}).size(), 3);

    // As after a copy that did not get its name: the next attempt pushes no other one out.
    QFile::remove(mCopy);
    WriteFile(mFile, mWhole + "5");
    EXPECT_EQ(Run({"set"_q, "One"_q, "IsActive=false"_q}), 0);
    EXPECT_EQ(ReadFile(mCopy) + ReadFile(mCopy + ".1"_q) + ReadFile(mCopy + ".2"_q),
              mWhole + "5" + mWhole + "3" + mWhole + "2");

    ASSERT_EQ(Run({"export"_q, "One"_q, "One.hopbox"_q}), 0);
    QFile::remove(mCopy);
    QDir().mkpath(mCopy + "/x"_q);
    WriteFile(mFile, mWhole + "5");
    for (const char* call :
         {"set|One|IsActive=true", "rename|One|Four", "remove|One", "delete|One", "origins|--none",
          "create|Six|--job-options|a.joboptions", "import|One.hopbox|--name|Five"}) {
        EXPECT_EQ(Run(QString::fromLatin1(call).split(QLatin1Char('|')) + "--json"_list), 1) << call;
        EXPECT_TRUE(Says(" is damaged at line ")) << call << mError.toStdString();
        EXPECT_EQ(GetAnswer().value("damaged"_q)["IsKept"_q], QJsonValue(false)) << call;
        EXPECT_EQ(ReadFile(mFile), mWhole + "5");
    }
}

TEST_F(RegistryDamage, OneThatCannotBeReadIsNotTakenForEmpty)
{
    const QString archive = GetPath("AppData/Morvane/Hopbox/Cache/Settings/One/Project.hopbox");
    ASSERT_EQ(Run({"export"_q, "One"_q, "Carried.hopbox"_q}), 0);
    WriteFile(QFileInfo(archive).path() + "/Project.making"_q, "");  // killed before the end
    const QMap<QString, QByteArray> before = ReadTree(QFileInfo(archive).path());
    for (const QString& inTheWay : {mFile, mFile + "lock"_q}) {
        SCOPED_TRACE(inTheWay.toStdString());
        ASSERT_TRUE(QFile::rename(inTheWay, inTheWay + ".away"_q) && QDir().mkpath(inTheWay));
        for (const char* call :
             {"list", "list|--names", "show|One", "check|One", "origins", "submit|One|a.joboptions",
              "set|One|IsActive=false", "rename|One|Four", "remove|One", "restore|One", "delete|One",
              "export|One|b.hopbox", "import|Carried.hopbox|--name|Five", "receiver|install|One|--inbox|in",
              "create|Six|--job-options|a.joboptions"}) {
            EXPECT_EQ(Run(QString::fromLatin1(call).split(QLatin1Char('|')) + "--json"_list), 1) << call;
            EXPECT_TRUE(Says("what Hopboxes there are is not known")) << call;
            const QJsonValue unread = GetAnswer().value("unread"_q);
            EXPECT_EQ(unread["File"_q].toString(), QDir::toNativeSeparators(mFile));
            EXPECT_FALSE(unread["Reason"_q].toString().isEmpty());
        }
        EXPECT_EQ(Run({"doctor"_q}), 1);
        EXPECT_EQ(mOutput.count("what Hopboxes there are is not known"), 1);
        EXPECT_FALSE(mOutput.contains("project folder"));
        EXPECT_EQ(ReadTree(QFileInfo(archive).path()), before);
        ASSERT_TRUE(QDir().rmdir(inTheWay) && QFile::rename(inTheWay + ".away"_q, inTheWay));
    }
    EXPECT_EQ(ReadFile(mFile), mWhole);
    WriteFile(mFile, mWhole.left(mWhole.size() / 4));
    EXPECT_EQ(Run({"doctor"_q, "--json"_q}), 1);
    EXPECT_TRUE(Says("is damaged"));
    EXPECT_EQ(GetAnswer().value("damaged"_q)["File"_q].toString(), QDir::toNativeSeparators(mFile));
    EXPECT_FALSE(mOutput.contains("project folder"));
}
