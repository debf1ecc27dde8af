#include "hosts/indesign/bridge/LoopbackSocket.h"

#include <winsock2.h>
#include <ws2tcpip.h>

#include <utility>

namespace
{
using socklen_t = int;

SOCKET AsSocket(intptr_t socket)
{
    return static_cast<SOCKET>(socket);
}

// Sockets are there from the first one on until the process ends.
bool StartSockets()
{
    WSADATA data;
    return WSAStartup(MAKEWORD(2, 2), &data) == 0;
}

// Makes a socket never wait. Children do not get it: the script's end must see this process's end at once.
intptr_t Prepare(SOCKET socket)
{
    u_long isOn = 1;
    if (socket == INVALID_SOCKET)
        return -1;
    ioctlsocket(socket, FIONBIO, &isOn);
    SetHandleInformation(reinterpret_cast<HANDLE>(socket), HANDLE_FLAG_INHERIT, 0);
    return static_cast<intptr_t>(socket);
}

intptr_t MakeSocket()
{
    static const bool hasSockets = StartSockets();
    return hasSockets ? Prepare(::socket(AF_INET, SOCK_STREAM, IPPROTO_TCP)) : -1;
}
}  // namespace

LoopbackSocket LoopbackSocket::Accept()
{
    return LoopbackSocket(Prepare(::accept(AsSocket(mSocket), nullptr, nullptr)));
}

void LoopbackSocket::Close() noexcept
{
    if (mSocket != cNone)
        ::closesocket(AsSocket(mSocket));
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
    return ::recv(AsSocket(mSocket), bytes, size, 0);
}

int LoopbackSocket::Send(const char* bytes, int size) const
{
    return ::send(AsSocket(mSocket), bytes, size, 0);
}

bool LoopbackSocket::MustWait()
{
    return WSAGetLastError() == WSAEWOULDBLOCK;
}

bool LoopbackSocket::WaitUntilWritable(int milliseconds) const
{
    WSAPOLLFD watched{AsSocket(mSocket), POLLWRNORM, 0};
    return WSAPoll(&watched, 1, milliseconds) == 1;
}
