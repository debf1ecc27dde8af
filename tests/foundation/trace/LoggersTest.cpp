#include "foundation/trace/FileLogger.h"
#include "foundation/trace/QtLogger.h"

#include "tests/support/Sandbox.h"
#include "tests/support/TestFiles.h"

#include <QLoggingCategory>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>
#include <vector>

using Morvane::LogLevel;

TEST(FileLogger, TextCanNotForgeALine)
{
    const Sandbox sandbox;
    const QString path = sandbox.GetPath(QStringLiteral("a.log"));
    Morvane::FileLogger(path).log(LogLevel::Error, QStringLiteral("A::b\u00E4"),
                                  QStringLiteral("1\r\n2\\n\t\x1B[0m"));
    const QByteArray text = ReadFile(path);
    const QRegularExpression form(QStringLiteral(
        "^\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{3}Z \\d+/\\d+ ERROR A::b\u00E4: (.*)\\n$"));
    const QRegularExpressionMatch match = form.match(QString::fromUtf8(text));
    ASSERT_TRUE(match.hasMatch()) << text.toStdString();
    EXPECT_EQ(match.captured(1), QStringLiteral("1\\r\\n2\\\\n\\t\\x1b[0m"));
}

TEST(FileLogger, ThreadsAndLaterLoggersAddWholeLines)
{
    const Sandbox sandbox;
    const QString path = sandbox.GetPath(QStringLiteral("a.log"));
    const QString message(200, QLatin1Char('x'));
    for (int round = 0; round < 2; ++round) {
        Morvane::FileLogger logger(path);
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([&] {
                for (int line = 0; line < 50; ++line)
                    logger.log(LogLevel::Debug, QStringLiteral("A"), message);
            });
        }
        for (std::thread& thread : threads)
            thread.join();
    }
    const QRegularExpression whole(QStringLiteral("^([^ ]+ \\d+/\\d+ DEBUG A: x{200}\n){400}$"));
    EXPECT_TRUE(whole.match(QString::fromUtf8(ReadFile(path))).hasMatch());
}

TEST(FileLogger, LargeFileIsSetAsideAndAMissingFolderTakesNoLines)
{
    const Sandbox sandbox;
    const QString path = sandbox.GetPath(QStringLiteral("a.log"));
    ASSERT_TRUE(WriteFile(path, QByteArray(9 * 1024 * 1024, 'x')));
    Morvane::FileLogger(path).log(LogLevel::Debug, QStringLiteral("A"), QStringLiteral("b"));
    EXPECT_LT(QFile(path).size(), 200);
    EXPECT_EQ(QFile(path + QStringLiteral(".old")).size(), 9 * 1024 * 1024);

    Morvane::FileLogger lost(sandbox.GetPath(QStringLiteral("none/a.log")));
    EXPECT_FALSE(lost.isOpen());
    lost.log(LogLevel::Debug, QStringLiteral("A"), QStringLiteral("b"));
}

namespace
{
QStringList sMessages;

void KeepMessage(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    const QString category = QString::fromLatin1(context.category);
    sMessages << QStringLiteral("%1 %2 %3").arg(QString::number(type), category, text);
    if (type == QtCriticalMsg)
        throw std::runtime_error("handler");
}
}  // namespace

TEST(QtLogger, LevelsFollowTheCategoryAndAThrowingHandlerIsStopped)
{
    Morvane::QtLogger logger;
    const QtMessageHandler previous = qInstallMessageHandler(KeepMessage);
    logger.log(LogLevel::Debug, QStringLiteral("A::b"), QStringLiteral("off by default"));
    QLoggingCategory::setFilterRules(QStringLiteral("morvane.debug=true"));
    logger.log(LogLevel::Debug, QStringLiteral("A::b"), QStringLiteral("%n 100%"));
    QLoggingCategory::setFilterRules(QString());
    logger.log(LogLevel::Error, QStringLiteral("A::b"), QStringLiteral("e"));
    logger.log(LogLevel::Assert, QStringLiteral("A::b"), QStringLiteral("a"));
    qInstallMessageHandler(previous);
    EXPECT_EQ(sMessages.join(QLatin1Char('|')),
              QStringLiteral("0 morvane A::b: %n 100%|1 morvane A::b: e|2 morvane A::b: a"));
}
