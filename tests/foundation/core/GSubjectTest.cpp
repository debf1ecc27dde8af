#include "foundation/core/GSubject.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace
{
class Recorder : public GObserver
{
public:
    Recorder(std::string& record, char name) : mRecord(record), mName(name) {}

    void Update(GSubject&, int32_t notification) override
    {
        mRecord += mName + std::to_string(notification) + ' ';
        if (onUpdate)
            onUpdate();
    }

    std::function<void()> onUpdate;

private:
    std::string& mRecord;
    char mName;
};
}  // namespace

TEST(GSubject, ObserversComeAndGoDuringANotification)
{
    std::string record;
    auto subject = std::make_unique<GSubject>();
    Recorder a(record, 'a'), b(record, 'b'), late(record, 'c');
    subject->Attach(a);
    subject->Attach(b);
    subject->Attach(a);
    a.onUpdate = [&] { subject->Attach(late); };
    subject->Notify(1);
    a.onUpdate = [&] { subject->Detach(b); };
    subject->Notify(2);
    a.onUpdate = [&] { subject.reset(); };
    subject->Notify(3);
    EXPECT_EQ(record, "a1 b1 a2 c2 a3 ");
}
