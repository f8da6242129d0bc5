#include "Foundation/NSAssertionHandler.h"
#include "Foundation/NSAutoreleasePool.h"
#include "Probe.h"

#include <stdexcept>
#include <thread>
#include <unistd.h>

using testing::HasSubstr;

namespace {

void Fail(NSObject*) { throw std::runtime_error("no end"); }

TEST(NSObject, EndsOnceWhenTheLastReferenceGoes)
{
    Journal journal;
    auto first = Probe::named("a", journal);
    first->onDealloc = [](NSObject* self) { // must not end it again
        const RetainPtr<NSObject> one = self;
        const RetainPtr<NSObject> two = one;
    };
    RetainPtr<NSObject> second = first;
    first = first.get();
    first.reset();
    EXPECT_EQ(journal.take(), "");
    second = nullptr;
    EXPECT_EQ(journal.take(), "~a");
}

TEST(NSObject, IsWholeInDeallocAndDeletedEvenWhereThatThrows)
{
    Journal journal;
    auto owner = Probe::named("owner", journal);
    owner->kept = Probe::named("member", journal);
    owner->onDealloc = [&](NSObject* self) {
        EXPECT_TRUE(static_cast<Probe*>(self)->kept); // destructors come later
        Fail(self);
    };
    EXPECT_THROW(owner.reset(), std::runtime_error);
    EXPECT_EQ(journal.take(), "~owner ~member");
    EXPECT_FALSE(owner);
}

TEST(NSObject, EndThatFailsUnseenGoesToTheLog)
{
    CaughtLog log;
    {
        auto probe = make<Probe>();
        probe->onDealloc = Fail;
    }
    EXPECT_THAT(log.text(), HasSubstr("no end"));
}

TEST(NSAutoreleasePool, LetsGoAtItsOwnEnd)
{
    Journal journal;
    const auto give = [&](const char* name) { return NSAutorelease(Probe::named(name, journal)); };
    {
        const NSAutoreleasePool outer;
        give("a");
        {
            const NSAutoreleasePool inner;
            give("b")->onDealloc = [&](NSObject*) { give("late"); };
        }
        EXPECT_EQ(journal.take(), "~b ~late");
    }
    EXPECT_EQ(journal.take(), "~a");
}

TEST(NSAutoreleasePool, NextOutermostPoolTakesWhatHadNone)
{
    Journal journal;
    std::thread([&] { // a thread of its own: nobody else's pool is around
        NSAutorelease(Probe::named("stray", journal));
        EXPECT_EQ(journal.take(), "");
        {
            const NSAutoreleasePool pool;
        }
        EXPECT_EQ(journal.take(), "~stray");
        NSAutorelease(Probe::named("last", journal));
    })
        .join();
    EXPECT_EQ(journal.take(), "~last");
}

TEST(NSAutoreleasePool, PassesOnTheFirstFailureWhenAllAreGone)
{
    Journal journal;
    NSAutoreleasePool pool;
    for (const char* name : {"a", "b", "c"})
        NSAutorelease(Probe::named(name, journal))->onDealloc = [name](NSObject*) {
            if (*name != 'a') throw std::runtime_error(name);
        };
    try {
        pool.drain();
        ADD_FAILURE() << "nothing thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "b");
    }
    EXPECT_EQ(journal.take(), "~a ~b ~c");
}

TEST(NSClass, FindsByNameThroughTheBases)
{
    class Special : public Probe {};
    const NSClass* probe = NSClassFromString("Probe");
    ASSERT_EQ(probe, &Probe::staticClass());
    EXPECT_EQ(NSClassFromString("Prob"), nullptr);
    EXPECT_TRUE(probe->isSubclassOf(NSObject::staticClass()));
    EXPECT_FALSE(NSObject::staticClass().isSubclassOf(*probe));
    EXPECT_TRUE(make<Special>()->respondsToSelector("notified:"));
    EXPECT_FALSE(make<Special>()->respondsToSelector("notified"));
    EXPECT_TRUE(asKind<Probe>(probe->alloc().get()));
}

TEST(NSObject, ActionsTakeOnlyTheirKindOfArgument)
{
    Journal journal;
    const auto probe = Probe::named("a", journal);
    const auto text = "hello"_ns;
    probe->performSelector("onlyText:", text);
    probe->performSelector("onlyText:", probe);
    EXPECT_EQ(journal.take(), "hello null");
    const std::string thrown = Thrown([&] { probe->performSelector("blink:", nullptr); });
    EXPECT_THAT(thrown, testing::StartsWith(NSInvalidArgumentException));
    EXPECT_THAT(thrown, testing::AllOf(HasSubstr("Probe"), HasSubstr("blink:")));
}

TEST(NSAssertionHandler, DefaultThrowsAndAnotherMayLetWorkGoOn)
{
    struct Quiet : NSAssertionHandler {
        void handleFailureInMethod(SEL method, NSObject*, const char*, int line, const NSString*) override
        {
            seen = std::string(method) + std::to_string(line);
        }
        std::string seen;
    };
    CaughtLog log;
    const auto why = "no listener"_ns;
    const auto probe = make<Probe>();
    const auto fail = [&] {
        NSAssertionHandler::currentHandler()->handleFailureInMethod("add:", probe, "View.cpp", 7, why);
    };
    EXPECT_EQ(Thrown(fail), "NSInternalInconsistencyException: no listener");
    for (const char* part : {"Probe", "add:", "View.cpp:7", "no listener"}) EXPECT_THAT(log.text(), HasSubstr(part));

    const auto quiet = make<Quiet>();
    NSAssertionHandler::setCurrentHandler(quiet);
    EXPECT_EQ(Thrown(fail), "");
    EXPECT_EQ(quiet->seen, "add:7");
    std::thread([&] { EXPECT_NE(NSAssertionHandler::currentHandler(), quiet.get()); }).join();
    NSAssertionHandler::setCurrentHandler(nullptr);
    EXPECT_NE(Thrown(fail), "");
}

TEST(NSLog, WritesOneLineWithProgramAndProcess)
{
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const int standardError = dup(STDERR_FILENO);
    dup2(ends[1], STDERR_FILENO);
    NSLog("%s: %.1f\nnext", "ä", 0.5);
    dup2(standardError, STDERR_FILENO);
    char text[256] = {};
    ASSERT_GT(read(ends[0], text, sizeof text - 1), 0);
    for (const int descriptor : {ends[0], ends[1], standardError}) close(descriptor);
    EXPECT_EQ(std::string(text), "test_foundation[" + std::to_string(getpid()) + "]: ä: 0.5 next\n");
}

} // namespace
