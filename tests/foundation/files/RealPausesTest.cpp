#include "FileHandlerFixture.h"

#include <future>

// The pauses that others rely on: a lock of 9 s is outlasted by a removal, one of 19 s by a rename. The three
// loops run beside each other; waits can only be longer than asked, so a lower bound holds on any machine.
TEST_F(FileHandlerTest, RetryLoopsLastAsLongAsPromised)
{
    using std::chrono::seconds;
    MakeAll("folder/inside file");
    const auto start = [](const std::function<bool(WatchedHandler&)>& operation) {
        return std::async(std::launch::async, [operation] {
            WatchedHandler handler;
            const auto before = std::chrono::steady_clock::now();
            EXPECT_FALSE(operation(handler));
            EXPECT_EQ(handler.attempts, 20);
            return std::chrono::steady_clock::now() - before;
        });
    };
    auto removal = start([&](auto& handler) { return handler.removeFile(At("folder")); });
    auto rename = start([&](auto& handler) { return handler.renameFile(At("file"), At("missing/a")); });
    auto folderRename =
        start([&](auto& handler) { return handler.renameFolder(At("folder"), At("missing/b")); });
    EXPECT_GE(removal.get(), seconds(10));
    EXPECT_GE(rename.get(), seconds(20));
    EXPECT_GE(folderRename.get(), seconds(20));
}
