#include "hosts/indesign/bridge/LoopbackSocket.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
#include <cerrno>
#include <utility>

namespace
{
int AsSocket(intptr_t socket)
{
    return static_cast<int>(socket);
}

intptr_t MakeSocket()
{
    return ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
}
}  // namespace

LoopbackSocket LoopbackSocket::Accept()
{
    return LoopbackSocket(::accept4(AsSocket(mSocket), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
}

void LoopbackSocket::Close() noexcept
{
    if (mSocket != cNone)
        ::close(AsSocket(mSocket));
    mSocket = cNone;
}

LoopbackSocket LoopbackSocket::Listen()
{
    LoopbackSocket made(MakeSocket());
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const bool isListening =
        made.IsOpen() &&
        ::bind(AsSocket(made.mSocket), reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
        ::listen(AsSocket(made.mSocket), SOMAXCONN) == 0;
    return isListening ? std::move(made) : LoopbackSocket();
}

uint16_t LoopbackSocket::GetPort(End end) const
{
    sockaddr_in address{};
    socklen_t size = sizeof address;
    auto* const ask = end == End::Own ? ::getsockname : ::getpeername;
    const bool isKnown = ask(AsSocket(mSocket), reinterpret_cast<sockaddr*>(&address), &size) == 0;
    return isKnown ? ntohs(address.sin_port) : 0;
}

int LoopbackSocket::Receive(char* bytes, int size) const
{
    return static_cast<int>(::recv(AsSocket(mSocket), bytes, static_cast<size_t>(size), 0));
}

int LoopbackSocket::Send(const char* bytes, int size) const
{
    return static_cast<int>(::send(AsSocket(mSocket), bytes, static_cast<size_t>(size), MSG_NOSIGNAL));
}

bool LoopbackSocket::MustWait()
{
    return errno == EAGAIN || errno == EINTR;
}

bool LoopbackSocket::WaitUntilWritable(int milliseconds) const
{
    pollfd watched{AsSocket(mSocket), POLLOUT, 0};
    return ::poll(&watched, 1, milliseconds) == 1;
}
