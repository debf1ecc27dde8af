#include "foundation/core/GBufferedInputStream.h"
#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GFileInputStream.h"
#include "foundation/core/GFileOutputStream.h"
#include "foundation/core/GMemoryInputStream.h"
#include "tests/support/ErrorCode.h"
#include "tests/support/Test.h"

#include <memory>

static GBuffer MakeBytes(int count)
{
    GBuffer bytes;
    for (int index = 0; index < count; ++index)
        bytes.append(static_cast<char>(index * 7 + index / 251));
    return bytes;
}

static GBuffer ReadBytes(GInputStream& stream, int count)
{
    GBuffer bytes(count, '\0');
    bytes.truncate(stream.Read(bytes.data(), count));
    return bytes;
}

TEST(StreamsTest, BufferedStreamGivesTheSameBytesWhateverItsSize)
{
    const GBuffer bytes = MakeBytes(1000);
    for (const int size : {1, 2, 3, 64, 999, 1000, 5000}) {
        GMemoryInputStream source(bytes);
        GBufferedInputStream stream(source, size);
        GBuffer read;
        for (int step = 1; read.size() < bytes.size(); ++step) {
            EXPECT_EQ(stream.GetPosition(), read.size());
            read += ReadBytes(stream, step);
        }
        EXPECT_EQ(read, bytes) << size;
        EXPECT_EQ(stream.LookAhead(1), 0);
    }
}

TEST(StreamsTest, RollBackAndPushBackGoAcrossManyBuffers)
{
    const GBuffer bytes = MakeBytes(500);
    GMemoryInputStream source(bytes);
    GBufferedInputStream stream(source, 16);
    ReadBytes(stream, 10);
    stream.SetRollBackPoint();
    ReadBytes(stream, 300);
    const std::unique_ptr<GInputStream> clone = stream.CreateClone();
    ASSERT_TRUE(stream.RollBack());
    EXPECT_FALSE(stream.RollBack());
    EXPECT_EQ(stream.GetPosition(), 10);
    EXPECT_EQ(ReadBytes(stream, 500), bytes.mid(10));
    EXPECT_EQ(ReadBytes(*clone, 500), bytes.mid(310)) << "the clone goes its own way";
    stream.Reset();
    EXPECT_EQ(ReadBytes(stream, 20), bytes.left(20));
    stream.Unread("0123456789abcdef", 16);
    EXPECT_EQ(stream.GetPosition(), 4);
    EXPECT_EQ(ReadBytes(stream, 500), GBuffer("0123456789abcdef") + bytes.mid(20));
}

TEST(StreamsTest, FilesComeBackAndCanBeReplacedWhileTheyAreRead)
{
    QTemporaryDir folder;
    // Longer than the 260 characters that Windows' calls take without a prefix.
    const GString deep = folder.filePath("d"_q.repeated(200) + "/"_q + "e"_q.repeated(100));
    ASSERT_TRUE(QDir().mkpath(deep));
    const GString path = deep + "/\u00E4 file"_q;
    const GBuffer bytes = MakeBytes(70000);
    GFileOutputStream output(path);
    output.WriteBuffer(bytes.left(100));
    output.WriteBuffer(bytes.mid(100));
    output.Close();

    GFileInputStream input(path);
    EXPECT_EQ(ReadBytes(input, 30000), bytes.left(30000));
    const std::unique_ptr<GInputStream> clone = input.CreateClone();
    EXPECT_TRUE(QFile::remove(path));
    EXPECT_EQ(ReadBytes(input, 70000), bytes.mid(30000));
    EXPECT_EQ(ReadBytes(*clone, 10), bytes.mid(30000, 10));
    input.Reset();
    EXPECT_EQ(ReadBytes(input, 70000), bytes);
}

TEST(StreamsTest, FilesThatCannotBeOpenedRaise)
{
    QTemporaryDir folder;
    const GString missing = folder.filePath("missing/file"_q);
    EXPECT_EQ(GetErrorCode([&] { GFileInputStream input(missing); }), GErrorCode::cFile);
    EXPECT_EQ(GetErrorCode([&] { GFileOutputStream output(missing); }), GErrorCode::cFile);
    EXPECT_EQ(GetErrorCode([&] { GFileInputStream input(folder.path()); }), GErrorCode::cFile);
}
