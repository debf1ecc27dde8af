#pragma once

#include <QByteArray>

#include <cstdint>

// A socket of this computer's own: it listens on 127.0.0.1 and nowhere else. Never waits, but for Write().
// Closes itself; used by one thread.
class LoopbackSocket
{
public:
    LoopbackSocket() = default;
    ~LoopbackSocket() { Close(); }
    LoopbackSocket(const LoopbackSocket&) = delete;
    LoopbackSocket& operator=(const LoopbackSocket&) = delete;
    LoopbackSocket(LoopbackSocket&& other) noexcept : mSocket(other.mSocket) { other.mSocket = cNone; }
    LoopbackSocket& operator=(LoopbackSocket&& other) noexcept;

    // A socket that listens on a port that the system chooses; none (IsOpen) where that fails.
    static LoopbackSocket Listen();

    // The next connection that waits to be taken; none where no one waits.
    LoopbackSocket Accept();

    // The port of this end; 0 for none.
    uint16_t GetPort() const { return GetPort(End::Own); }
    uint16_t GetPeerPort() const { return GetPort(End::Peer); }

    // Adds what has come. False when the other end has closed, or the connection is broken.
    [[nodiscard]] bool Read(QByteArray& bytes);

    // Sends all of it. Gives the other end ten seconds to take it; false when it does not.
    [[nodiscard]] bool Write(const QByteArray& bytes);

    void Close() noexcept;
    bool IsOpen() const { return mSocket != cNone; }

    // What the event loop watches.
    intptr_t Get() const { return mSocket; }

private:
    static constexpr intptr_t cNone = -1;
    enum class End
    {
        Own,
        Peer
    };

    explicit LoopbackSocket(intptr_t socket) : mSocket(socket) {}
    uint16_t GetPort(End end) const;

    // A step of reading or writing: how many bytes, or -1. MustWait tells whether that one only came too
    // early.
    int Receive(char* bytes, int size) const;
    int Send(const char* bytes, int size) const;
    static bool MustWait();
    bool WaitUntilWritable(int milliseconds) const;

    intptr_t mSocket = cNone;
};
