#pragma once

#include "tests/support/fake_host/FakeHost.h"

// An object that a FakeHost hands out: counted there by name, gone with its last reference.
template <class Interface>
class FakeObject : public Interface
{
public:
    FakeObject(FakeHost& host, const char* name) : mHost(host), mName(QString::fromLatin1(name))
    {
        mHost.NoteReference(mName);
    }
    virtual ~FakeObject() = default;
    FakeObject(const FakeObject&) = delete;
    FakeObject& operator=(const FakeObject&) = delete;

    void AddRef() const noexcept override
    {
        ++mReferences;
        mHost.NoteReference(mName);
    }

    void Release() const noexcept override
    {
        mHost.NoteRelease(mName);
        if (--mReferences == 0)
            delete this;
    }

protected:
    // The host is told a value.
    template <class Place, class Value>
    void Take(Place& place, const Value& value)
    {
        mHost.Note();
        place = value;
    }

    FakeHost& mHost;

private:
    QString mName;
    mutable int mReferences = 1;
};

// An object that stands for a record, which it holds by value or by reference.
template <class Interface, class Record>
class FakeRecordObject : public FakeObject<Interface>
{
public:
    FakeRecordObject(FakeHost& host, const char* name, Record record)
        : FakeObject<Interface>(host, name), mRecord(record)
    {
    }

    Record mRecord;
};

// Hands out an object, unless the operation is not to work.
template <class Object, class... Arguments>
HostPtr<Object> HandOut(FakeHost& host, HostOperation operation, Arguments&&... arguments)
{
    if (host.Ask(operation) != HostAnswer::Works)
        return {};
    return HostPtr<Object>::Adopt(new Object(host, std::forward<Arguments>(arguments)...));
}
