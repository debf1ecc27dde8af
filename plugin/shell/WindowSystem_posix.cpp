#include "plugin/shell/WindowSystem.h"

#include "plugin/shell/RefusalText.h"

#include <dlfcn.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>

using RefusalText::Translate;

namespace
{
// Through the library that Qt's platform uses, which is looked up here so that the module needs none where
// there are no windows.
bool IsXServerThere()
{
    void* const library = dlopen("libxcb.so.1", RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr)
        return false;
    const auto connect = reinterpret_cast<void* (*)(const char*, int*)>(dlsym(library, "xcb_connect"));
    const auto hasError = reinterpret_cast<int (*)(void*)>(dlsym(library, "xcb_connection_has_error"));
    const auto disconnect = reinterpret_cast<void (*)(void*)>(dlsym(library, "xcb_disconnect"));
    bool isThere = false;
    if (connect != nullptr && hasError != nullptr && disconnect != nullptr) {
        void* const connection = connect(nullptr, nullptr);
        isThere = hasError(connection) == 0;
        disconnect(connection);
    }
    dlclose(library);
    return isThere;
}

bool IsWaylandThere()
{
    QByteArray path = qgetenv("WAYLAND_DISPLAY");
    if (path.isEmpty())
        path = "wayland-0";
    if (!path.startsWith('/'))
        path = qgetenv("XDG_RUNTIME_DIR") + '/' + path;
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (static_cast<size_t>(path.size()) >= sizeof address.sun_path)
        return false;
    std::memcpy(address.sun_path, path.constData(), static_cast<size_t>(path.size()));
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool isThere =
        socket >= 0 && ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    if (socket >= 0)
        ::close(socket);
    return isThere;
}
}  // namespace

QStringList WindowSystem::GetDefaultPlatforms()
{
    QStringList platforms(QStringLiteral("xcb"));
    if (qEnvironmentVariableIsSet("WAYLAND_DISPLAY"))
        platforms.append(QStringLiteral("wayland"));
    return platforms;
}

GString WindowSystem::FindDisplayFault(const GString& platform)
{
    if (platform.startsWith(QLatin1String("wayland")))
        return IsWaylandThere() ? GString()
                                : Translate("RefusalText", "the Wayland display can't be reached.");
    if (platform != QLatin1String("xcb") || IsXServerThere())
        return {};
    const QString display = qEnvironmentVariable("DISPLAY");
    return display.isEmpty() ? Translate("RefusalText", "there is no display.")
                             : Translate("RefusalText", "the display \"%1\" can't be reached.").arg(display);
}
