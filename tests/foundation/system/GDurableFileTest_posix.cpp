#include "foundation/system/GDurableFile.h"
#include "tests/support/Test.h"

#include <sys/stat.h>

// Whoever put it there reads from it, or wants to.
TEST(GDurableFile, APipeInThePlaceOfTheTargetStays)
{
    const Sandbox sandbox;
    const QString path = sandbox.GetPath("pipe"_q);
    ASSERT_EQ(::mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    EXPECT_FALSE(GDurableFile::Replace(path, "new").HasSucceeded());
    struct stat status = {};
    EXPECT_EQ(::lstat(QFile::encodeName(path).constData(), &status), 0);
    EXPECT_TRUE(S_ISFIFO(status.st_mode));
}
