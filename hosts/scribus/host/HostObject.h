#pragma once

#include "plugin/host/HostPtr.h"

#include <utility>

// An object that the host hands out: it goes with its last reference.
template <class Interface>
class HostObject : public Interface
{
public:
    HostObject() = default;
    virtual ~HostObject() = default;
    HostObject(const HostObject&) = delete;
    HostObject& operator=(const HostObject&) = delete;

    void AddRef() const noexcept override { ++mReferences; }

    void Release() const noexcept override
    {
        if (--mReferences == 0)
            delete this;
    }

private:
    mutable int mReferences = 1;
};

// Makes such an object; the caller's handle holds its first reference.
template <class Object, class Interface, class... Arguments>
HostPtr<Interface> MakeHostObject(Arguments&&... arguments)
{
    return HostPtr<Interface>::Adopt(new Object(std::forward<Arguments>(arguments)...));
}
