#pragma once

#include <cstddef>
#include <utility>

// An object of the host, with a reference count. The host makes its objects, and deletes each when the last
// reference is given back; nobody else deletes them.
class IHostObject
{
public:
    virtual void AddRef() const noexcept = 0;
    virtual void Release() const noexcept = 0;

protected:
    ~IHostObject() = default;
};

// Holds one reference to an object of the host and gives it back at the end of its scope. It is empty when
// the host had nothing to give, which can happen with every operation that gives an object. For the host's
// main thread.
template <class Object>
class HostPtr
{
public:
    HostPtr() = default;

    // Takes over a reference that the caller holds; null makes an empty handle.
    static HostPtr Adopt(Object* object)
    {
        HostPtr handle;
        handle.mObject = object;
        return handle;
    }

    HostPtr(const HostPtr& other) noexcept : mObject(other.mObject)
    {
        if (mObject != nullptr)
            mObject->AddRef();
    }

    HostPtr(HostPtr&& other) noexcept : mObject(std::exchange(other.mObject, nullptr)) {}

    // From a handle to a class that derives from this one.
    template <class Derived>
    HostPtr(HostPtr<Derived>&& other) noexcept : mObject(other.Detach())
    {
    }

    ~HostPtr()
    {
        if (mObject != nullptr)
            mObject->Release();
    }

    HostPtr& operator=(HostPtr other) noexcept
    {
        std::swap(mObject, other.mObject);
        return *this;
    }

    // Gives the reference away: the caller releases it.
    Object* Detach() noexcept { return std::exchange(mObject, nullptr); }

    Object* Get() const { return mObject; }
    Object* operator->() const { return mObject; }
    Object& operator*() const { return *mObject; }
    explicit operator bool() const { return mObject != nullptr; }

private:
    Object* mObject = nullptr;
};
