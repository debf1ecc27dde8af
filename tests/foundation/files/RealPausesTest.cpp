#include "FileHandlerFixture.h"

#include <thread>

// The pauses that others rely on: a lock of 9 s is outlasted by a removal, one of 19 s by a rename. The three
// loops run beside each other; waits can only be longer than asked, so a lower bound holds on any machine.
TEST_F(FileHandlerTest, RetryLoopsLastAsLongAsPromised)
{
    using Clock = std::chrono::steady_clock;
    using std::chrono::milliseconds;
    MakeAll({"folder/inside", "file"});
    WatchedHandler removing;
    WatchedHandler renaming;
    WatchedHandler renamingFolder;
    const auto measure = [](const std::function<bool()>& operation, milliseconds* time) {
        const Clock::time_point start = Clock::now();
        EXPECT_FALSE(operation());
        *time = std::chrono::duration_cast<milliseconds>(Clock::now() - start);
    };
    milliseconds removal{0};
    milliseconds rename{0};
    milliseconds folderRename{0};
    std::thread first([&] { measure([&] { return removing.removeFile(At("folder")); }, &removal); });
    std::thread second(
        [&] { measure([&] { return renaming.renameFile(At("file"), At("missing/a")); }, &rename); });
    measure([&] { return renamingFolder.renameFolder(At("folder"), At("missing/b")); }, &folderRename);
    first.join();
    second.join();
    EXPECT_GE(removal, milliseconds(10000));
    EXPECT_GE(rename, milliseconds(20000));
    EXPECT_GE(folderRename, milliseconds(20000));
    for (const WatchedHandler* handler : {&removing, &renaming, &renamingFolder})
        EXPECT_EQ(handler->attempts, 20);
}
