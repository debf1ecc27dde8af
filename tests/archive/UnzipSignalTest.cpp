#include "archive/UnzipThread.h"

#include "ZipSamples.h"

#include <QEventLoop>

using namespace Morvane;

// The way of a program with a window: signals are queued to the thread of the interface, and the handler
// answers there.
TEST_F(ArchiveTest, TheHandlerAnswersOnTheThreadOfTheInterface)
{
    Build({{"blocked", "1"}, {"b", "2"}});
    QDir().mkpath(GetTarget("blocked"));
    UnzipThread thread(mArchive, mTarget, 0);
    QThread* const interfaceThread = QThread::currentThread();
    int questions = 0;
    thread.setErrorHandler([&](const QString& text) {
        EXPECT_EQ(interfaceThread, QThread::currentThread());
        EXPECT_TRUE(text.startsWith("Can't write in %1/blocked. "_q.arg(mTarget)));
        return ++questions == 1 ? ActionOnError::Retry : ActionOnError::Skip;
    });
    QStringList names;
    QEventLoop loop;
    QObject::connect(&thread, &UnzipThread::Progress, &loop,
                     [&](int, const QString& name) { names.append(name); });
    QObject::connect(&thread, &QThread::finished, &loop, &QEventLoop::quit);
    thread.start();
    loop.exec();
    EXPECT_EQ(2, questions);
    EXPECT_EQ("blocked|blocked|b"_list, names);
    EXPECT_EQ("b"_list, thread.getExtractedFiles());
}
