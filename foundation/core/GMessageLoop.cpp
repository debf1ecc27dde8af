#include "foundation/core/GMessageLoop.h"

#include "foundation/core/GSignalLink.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QTimerEvent>

#include <exception>
#include <mutex>
#include <vector>

namespace
{
// What Qt's event loop calls: for queued signals by an event, for ticks by a timer.
class Runner : public QObject
{
public:
    explicit Runner(int interval) { startTimer(interval); }

    static QEvent* MakeWakeUp() { return new QEvent(QEvent::User); }
    static QEvent* MakeTick() { return new QEvent(cTickEvent); }

protected:
    void customEvent(QEvent* event) override;
    void timerEvent(QTimerEvent*) override { Tick(); }

private:
    static constexpr QEvent::Type cTickEvent = static_cast<QEvent::Type>(QEvent::User + 1);

    void Tick();

    uint64_t mTicks = 0;
};

struct Loop
{
    std::mutex mutex;  // over the rest; not held while anybody is called
    std::vector<std::weak_ptr<GSignalLink>> queue;
    std::unique_ptr<Runner> runner;
    bool isTickAsked = false;  // and not begun
};

// Never destroyed: signals may be emitted while the process ends.
Loop& GetLoop()
{
    static Loop* const loop = new Loop;
    return *loop;
}

// Nothing may be thrown into Qt's event loop.
template <typename Call>
void LogWhatIsThrown(Call&& call) noexcept
{
    try {
        call();
    } catch (const std::exception& error) {
        qWarning("GMessageLoop: a receiver threw: %s", error.what());
    } catch (...) {
        qWarning("GMessageLoop: a receiver threw something that is no exception.");
    }
}

void Runner::customEvent(QEvent* event)
{
    if (event->type() != cTickEvent) {
        GMessageLoop::DeliverQueued();
        return;
    }
    {
        const std::lock_guard<std::mutex> lock(GetLoop().mutex);
        GetLoop().isTickAsked = false;
    }
    Tick();
}

void Runner::Tick()
{
    const GTick tick{mTicks++};
    LogWhatIsThrown([&] { GMessageLoop::GetTickSignal().Emit(GMessageLoop::cTickMessage, tick); });
}
}  // namespace

void GMessageLoop::Start(int interval)
{
    auto runner = std::make_unique<Runner>(interval);
    Loop& loop = GetLoop();
    const std::lock_guard<std::mutex> lock(loop.mutex);
    loop.runner.swap(runner);
    loop.isTickAsked = false;
    if (!loop.queue.empty())
        QCoreApplication::postEvent(loop.runner.get(), Runner::MakeWakeUp());
}

void GMessageLoop::Stop()
{
    std::unique_ptr<Runner> runner;
    Loop& loop = GetLoop();
    const std::lock_guard<std::mutex> lock(loop.mutex);
    loop.runner.swap(runner);
}

void GMessageLoop::TickSoon()
{
    Loop& loop = GetLoop();
    const std::lock_guard<std::mutex> lock(loop.mutex);
    if (!loop.runner || loop.isTickAsked)
        return;
    loop.isTickAsked = true;
    QCoreApplication::postEvent(loop.runner.get(), Runner::MakeTick());
}

GSignal<GTick>& GMessageLoop::GetTickSignal()
{
    static GSignal<GTick>* const signal = new GSignal<GTick>;
    return *signal;
}

void GMessageLoop::DeliverQueued()
{
    std::vector<std::weak_ptr<GSignalLink>> queue;
    {
        Loop& loop = GetLoop();
        const std::lock_guard<std::mutex> lock(loop.mutex);
        queue.swap(loop.queue);
    }
    for (const auto& weak : queue) {
        const auto link = weak.lock();
        if (link == nullptr)
            continue;
        for (const auto& message : link->TakeDelayed())
            LogWhatIsThrown([&] { link->Deliver(*message); });
    }
}

void GMessageLoop::Queue(const std::weak_ptr<GSignalLink>& link)
{
    Loop& loop = GetLoop();
    const std::lock_guard<std::mutex> lock(loop.mutex);
    const bool isFirst = loop.queue.empty();
    loop.queue.push_back(link);
    if (isFirst && loop.runner)
        QCoreApplication::postEvent(loop.runner.get(), Runner::MakeWakeUp());
}
