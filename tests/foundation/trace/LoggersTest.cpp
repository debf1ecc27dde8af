#include "foundation/trace/FileLogger.h"
#include "foundation/trace/QtLogger.h"

#include "tests/support/Test.h"
#include "tests/support/Threads.h"

#include <QLoggingCategory>
#include <QRegularExpression>

#include <stdexcept>

using Morvane::LogLevel;

class FileLogger : public testing::Test
{
protected:
    const Sandbox sandbox;
    const QString path = sandbox.GetPath("a.log"_q);
};

TEST_F(FileLogger, TextCanNotForgeALine)
{
    Morvane::FileLogger(path).log(LogLevel::Error, "A::b\u00E4"_q, "1\r\n2\\n\t\x1B[0m"_q);
    const QByteArray text = ReadFile(path);
    const QRegularExpression form(
        "^\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3}Z \\d+/\\d+ ERROR A::b\u00E4: (.*)\\n$"_q);
    const QRegularExpressionMatch match = form.match(QString::fromUtf8(text));
    ASSERT_TRUE(match.hasMatch()) << text.toStdString();
    EXPECT_EQ(match.captured(1), "1\\r\\n2\\\\n\\t\\x1b[0m"_q);
}

TEST_F(FileLogger, ThreadsAndLaterLoggersAddWholeLines)
{
    const QString message(200, QLatin1Char('x'));
    for (int round = 0; round < 2; ++round) {
        Morvane::FileLogger logger(path);
        RunInThreads(4, [&](int) {
            for (int line = 0; line < 50; ++line)
                logger.log(LogLevel::Debug, "A"_q, message);
        });
    }
    const QRegularExpression whole("^([^ ]+ \\d+/\\d+ DEBUG A: x{200}\n){400}$"_q);
    EXPECT_TRUE(whole.match(QString::fromUtf8(ReadFile(path))).hasMatch());
}

TEST_F(FileLogger, LargeFileIsSetAsideAndAMissingFolderTakesNoLines)
{
    ASSERT_TRUE(WriteFile(path, QByteArray(9 * 1024 * 1024, 'x')));
    Morvane::FileLogger(path).log(LogLevel::Debug, "A"_q, "b"_q);
    EXPECT_LT(QFile(path).size(), 200);
    EXPECT_EQ(QFile(path + ".old"_q).size(), 9 * 1024 * 1024);

    Morvane::FileLogger lost(sandbox.GetPath("none/a.log"_q));
    EXPECT_FALSE(lost.isOpen());
    lost.log(LogLevel::Debug, "A"_q, "b"_q);
}

static QStringList sMessages;

static void KeepMessage(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    const QString category = QString::fromLatin1(context.category);
    sMessages << "%1 %2 %3"_q.arg(QString::number(type), category, text);
    if (type == QtCriticalMsg)
        throw std::runtime_error("handler");
}

TEST(QtLogger, LevelsFollowTheCategoryAndAThrowingHandlerIsStopped)
{
    Morvane::QtLogger logger;
    const QtMessageHandler previous = qInstallMessageHandler(KeepMessage);
    logger.log(LogLevel::Debug, "A::b"_q, "off by default"_q);
    QLoggingCategory::setFilterRules("morvane.debug=true"_q);
    logger.log(LogLevel::Debug, "A::b"_q, "%n 100%"_q);
    QLoggingCategory::setFilterRules(QString());
    logger.log(LogLevel::Error, "A::b"_q, "e"_q);
    logger.log(LogLevel::Assert, "A::b"_q, "a"_q);
    qInstallMessageHandler(previous);
    EXPECT_EQ(sMessages.join(QLatin1Char('|')),
              "0 morvane A::b: %n 100%|1 morvane A::b: e|2 morvane A::b: a"_q);
}
