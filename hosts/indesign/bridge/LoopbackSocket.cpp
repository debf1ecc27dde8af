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

bool LoopbackSocket::Read(QByteArray& bytes)
{
    char part[16384];
    const int count = Receive(part, sizeof part);
    if (count > 0)
        bytes.append(part, count);
    return count > 0 || (count < 0 && MustWait());
}

bool LoopbackSocket::Write(const QByteArray& bytes)
{
    constexpr int cPatience = 10000;
    for (int sent = 0; sent < bytes.size();) {
        const int count = Send(bytes.constData() + sent, bytes.size() - sent);
        if (count > 0)
            sent += count;
        else if (!MustWait() || !WaitUntilWritable(cPatience))
            return false;
    }
    return true;
}
