#include "Foundation/NSNotification.h"

#include "Probe.h"

#include <stdexcept>

namespace {

const auto kDown = "ZeSliderMouseDownNotification"_ns, kUp = "ZeSliderMouseUpNotification"_ns;

struct NSNotifications : testing::Test {
    RetainPtr<Probe> observer(const char* name, const NSString* wanted, NSObject* object = nullptr)
    {
        auto probe = Probe::named(name, journal);
        center->addObserver(probe, "notified:", wanted, object);
        return probe;
    }
    std::string post(const NSString* name, NSObject* object = nullptr)
    {
        center->postNotificationName(name, object);
        return journal.take();
    }
    NSNotificationCenter* center = NSNotificationCenter::defaultCenter();
    Journal journal;
    RetainPtr<Probe> sender = Probe::named("sender", journal);
};

TEST_F(NSNotifications, ReachWhoAskedForThatNameAndObject)
{
    const auto down = observer("down", kDown), all = observer("all", nullptr),
               senders = observer("senders", kUp, sender), anyOfSender = observer("any", nullptr, sender);
    EXPECT_EQ(post(kDown), "down all");
    EXPECT_EQ(post(kUp, sender), "all senders any");
    EXPECT_EQ(post(kUp, down), "all");
    center->removeObserver(all, kUp, nullptr); // not the name it was added for
    center->removeObserver(senders, kUp, down);
    EXPECT_EQ(post(kUp, sender), "all senders any");
    center->removeObserver(senders, kUp, sender);
    center->removeObserver(all);
    EXPECT_EQ(post(kUp, sender), "any");
}

TEST_F(NSNotifications, CarryNameObjectAndInfo)
{
    const auto info = NSDictionary::dictionary({{"anchor"_ns.get(), "x"_ns.get()}});
    const auto probe = observer("a", kUp);
    probe->onNews = [&](NSObject* argument) {
        const auto* notification = asKind<NSNotification>(argument);
        ASSERT_TRUE(notification);
        EXPECT_TRUE(notification->name()->isEqual(kUp));
        EXPECT_EQ(notification->object(), sender.get());
        EXPECT_EQ(notification->userInfo(), info.get());
    };
    center->postNotificationName(kUp, sender, info);
    EXPECT_EQ(journal.take(), "a");
}

TEST_F(NSNotifications, UnknownActionIsRefusedAtOnce)
{
    EXPECT_THAT(Thrown([&] { center->addObserver(sender, "blink:", kUp, nullptr); }),
                testing::AllOf(testing::HasSubstr("Probe"), testing::HasSubstr("blink:")));
}

TEST_F(NSNotifications, WhoDiesIsForgotten)
{
    auto probe = observer("a", kUp), watcher = observer("b", kUp, sender);
    probe->onDealloc = [&](NSObject*) { center->postNotificationName(kUp, nullptr); }; // still whole, still told
    probe.reset();
    EXPECT_EQ(journal.take(), "~a a");
    sender.reset();
    journal.take();
    for (int i = 0; i < 100; ++i) post(kUp, make<Probe>().get()); // perhaps at the same address
    EXPECT_EQ(journal.take(), "");
}

TEST_F(NSNotifications, ObserversMayComeAndGoWhileTheyAreTold)
{
    RetainPtr<Probe> second, third, late;
    const auto first = observer("first", kUp);
    second = observer("second", kUp);
    third = observer("third", kUp);
    first->onNews = [&](NSObject*) {
        first->onNews = {};
        center->removeObserver(second);
        third.reset();
        late = observer("late", kUp);
        center->postNotificationName(kUp, nullptr);
    };
    EXPECT_EQ(post(kUp), "first ~third first late");
}

TEST_F(NSNotifications, LeaveTheCentreUsableWhenAnObserverFails)
{
    const auto failing = observer("failing", kUp), behind = observer("behind", kUp);
    failing->onNews = [&](NSObject*) { throw std::runtime_error("no"); };
    EXPECT_THROW(post(kUp), std::runtime_error);
    failing->onNews = {};
    journal.take();
    EXPECT_EQ(post(kUp), "failing behind");
}

TEST_F(NSNotifications, FunctionsAreToldUntilTheirTokenGoes)
{
    auto held = Probe::named("held", journal);
    auto token = center->addObserverUsingBlock(kUp, sender, [&, held](NSNotification&) { journal.note("told"); });
    held.reset();
    EXPECT_EQ(post(kUp, sender) + post(kDown, sender), "told");
    token.reset();
    EXPECT_EQ(journal.take(), "~held");
    EXPECT_EQ(post(kUp, sender), "");
    token = center->addObserverUsingBlock(kUp, nullptr, [&](NSNotification&) {
        token.reset(); // ends itself
        journal.note("once");
    });
    EXPECT_EQ(post(kUp) + post(kUp), "once");
}

} // namespace
