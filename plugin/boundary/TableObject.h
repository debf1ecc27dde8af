#pragma once

#include "plugin/boundary/BoundaryText.h"
#include "plugin/boundary/TableHost.h"
#include "plugin/host/HostFault.h"

#include <memory>

// A handle of the host's, given back with the last of the objects that share it.
class TableHandle
{
public:
    TableHandle(const TableHost& host, hopbox_handle handle) : mHost(host), mHandle(handle) {}
    ~TableHandle() { mHost.Release(mHandle); }
    TableHandle(const TableHandle&) = delete;
    TableHandle& operator=(const TableHandle&) = delete;

    hopbox_handle Get() const { return mHandle; }

private:
    const TableHost& mHost;
    hopbox_handle mHandle;
};
using TableHandlePtr = std::shared_ptr<const TableHandle>;

// The result of an operation without which the step makes no sense; raises where the host has none such.
inline int32_t CheckIsSupported(int32_t result)
{
    if (result == HOPBOX_UNSUPPORTED)
        throw HostFault::NotSupported("The host does not do what its command needs.");
    return result;
}

// The result of an operation without which the step would go on; raises where the user has cancelled.
inline int32_t CheckIsNotCancelled(int32_t result)
{
    if (result == HOPBOX_CANCELLED)
        throw std::runtime_error("The user has cancelled.");  // for the log: no alert is shown
    return result;
}

// An object of the plug-in's interface that stands for a handle of the host's, or for the host itself.
template <class Interface>
class TableObject : public Interface
{
public:
    explicit TableObject(const TableHost& host, TableHandlePtr handle = nullptr)
        : mHost(host), mHandle(std::move(handle))
    {
    }
    virtual ~TableObject() = default;
    TableObject(const TableObject&) = delete;
    TableObject& operator=(const TableObject&) = delete;

    void AddRef() const noexcept override { ++mReferences; }
    void Release() const noexcept override
    {
        if (--mReferences == 0)
            delete this;
    }

    hopbox_handle GetHandle() const { return mHandle->Get(); }

protected:
    // Calls an operation on the handle.
    template <class Operation, class... Arguments>
    int32_t Call(Operation operation, Arguments... arguments) const
    {
        return mHost.Call(operation, GetHandle(), arguments...);
    }

    // The same for an operation that must not fail.
    template <class Operation, class... Arguments>
    void Require(Operation operation, Arguments... arguments) const
    {
        if (CheckIsSupported(Call(operation, arguments...)) != HOPBOX_OK)
            throw std::runtime_error(
                QT_TRANSLATE_NOOP("HostFault", "The host does not do what its command needs."));
    }

    // The same for one that a host may lack.
    template <class Operation, class... Arguments>
    void Wish(Operation operation, Arguments... arguments) const
    {
        const int32_t result = Call(operation, arguments...);
        if (result != HOPBOX_OK && result != HOPBOX_UNSUPPORTED)
            throw std::runtime_error(
                QT_TRANSLATE_NOOP("HostFault", "The host does not take a setting of its command."));
    }

    // A yes or no; `otherwise` from a host that lacks the operation, `isFailed` from one that fails it.
    template <class Operation>
    [[nodiscard]] bool Ask(Operation operation, bool otherwise, bool isFailed) const
    {
        int32_t value = 0;
        const int32_t result = CheckIsNotCancelled(Call(operation, &value));
        return result == HOPBOX_OK ? value != 0 : result == HOPBOX_UNSUPPORTED ? otherwise : isFailed;
    }

    // A text; empty where there is none. Raises for one that can't be read.
    template <class Operation, class... Arguments>
    GString GetText(Operation operation, Arguments... arguments) const
    {
        const Boundary::TextSink sink;
        const int32_t result =
            CheckIsNotCancelled(Call(operation, arguments..., static_cast<const hopbox_sink*>(sink)));
        if (sink.IsFaulty())
            throw std::runtime_error(
                QT_TRANSLATE_NOOP("HostFault", "The host gave a text that can't be read."));
        return result == HOPBOX_OK ? sink.GetTexts().value(0) : GString();
    }

    const TableHost& mHost;
    TableHandlePtr mHandle;

private:
    mutable int mReferences = 1;
};

template <class Object, class Interface, class... Arguments>
HostPtr<Interface> MakeTableObject(Arguments&&... arguments)
{
    return HostPtr<Interface>::Adopt(new Object(std::forward<Arguments>(arguments)...));
}

// The object for a handle that an operation has given; empty when it has given none.
template <class Object, class Interface>
HostPtr<Interface> TakeHandle(const TableHost& host, int32_t result, hopbox_handle handle)
{
    if (result != HOPBOX_OK || handle == 0)
        return {};
    return MakeTableObject<Object, Interface>(host, std::make_shared<const TableHandle>(host, handle));
}

// The same for an operation that gives it last.
template <class Object, class Interface, class Operation, class... Arguments>
HostPtr<Interface> TakeObject(const TableHost& host, Operation operation, Arguments... arguments)
{
    hopbox_handle handle = 0;
    const int32_t result = CheckIsNotCancelled(host.Call(operation, arguments..., &handle));
    return TakeHandle<Object, Interface>(host, result, handle);
}
