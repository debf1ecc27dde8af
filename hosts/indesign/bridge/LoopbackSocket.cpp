#include "hosts/indesign/bridge/LoopbackSocket.h"

LoopbackSocket& LoopbackSocket::operator=(LoopbackSocket&& other) noexcept
{
    if (this != &other) {
        Close();
        mSocket = other.mSocket;
        other.mSocket = cNone;
    }
    return *this;
}
