#include "foundation/ipc/PGuardedMapping.h"

#include <dlfcn.h>
#include <sys/mman.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <mutex>
#include <new>
#include <utility>

// In a list that only grows, so that the signal's handler can walk it at any moment. A place whose mapping is
// gone is used again.
struct PGuardedMapping::Place
{
    std::atomic<bool> isUsed{true};
    std::atomic<uintptr_t> begin{0};
    std::atomic<size_t> size{0};
    std::atomic<bool> isLost{false};
    Place* next = nullptr;

    bool Holds(uintptr_t address) const { return address - begin < size; }
};

namespace
{
using Place = PGuardedMapping::Place;

std::atomic<Place*> sPlaces{nullptr};
struct sigaction sBefore = {};

bool PutZeros(Place* place)
{
    constexpr int cHow = MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED;
    place->isLost = true;
    return ::mmap(reinterpret_cast<void*>(place->begin.load()), place->size, PROT_READ | PROT_WRITE, cHow, -1,
                  0) != MAP_FAILED;
}

// What is not ours goes to whoever was there before; the system's own way is to end the process when the
// instruction meets the same again.
void HandOn(int signal, siginfo_t* information, void* context)
{
    if ((sBefore.sa_flags & SA_SIGINFO) != 0)
        sBefore.sa_sigaction(signal, information, context);
    else if (sBefore.sa_handler != SIG_DFL && sBefore.sa_handler != SIG_IGN)
        sBefore.sa_handler(signal);
    else
        ::signal(signal, SIG_DFL);
}

// Only what a signal's handler may do.
void OnMemoryGone(int signal, siginfo_t* information, void* context)
{
    const int error = errno;
    const auto address = reinterpret_cast<uintptr_t>(information->si_addr);
    for (Place* place = sPlaces; place != nullptr; place = place->next) {
        if (place->Holds(address) && PutZeros(place)) {
            errno = error;
            return;
        }
    }
    HandOn(signal, information, context);
}

// The handler is there as long as a mapping is: the code may be a plug-in's, and goes when it has none.
std::mutex sHandlerMutex;
int sMappings = 0;
bool sIsHandlerSet = false;

bool IsOurs(const struct sigaction& action)
{
    return (action.sa_flags & SA_SIGINFO) != 0 && action.sa_sigaction == OnMemoryGone;
}

// Whether nobody calls the handler that stayed behind another's: the system's own way was put back since.
bool IsForgotten()
{
    struct sigaction now = {};
    return ::sigaction(SIGBUS, nullptr, &now) == 0 && (now.sa_flags & SA_SIGINFO) == 0 &&
           (now.sa_handler == SIG_DFL || now.sa_handler == SIG_IGN);
}

// Keeps this code in memory until the process ends.
void StayResident()
{
    Dl_info own = {};
    if (::dladdr(reinterpret_cast<void*>(&OnMemoryGone), &own) != 0)
        ::dlopen(own.dli_fname, RTLD_NOW | RTLD_NOLOAD | RTLD_NODELETE);
}

void HoldHandler()
{
    const std::lock_guard<std::mutex> lock(sHandlerMutex);
    if (++sMappings != 1 || (sIsHandlerSet && !IsForgotten()))
        return;
    struct sigaction action = {};
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_SIGINFO | SA_ONSTACK;
    action.sa_sigaction = OnMemoryGone;
    sIsHandlerSet = ::sigaction(SIGBUS, &action, &sBefore) == 0;
}

// Where somebody has put his own before ours meanwhile, and may call it or put it back, ours stays.
void ReleaseHandler()
{
    const std::lock_guard<std::mutex> lock(sHandlerMutex);
    if (--sMappings != 0 || !sIsHandlerSet)
        return;
    struct sigaction now = {};
    if (::sigaction(SIGBUS, nullptr, &now) == 0 && IsOurs(now))
        sIsHandlerSet = ::sigaction(SIGBUS, &sBefore, nullptr) != 0;
    if (sIsHandlerSet)
        StayResident();
}

// The places go with the code, unless a handler that stays may still walk them.
struct PlacesEnd
{
    ~PlacesEnd()
    {
        const std::lock_guard<std::mutex> lock(sHandlerMutex);
        if (sMappings != 0 || sIsHandlerSet)
            return;
        for (const Place* place = sPlaces.exchange(nullptr); place != nullptr;)
            delete std::exchange(place, place->next);
    }
} sPlacesEnd;

Place* GetFreePlace()
{
    for (Place* place = sPlaces; place != nullptr; place = place->next) {
        if (!place->isUsed.exchange(true))
            return place;
    }
    Place* const place = new (std::nothrow) Place;
    if (place == nullptr)
        return nullptr;
    place->next = sPlaces;
    while (!sPlaces.compare_exchange_weak(place->next, place)) {
    }
    return place;
}
}  // namespace

PGuardedMapping::PGuardedMapping(int file, size_t size) noexcept : mPlace(nullptr)
{
    void* const data = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    if (data == MAP_FAILED)
        return;
    mPlace = GetFreePlace();
    if (mPlace == nullptr) {
        ::munmap(data, size);
        errno = ENOMEM;
        return;
    }
    HoldHandler();
    mPlace->isLost = false;
    mPlace->begin = reinterpret_cast<uintptr_t>(data);
    mPlace->size = size;
}

PGuardedMapping::~PGuardedMapping()
{
    if (mPlace == nullptr)
        return;
    if (!mPlace->isLost) {
        const size_t size = mPlace->size.exchange(0);
        ::munmap(GetData(), size);
        mPlace->isUsed = false;
    }
    ReleaseHandler();
}

uint8_t* PGuardedMapping::GetData() const noexcept
{
    return reinterpret_cast<uint8_t*>(mPlace->begin.load());
}

bool PGuardedMapping::IsLost() const noexcept
{
    return mPlace->isLost;
}
