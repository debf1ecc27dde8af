#include "tests/support/PrinterProcessor.h"

#include "CommandFixture.h"

class ReceiverCommandsTest : public CommandTest
{
protected:
    ReceiverCommandsTest()
    {
        qputenv("XDG_CONFIG_HOME", GetPath("config").toUtf8());
        EXPECT_EQ(Create("Press"_q, "--json"_list), 0);
        mKey = GetResult()["Key"_q].toString();
    }
    ~ReceiverCommandsTest() override
    {
        Run({"receiver"_q, "remove"_q, mKey});
        qunsetenv("XDG_CONFIG_HOME");
    }

    int Install(const QStringList& more = {})
    {
        return Run("receiver|install|Press|--inbox|in|--no-start|--json"_list + more);
    }

    // The sandbox's installed receivers: whether each runs.
    QList<bool> GetStatus()
    {
        EXPECT_EQ(Run({"receiver"_q, "status"_q, "--json"_q}), 0);
        QList<bool> running;
        for (const QJsonValue& receiver : GetResult().toArray())
            running.append(receiver["IsRunning"_q].toBool());
        return running;
    }

    QString mKey;
};

TEST_F(ReceiverCommandsTest, AReceiverIsInstalledOnceAndSaysWhetherItRuns)
{
    EXPECT_EQ(GetStatus(), QList<bool>());
    EXPECT_EQ(Run({"receiver"_q, "remove"_q, "Press"_q}), 1);
    EXPECT_TRUE(mError.contains("No receiver of \"Press\" starts with the log-on."));
    for (int count = 0; count < 2; ++count)
        ASSERT_EQ(Install(), 0);
    EXPECT_FALSE(GetResult()["IsStarted"_q].toBool());
    EXPECT_TRUE(GetResult()["Place"_q].toString().contains(mKey));
    EXPECT_EQ(GetStatus(), QList<bool>({false}));
    {
        const PrinterProcessor other(mSandbox, {"--hopbox"_q, "Other"_q});
        EXPECT_EQ(GetStatus(), QList<bool>({false}));
        const PrinterProcessor own(mSandbox, {"--hopbox"_q, mKey});
        EXPECT_EQ(GetStatus(), QList<bool>({true}));
    }
    ASSERT_EQ(Run({"delete"_q, "Press"_q}), 0);
    EXPECT_EQ(Run({"receiver"_q, "status"_q}), 0);
    EXPECT_TRUE(mOutput.contains(mKey.toUtf8() + " (deleted)"));
    EXPECT_EQ(Run({"receiver"_q, "remove"_q, mKey}), 0);
    EXPECT_EQ(GetStatus(), QList<bool>());
}

TEST_F(ReceiverCommandsTest, WhatCanNotStartIsRefused)
{
    const std::tuple<QStringList, int, const char*> cases[] = {
        {"receiver|install|None|--inbox|in"_list, 1, "No Hopbox is registered as \"None\"."},
        {"receiver|install|Press"_list, 2, "--inbox"},
        {"receiver|install|Press|--inbox="_list, 2, "\"--inbox\" takes a folder, not \"\"."},
        {"receiver|install|Press|--inbox|in|--run|no-such"_list, 2, "\"--run\" takes a program, not"},
        {"receiver|install|Press|--inbox|in|--mode|banana"_list, 2,
         "takes rights such as 0640, not \"banana\""},
        {"receiver|install|Press|--inbox|in|--attempts|2"_list, 2, "\"--attempts\" is for \"--run\"."},
    };
    for (const auto& [call, status, error] : cases) {
        EXPECT_EQ(Run(call), status) << error;
        EXPECT_TRUE(mError.contains(error));
    }
    EXPECT_EQ(GetStatus(), QList<bool>());
}

TEST_F(ReceiverCommandsTest, EachReceiverHasAnInboxOfItsOwn)
{
    ASSERT_EQ(Create("Other"_q), 0);
    QDir().mkpath(GetPath("in"));
    ASSERT_EQ(Install(), 0);
    for (const char* inbox : {"in", "./in/", "x/../in"}) {
        EXPECT_EQ(Run("receiver|install|Other|--no-start|--inbox"_list + QStringList(QLatin1String(inbox))),
                  1);
        EXPECT_TRUE(mError.contains("is the inbox of the receiver of \"Press\" already"));
    }
    EXPECT_EQ(Install(), 0) << "its own may be written anew";
    EXPECT_EQ(GetStatus(), QList<bool>({false}));
}

TEST_F(ReceiverCommandsTest, AnotherRootsReceiversAreNotSeenAndNotTakenAway)
{
    ASSERT_EQ(Install(), 0);
    {
        const Sandbox other;
        EXPECT_EQ(GetStatus(), QList<bool>());
        Run({"doctor"_q, "--json"_q});
        EXPECT_FALSE(mOutput.contains(mKey.toUtf8()));
        EXPECT_EQ(Run({"receiver"_q, "remove"_q, mKey}), 1);
    }
    EXPECT_EQ(GetStatus(), QList<bool>({false}));
}
