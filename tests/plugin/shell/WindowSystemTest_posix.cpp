#include "plugin/shell/WindowSystem.h"
#include "tests/support/Test.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>

// A socket in the place of a display: it can be reached while somebody listens.
TEST(WindowSystem, AWaylandDisplayIsOneThatAnswers)
{
    const Sandbox sandbox;
    const QByteArray path = QFile::encodeName(sandbox.GetPath("wayland-7"_q));
    const QByteArray old = qgetenv("WAYLAND_DISPLAY");
    qputenv("WAYLAND_DISPLAY", path);
    EXPECT_FALSE(WindowSystem::FindDisplayFault("wayland-egl"_q).isEmpty());

    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.constData(), static_cast<size_t>(path.size()));
    const int listener = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(::bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(::listen(listener, 1), 0);
    EXPECT_EQ(WindowSystem::FindDisplayFault("wayland"_q), QString());
    ::close(listener);
    old.isNull() ? qunsetenv("WAYLAND_DISPLAY") : qputenv("WAYLAND_DISPLAY", old);
}
