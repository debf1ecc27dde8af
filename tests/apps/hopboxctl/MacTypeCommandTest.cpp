#include "tests/support/Sandbox.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>

#include <gtest/gtest.h>

namespace
{
struct Answer
{
    int status;
    QByteArray output;
    QByteArray error;
};

Answer RunMacType(const QStringList& arguments)
{
    QProcess process;
    process.start(QCoreApplication::applicationDirPath() + QStringLiteral("/../bin/hopboxctl"),
                  QStringList(QStringLiteral("mactype")) + arguments);
    EXPECT_TRUE(process.waitForFinished());
    return {process.exitCode(), process.readAllStandardOutput().replace("\r\n", "\n"),
            process.readAllStandardError().replace("\r\n", "\n")};
}

void WriteFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}
}  // namespace

TEST(MacTypeCommand, PrintsTheTypeOrSaysWhatIsWrong)
{
    const Sandbox sandbox;
    const QString file = sandbox.GetPath(QStringLiteral("Gr\u00F6\u00DFe"));
    const QString companion = sandbox.GetPath(QStringLiteral("._Gr\u00F6\u00DFe"));
    WriteFile(file, "data");
    Answer answer = RunMacType({file});
    EXPECT_EQ(answer.status, 1);
    EXPECT_TRUE(answer.output.isEmpty());
    EXPECT_EQ(answer.error, "hopboxctl: '" + file.toUtf8() + "' has no AppleDouble file.\n");

    const QByteArray header("\0\5\26\7\0\2\0\0................\0\1\0\0\0\11\0\0\0\46\0\0\0\10", 38);
    WriteFile(companion, header + "PDF CARO");
    answer = RunMacType({file});
    EXPECT_EQ(answer.status, 0) << answer.error.constData();
    EXPECT_EQ(answer.output, "type: PDF \ncreator: CARO\nextension: pdf\n");
    EXPECT_EQ(RunMacType({QStringLiteral("--json"), file}).output,
              "{\"creator\":\"CARO\",\"extension\":\"pdf\",\"type\":\"PDF \"}\n");

    WriteFile(companion, "nonsense");
    answer = RunMacType({file});
    EXPECT_EQ(answer.status, 1);
    EXPECT_EQ(answer.error, "hopboxctl: Can't read magic number from appledouble file\n");
    EXPECT_EQ(RunMacType({}).status, 2);
}
