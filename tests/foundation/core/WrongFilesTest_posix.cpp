#include "foundation/core/SharedFile.h"
#include "tests/support/Test.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <functional>

static bool MakeSocket(const QByteArray& path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.constData(), sizeof address.sun_path - 1);
    const int file = ::socket(AF_UNIX, SOCK_STREAM, 0);
    const bool isBound = ::bind(file, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    ::close(file);
    return isBound;
}

// A program that reads one of these hangs, or fills its memory.
TEST(SharedFile, WrongThingsInThePlaceOfAFileAreRefusedAtOnceWithTheReason)
{
    const auto leadTo = [](const char* target) {
        return [target](const QByteArray& path) { return ::symlink(target, path.constData()) == 0; };
    };
    // expected: empty: it is missing
    const std::pair<const char*, std::function<bool(const QByteArray& path)>> cases[] = {
        {"it is a pipe", [](auto& path) { return ::mkfifo(path.constData(), 0600) == 0; }},
        {"it is a socket", MakeSocket},
        {"it is a folder", [](auto& path) { return ::mkdir(path.constData(), 0700) == 0; }},
        {"it is a device", leadTo("/dev/zero")},
        {"it is a link that leads nowhere", leadTo("none")},
        {"Too many levels of symbolic links", leadTo("file")},
        {"more than",
         [](auto& path) {
             return WriteFile(QFile::decodeName(path), "") && ::truncate(path.constData(), 10000000000) == 0;
         }},
        {"", [](auto&) { return true; }},
    };
    // What the system refuses to look for may be there.
    EXPECT_FALSE(IsFileMissing("/tmp/"_q + QString(300, QLatin1Char('x'))));
    for (const auto& [expected, make] : cases) {
        const Sandbox sandbox;
        const QString path = sandbox.GetPath("file"_q);
        ASSERT_TRUE(make(QFile::encodeName(path))) << expected;
        const bool isMissing = *expected == '\0';
        EXPECT_EQ(IsFileMissing(path), isMissing) << expected;
        QFile file(path);
        GString reason;
        EXPECT_EQ(OpenSharedForReading(file, cLargestTextFile, reason),
                  isMissing ? FileOpening::cMissing : FileOpening::cRefused);
        EXPECT_TRUE(reason.contains(QLatin1String(expected))) << reason.toStdString();
        QByteArray content("old");
        EXPECT_FALSE(ReadSharedFile(path, cLargestTextFile, &content).HasSucceeded()) << expected;
        EXPECT_TRUE(content.isEmpty());
    }
}
