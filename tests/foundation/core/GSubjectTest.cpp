#include "foundation/core/GSubject.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>

namespace
{
// Writes its name and the notification down, then does what the test says.
class Recorder : public GObserver
{
public:
    Recorder(std::string& record, char name) : mRecord(record), mName(name) {}

    void Update(GSubject&, int32_t notification) override
    {
        mRecord += mName + std::to_string(notification) + ' ';
        if (const auto act = onUpdate)  // a copy: it may replace itself
            act();
    }

    std::function<void()> onUpdate;

private:
    std::string& mRecord;
    char mName;
};
}  // namespace

// Each case says what the first of the observers a, b and c does when it is told 1; then 2 is notified.
TEST(GSubject, ObserversComeAndGoDuringANotification)
{
    std::string record;
    auto subject = std::make_unique<GSubject>();
    Recorder a(record, 'a');
    Recorder b(record, 'b');
    Recorder c(record, 'c');
    Recorder late(record, 'd');
    const struct
    {
        const char* what;
        std::function<void()> act;
        std::string record;
    } cases[] = {
        {"nothing", [] {}, "a1 b1 c1 a2 b2 c2 "},
        {"detaches itself", [&] { subject->Detach(a); }, "a1 b1 c1 b2 c2 "},
        {"detaches the next", [&] { subject->Detach(b); }, "a1 c1 a2 c2 "},
        {"attaches one", [&] { subject->Attach(late); }, "a1 b1 c1 a2 b2 c2 d2 "},
        {"attaches itself again", [&] { subject->Attach(a); }, "a1 b1 c1 a2 b2 c2 "},
        {"moves the next to the end", [&] { subject->Detach(b), subject->Attach(b); }, "a1 c1 a2 c2 b2 "},
        {"notifies, and detaches within",
         [&] {
             a.onUpdate = [&] { subject->Detach(c); };
             subject->Notify(9);
         },
         "a1 a9 b9 b1 a2 b2 "},
        {"throws", [] { throw std::runtime_error("refused"); }, "a1 a2 b2 c2 "},
        {"ends the subject", [&] { subject.reset(); }, "a1 "},
    };
    for (const auto& testCase : cases) {
        subject = std::make_unique<GSubject>();
        for (Recorder* observer : {&a, &b, &c})
            subject->Attach(*observer);
        record.clear();
        a.onUpdate = testCase.act;
        try {
            subject->Notify(1);
        } catch (const std::runtime_error&) {
        }
        a.onUpdate = nullptr;
        if (subject)
            subject->Notify(2);
        EXPECT_EQ(record, testCase.record) << testCase.what;
    }
}
