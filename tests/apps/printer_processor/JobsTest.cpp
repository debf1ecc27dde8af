#include "foundation/ipc/GPPIPCManager.h"
#include "hopbox/HopboxHandOff.h"
#include "hopbox/HopboxJobTicket.h"
#include "tests/support/PrinterProcessor.h"
#include "tests/support/Test.h"

#include <QJsonArray>
#include <QUrl>

// A receiver with an inbox in a sandbox of its own.
class JobsTest : public testing::Test
{
protected:
    JobsTest() : mReceiver(mSandbox, {"--inbox"_q, GetPath("in box")}) {}

    QString GetPath(const char* relative) const { return mSandbox.GetPath(QString::fromUtf8(relative)); }
    QStringList ListInbox() const
    {
        QStringList names = ListFolder(GetPath("in box"));
        names.removeOne(".printer-processor"_q);
        return names;
    }

    // Submits a job; gives where it was saved, or the empty path with the error that the receiver told of.
    QString Submit(const QString& location)
    {
        EXPECT_TRUE(HopboxHandOff::SubmitJob("Press"_q, location));
        return ReadSaved();
    }

    // Posts bytes as a message, past everything that makes tickets.
    QString Post(int32_t kind, const QByteArray& payload)
    {
        GPPIPCManager::Get()->Post(mReceiver.GetProcessID(), kind, payload);
        return ReadSaved();
    }

    QString ReadSaved()
    {
        const QJsonObject line = mReceiver.ReadLine();
        EXPECT_FALSE(line.isEmpty()) << "The receiver is gone.";
        mError = line.value("error"_q).toString();
        mLeftOut = line.value("left_out"_q).toArray();
        return line.value("saved"_q).toString();
    }

    const Sandbox mSandbox;
    PrinterProcessor mReceiver;
    QJsonArray mLeftOut;
    QString mError;
};

TEST_F(JobsTest, FilesAreCopiedUnderFreshNames)
{
    const QString job = GetPath("\u65E5\u672C 1.pdf");
    const QString native = QDir::toNativeSeparators(job);
    const QString inboxName = "in box/\u65E5\u672C 1.pdf"_q;
    WriteFile(job, QByteArray(600000, 'a'));
    const QString first = Submit(native);
    EXPECT_EQ(QDir::fromNativeSeparators(first), mSandbox.GetPath(inboxName));
    EXPECT_EQ(ReadFile(first), QByteArray(600000, 'a'));
    WriteFile(job, "");
    const QString second = Submit(native);
    const QString third = Submit(QString::fromLatin1(QUrl::fromLocalFile(job).toEncoded()));
    EXPECT_EQ(QFileInfo(second).fileName(), "\u65E5\u672C 1-2.pdf"_q);
    EXPECT_EQ(QFileInfo(third).fileName(), "\u65E5\u672C 1-3.pdf"_q);
    EXPECT_EQ(ListInbox().size(), 3);
    EXPECT_EQ(ReadFile(first).size(), 600000);
    EXPECT_EQ(ReadFile(second), "");
    EXPECT_EQ(ReadFile(third), "");
}

TEST_F(JobsTest, FoldersAreCopiedWithoutLinks)
{
    WriteFile(GetPath("package/a/\u00E4.txt"), "1");
    WriteFile(GetPath("package/.hidden"), "2");
    ASSERT_TRUE(QDir().mkpath(GetPath("package/empty")));
    const QString link = GetPath("package/loop.lnk");
    QFile::link(GetPath("package"), link);
    const bool isFile = QFileInfo(link).isShortcut();  // as Windows makes them: a file like any other
    QUrl url = QUrl::fromLocalFile(GetPath("package"));
    url.setQuery("isinddpkg=true"_q);
    for (const QString& location :
         {QDir::toNativeSeparators(GetPath("package")), QString::fromLatin1(url.toEncoded())}) {
        const QString saved = Submit(location);
        EXPECT_EQ(mError, QString());
        EXPECT_EQ(ReadFile(saved + "/a/\u00E4.txt"_q), "1");
        EXPECT_EQ(ReadFile(saved + "/.hidden"_q), "2");
        EXPECT_EQ(ListFolder(saved).size(), isFile ? 4 : 3);
        EXPECT_EQ(mLeftOut, isFile ? QJsonArray() : QJsonArray{"loop.lnk"_q});
        EXPECT_TRUE(isFile || mReceiver.ReadErrorLine().endsWith("neither files nor folders: loop.lnk"));
        EXPECT_EQ(ReadFile(saved + "/loop.lnk"_q), isFile ? ReadFile(link) : QByteArray("none"));
    }
    EXPECT_EQ(ListInbox(), "package|package-2"_list);
}

TEST_F(JobsTest, OddTicketsAreToldOfAndHurtNothing)
{
    WriteFile(GetPath("a.pdf"), "1");
    const QString root = GetPath(".");
    const QString file = GetPath("a.pdf");
    QStringList locations =
        "a.pdf|../a.pdf|/|C:\\|C:a.pdf|/dev/zero|/proc/self/mem/x|\\\\.\\pipe\\x|\n|-rf"_list;
    locations += "file:|file://host.example/a.pdf|file:///|file:///tmp/%00a|file:a.pdf|file:///%zz"_list;
    locations += {"http://host.example/a"_q,
                  GetPath("none.pdf"),
                  root,
                  GetPath("in box"),
                  QString(5000, QLatin1Char('/')) + root,
                  file + QString(5000, QLatin1Char('x')),
                  file + QChar(0) + "b"_q};
    for (const QString& location : locations) {
        EXPECT_EQ(Submit(location), QString()) << location.left(100).toStdString();
        EXPECT_FALSE(mError.isEmpty()) << location.left(100).toStdString();
    }
    HopboxJobTicket ticket;
    ticket.userName = ticket.printerName = ticket.portName = "x"_q;
    ticket.jobPath = GetPath("a.pdf");
    const QByteArray invalid = ticket.ToText().toUtf8();
    for (const QByteArray& payload :
         {QByteArray(), QByteArray("\xFF\xFE\0\0", 4), QByteArray(50000, '"'), invalid, invalid.left(50)}) {
        EXPECT_EQ(Post(145, payload), QString());
        EXPECT_FALSE(mError.isEmpty());
    }
    for (const int32_t kind : {0, -1, 146, 147})
        EXPECT_EQ(Post(kind, "{\"saved\":\"x\"}"), QString());
    EXPECT_EQ(ListInbox(), QStringList());
    EXPECT_NE(Submit(GetPath("a.pdf")), QString());
    EXPECT_EQ(ListInbox(), QStringList("a.pdf"_q));
}
