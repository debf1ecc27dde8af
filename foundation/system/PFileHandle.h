#pragma once

#include <cstdint>

// An open file of the operating system that closes itself: a descriptor on POSIX, a HANDLE on Windows.
class PFileHandle
{
public:
    static constexpr intptr_t cNone = -1;

    PFileHandle() = default;
    explicit PFileHandle(intptr_t handle) : mHandle(handle) {}
    ~PFileHandle() { Drop(); }
    PFileHandle(const PFileHandle&) = delete;
    PFileHandle& operator=(const PFileHandle&) = delete;
    PFileHandle(PFileHandle&& other) noexcept : mHandle(other.Release()) {}
    PFileHandle& operator=(PFileHandle&& other) noexcept
    {
        if (this != &other) {
            Drop();
            mHandle = other.Release();
        }
        return *this;
    }

    bool IsOpen() const { return mHandle != cNone; }
    intptr_t Get() const { return mHandle; }

    // Gives the handle away without closing it.
    intptr_t Release()
    {
        const intptr_t handle = mHandle;
        mHandle = cNone;
        return handle;
    }

    // False when the system reports that written data may be lost. True for a handle that is not open.
    [[nodiscard]] bool Close() noexcept;

    // Closes a handle, when nothing important was written through it.
    void Drop() noexcept { static_cast<void>(Close()); }

private:
    intptr_t mHandle = cNone;
};
