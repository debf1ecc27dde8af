#include "CommandFixture.h"

#include <QRegularExpression>
#include <QStandardPaths>

// With a service manager that only notes what it is asked for, and fails when it is told to.
class ReceiverUnitTest : public CommandTest
{
protected:
    ReceiverUnitTest()
    {
        qputenv("XDG_CONFIG_HOME", GetPath("config").toUtf8());
        qputenv("PATH", GetPath("bin").toUtf8() + ':' + mPath);
        WriteProgram(GetPath("bin/systemctl"), "#!/bin/sh\necho \"$@\" >> '" + GetPath("asked").toUtf8() +
                                                   "'\n[ ! -e '" + GetPath("fail").toUtf8() +
                                                   "' ] || { echo no bus; exit 1; }\n");
        EXPECT_EQ(Create(mName, "--json"_list), 0);
        mKey = GetResult()["Key"_q].toString();
        mUnit = "hopbox-receiver-"_q + mKey + ".service"_q;
    }
    ~ReceiverUnitTest() override
    {
        qputenv("PATH", mPath);
        qunsetenv("XDG_CONFIG_HOME");
    }

    const QByteArray mPath = qgetenv("PATH");
    const QString mName = "Pr\u00E4ss 100%i $HOME \"x\" \\"_q;
    QString mKey;
    QString mUnit;
};

TEST_F(ReceiverUnitTest, TheUnitIsOneThatTheSystemTakesWhateverTheNames)
{
    const QString inbox = GetPath("in %h $HOME \"\\ \u65E5");
    ASSERT_EQ(Run({"receiver"_q, "install"_q, mName, "--inbox"_q, inbox, "--mode"_q, "0640"_q, "--run"_q,
                   "cp"_q, "--run-argument"_q, "-t"_q, "--run-argument"_q, "; x"_q, "--retry"_q, "2"_q,
                   "--attempts"_q, "3"_q}),
              0);
    const QString file = GetPath("config/systemd/user/") + mUnit;
    EXPECT_EQ(mOutput, file.toUtf8() + '\n');
    const QByteArray unit = ReadFile(file);
    const QString shown =
        QString(inbox).replace("\\"_q, "\\\\"_q).replace("%"_q, "%%"_q).replace("\""_q, "\\\""_q);
    const QString words =
        "\"--hopbox\" \"%1\" \"--inbox\" \"%2\" \"--mode\" \"0640\" \"--retry\" \"2\" \"--attempts\" \"3\" "
        "\"--run\" \"%3\" "
        "\"--run-argument=-t\" \"--run-argument=; x\"\n"_q;
    EXPECT_TRUE(unit.contains(words.arg(mKey, shown, QStandardPaths::findExecutable("cp"_q)).toUtf8()))
        << unit.constData();
    EXPECT_TRUE(unit.contains("Environment=\"MORVANE_ROOT=" + mSandbox.GetPath().toUtf8() + "\"\n"))
        << unit.constData();
    EXPECT_EQ(QFile::symLinkTarget(GetPath("config/systemd/user/default.target.wants/") + mUnit), file);
    EXPECT_EQ(ReadFile(GetPath("asked")), "--user daemon-reload\n--user restart " + mUnit.toUtf8() + '\n');

    QProcess verify;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_RUNTIME_DIR"_q, mSandbox.GetPath());
    environment.insert("PATH"_q, QString::fromUtf8(mPath));
    verify.setProcessEnvironment(environment);
    verify.start("systemd-analyze"_q, {"--user"_q, "verify"_q, file});
    ASSERT_TRUE(verify.waitForFinished()) << "systemd-analyze is missing";
    EXPECT_EQ(verify.readAllStandardError().toStdString(), "");
    EXPECT_EQ(verify.exitCode(), 0);

    ASSERT_EQ(Run({"receiver"_q, "remove"_q, mName}), 0);
    EXPECT_TRUE(
        ReadFile(GetPath("asked")).contains("--user stop " + mUnit.toUtf8() + "\n--user daemon-reload\n"));
    EXPECT_EQ(ReadTree(GetPath("config")).keys().filter(mKey), QStringList());
}

TEST_F(ReceiverUnitTest, WithoutAServiceManagerItStartsWithTheNextLogOn)
{
    WriteFile(GetPath("fail"), "");
    ASSERT_EQ(Run({"receiver"_q, "install"_q, mName, "--inbox"_q, "in"_q}), 0);
    EXPECT_EQ(mError,
              "hopboxctl: warning: The receiver starts with the next log-on, not now. systemctl: no bus\n");
    EXPECT_TRUE(QFile::exists(GetPath("config/systemd/user/") + mUnit));
    WriteFile(GetPath("asked"), "");
    ASSERT_EQ(Run({"receiver"_q, "install"_q, mName, "--inbox"_q, "in"_q, "--no-start"_q}), 0);
    EXPECT_EQ(ReadFile(GetPath("asked")), "");
    WriteFile(GetPath("blocked"), "");
    qputenv("XDG_CONFIG_HOME", GetPath("blocked").toUtf8());
    EXPECT_EQ(Run({"receiver"_q, "install"_q, mName, "--inbox"_q, "in"_q}), 1);
    EXPECT_TRUE(mError.contains("can't be written"));
}

TEST_F(ReceiverUnitTest, TheDoctorLooksAtWhatStartsWithTheLogOn)
{
    const QString inbox = GetPath("in % \"x\" \\");
    const auto look = [this] {
        Run({"doctor"_q, "--json"_q});
        QStringList kinds;
        for (const QJsonValue& finding : GetResult().toArray())
            kinds.append(finding["kind"_q].toString());
        return kinds.filter(QRegularExpression("^(inbox|start)-"_q));
    };
    ASSERT_EQ(Run({"receiver"_q, "install"_q, mName, "--inbox"_q, inbox, "--no-start"_q}), 0);
    EXPECT_EQ(look(), QStringList());
    WriteFile(inbox, "a file");
    EXPECT_EQ(look(), QStringList("inbox-unusable"_q));
    QFile::remove(inbox);
    ASSERT_TRUE(QDir().mkpath(inbox) &&
                QFile::setPermissions(inbox, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner |
                                                 QFile::WriteGroup | QFile::WriteOther));
    EXPECT_EQ(look(), QStringList("inbox-open"_q));
    ASSERT_TRUE(QFile::setPermissions(
        inbox, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::WriteGroup));
    EXPECT_EQ(look(), QStringList()) << "a group may share it";

    const QString file = GetPath("config/systemd/user/") + mUnit;
    const QByteArray unit = ReadFile(file);
    WriteFile(file, QByteArray(unit).replace("PrinterProcessorWin.exe", "gone"));
    EXPECT_EQ(look(), QStringList("start-broken"_q));
    WriteFile(file, QByteArray(unit).replace("MORVANE_ROOT=", "MORVANE_ROOT=/other"));
    EXPECT_EQ(look(), QStringList()) << "it is another root's";
    WriteFile(file, unit);
    ASSERT_EQ(Run({"delete"_q, mName}), 0);
    EXPECT_EQ(look(), QStringList("start-left"_q));
}
