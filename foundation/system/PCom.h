#pragma once

#include <windows.h>

#include <objbase.h>

// COM for this thread, as an apartment, for the time of one task.
class PComApartment
{
public:
    PComApartment() : mIsUp(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {}
    ~PComApartment()
    {
        if (mIsUp)
            CoUninitialize();
    }
    PComApartment(const PComApartment&) = delete;
    PComApartment& operator=(const PComApartment&) = delete;

    // Also false on a thread that already has COM in another mode; COM can still be used there.
    bool IsUp() const { return mIsUp; }

private:
    bool mIsUp;
};

// A reference to a COM object, which is released when this object is deleted.
template <typename Interface>
class PComReference
{
public:
    PComReference() = default;
    ~PComReference()
    {
        if (mObject != nullptr)
            mObject->Release();
    }
    PComReference(const PComReference&) = delete;
    PComReference& operator=(const PComReference&) = delete;

    Interface* Get() const { return mObject; }
    Interface* operator->() const { return mObject; }

    // For the call that sets it; once.
    void** GetAddress() { return reinterpret_cast<void**>(&mObject); }

private:
    Interface* mObject = nullptr;
};
