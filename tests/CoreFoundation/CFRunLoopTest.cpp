#include "CoreFoundation/CFRunLoop.h"

#include "Foundation/NSAutoreleasePool.h"

#include <gtest/gtest.h>

#include <csignal>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <thread>

#include <poll.h>
#include <unistd.h>

namespace {

/// A clock that stands at 1000, and a log of what was called: "a@1.5" is `a`, 1.5 seconds after the start.
struct CFRunLoopTest : testing::Test {
    ~CFRunLoopTest() override
    {
        for (const auto& timer : mTimers) CFRunLoopTimerInvalidate(timer);
    }

    void note(const std::string& what)
    {
        std::ostringstream entry;
        entry << what << '@' << CFAbsoluteTimeGetCurrent() - 1000.0;
        mLog += (mLog.empty() ? "" : " ") + entry.str();
    }
    std::string takeLog() { return std::exchange(mLog, {}); }

    CFRunLoopTimerRef addTimer(const std::string& name, double delay, double interval, std::function<void()> then = {})
    {
        auto timer = CFRunLoopTimerCreate(CFAbsoluteTimeGetCurrent() + delay, interval, [this, name, then] {
            note(name);
            if (then) then();
        });
        CFRunLoopAddTimer(loop, timer, kCFRunLoopCommonModes);
        mTimers.push_back(timer);
        return timer;
    }
    void addBlock(const std::string& name, std::function<void()> then = {})
    {
        CFRunLoopPerformBlock(loop, kCFRunLoopDefaultMode, [this, name, then] {
            note(name);
            if (then) then();
        });
    }
    static CFRunLoopRunResult run(double seconds) { return CFRunLoopRunInMode(kCFRunLoopDefaultMode, seconds, false); }

    CFManualClock clock;
    CFRunLoopRef loop = CFRunLoopGetCurrent();

private:
    std::string mLog;
    std::vector<RetainPtr<CFRunLoopTimer>> mTimers;
};

struct Pipe {
    Pipe() { EXPECT_EQ(pipe(ends), 0); }
    ~Pipe()
    {
        closeEnd(0);
        closeEnd(1);
    }
    void closeEnd(int end)
    {
        if (ends[end] >= 0) close(std::exchange(ends[end], -1));
    }
    void send() const { EXPECT_EQ(write(ends[1], "x", 1), 1); }
    void receive() const
    {
        char byte = 0;
        EXPECT_EQ(read(ends[0], &byte, 1), 1);
    }
    int ends[2] = {-1, -1};
};

TEST_F(CFRunLoopTest, TimersFireByDateAndKeepTheirPhase)
{
    addTimer("b", 1.5, 0.0);
    addTimer("a", 1.0, 2.0);
    EXPECT_EQ(run(4.0), kCFRunLoopRunTimedOut);
    EXPECT_EQ(takeLog(), "a@1 b@1.5 a@3");

    clock.advance(5.5); // at 9.5, with 5, 7 and 9 missed
    run(0.0);
    run(2.0);
    EXPECT_EQ(takeLog(), "a@9.5 a@11");
}

TEST_F(CFRunLoopTest, ATurnDoesWhatWasDueAndNoMore)
{
    addTimer("late", -1.0, 0.0, [this] { addTimer("new", 0.0, 0.0); });
    addTimer("later", -0.5, 0.0);
    addBlock("block", [this] { addBlock("inner"); });
    const auto observer = CFRunLoopAddBeforeWaiting(loop, [this] { note("draw"); });
    EXPECT_EQ(run(0.0), kCFRunLoopRunTimedOut);
    EXPECT_EQ(takeLog(), "block@0 late@0 later@0 draw@0");
    EXPECT_TRUE(CFRunLoopIsDue(loop));
    run(0.0);
    EXPECT_EQ(takeLog(), "inner@0 new@0 draw@0");
    EXPECT_FALSE(CFRunLoopIsDue(loop));
    addTimer("in a second", 1.0, 0.0);
    EXPECT_FALSE(CFRunLoopIsDue(loop));
    clock.advance(1.0);
    EXPECT_TRUE(CFRunLoopIsDue(loop));
    run(0.0);
    EXPECT_EQ(takeLog(), "in a second@1 draw@1");
    CFRunLoopWakeUp(loop);
    EXPECT_TRUE(CFRunLoopIsDue(loop));
    run(0.0);
    EXPECT_EQ(takeLog(), "draw@1");
    CFRunLoopRemoveBeforeWaiting(loop, observer);
    EXPECT_EQ(run(10.0), kCFRunLoopRunFinished) << "nothing is left to wait for";
    EXPECT_EQ(takeLog(), "");
}

TEST_F(CFRunLoopTest, CallbacksMayTakeAwayAnything)
{
    CFRunLoopTimerRef victim = nullptr;
    CFRunLoopTimerRef self = nullptr;
    std::uint64_t observers[2] = {};
    addTimer("killer", 1.0, 0.0, [&] { CFRunLoopTimerInvalidate(victim); });
    victim = addTimer("victim", 1.0, 1.0);
    self = addTimer("self", 1.0, 1.0, [&] { CFRunLoopTimerInvalidate(self); });
    observers[0] = CFRunLoopAddBeforeWaiting(loop, [&] {
        note("first");
        for (const auto observer : observers) CFRunLoopRemoveBeforeWaiting(loop, observer);
    });
    observers[1] = CFRunLoopAddBeforeWaiting(loop, [this] { note("second"); });
    EXPECT_EQ(run(5.0), kCFRunLoopRunFinished);
    EXPECT_EQ(takeLog(), "killer@1 self@1 first@1");
}

TEST_F(CFRunLoopTest, ATimerCanBeSetAgainInItsOwnCallback)
{
    int left = 2;
    CFRunLoopTimerRef timer = nullptr;
    timer = addTimer("again", 1.0, 0.0, [&] {
        if (left-- > 0) CFRunLoopTimerSetNextFireDate(timer, CFAbsoluteTimeGetCurrent() + 3.0);
    });
    EXPECT_EQ(run(60.0), kCFRunLoopRunFinished);
    EXPECT_EQ(takeLog(), "again@1 again@4 again@7");
}

TEST_F(CFRunLoopTest, AnExceptionReachesTheRunnerAndLeavesTheRest)
{
    const auto fail = [] { throw std::runtime_error("callback"); };
    addBlock("bad", fail);
    addBlock("good");
    addTimer("once", 0.0, 0.0, fail);
    addTimer("often", 0.0, 1.0, fail);
    EXPECT_THROW(run(0.0), std::runtime_error);
    EXPECT_THROW(run(0.0), std::runtime_error);
    EXPECT_THROW(run(0.0), std::runtime_error);
    EXPECT_EQ(takeLog(), "bad@0 good@0 once@0 often@0");
    EXPECT_THROW(run(2.5), std::runtime_error);
    EXPECT_EQ(takeLog(), "often@1");
}

TEST_F(CFRunLoopTest, ANestedRunServesTheOthersAndStopsAlone)
{
    addTimer("outer", 1.0, 1.0, [this] {
        EXPECT_EQ(run(2.5), kCFRunLoopRunStopped);
        note("back");
    });
    addTimer("other", 1.5, 1.0, [this] {
        if (CFAbsoluteTimeGetCurrent() > 1002.0) CFRunLoopStop(loop);
    });
    EXPECT_EQ(run(1.25), kCFRunLoopRunTimedOut);
    EXPECT_EQ(takeLog(), "outer@1 other@1.5 other@2.5 back@2.5");
}

TEST_F(CFRunLoopTest, RunsTellWhyTheyEnded)
{
    EXPECT_EQ(run(1.0), kCFRunLoopRunFinished);
    addTimer("t", 1.0, 1.0);
    EXPECT_EQ(run(0.5), kCFRunLoopRunTimedOut);
    EXPECT_EQ(CFRunLoopRunInMode(kCFRunLoopDefaultMode, 10.0, true), kCFRunLoopRunHandledSource);
    CFRunLoopStop(loop);
    EXPECT_EQ(run(10.0), kCFRunLoopRunStopped);
    addBlock("stop", [this] { CFRunLoopStop(loop); });
    CFRunLoopRun();
    EXPECT_EQ(takeLog(), "t@1 stop@1");
}

TEST_F(CFRunLoopTest, DescriptorsAreServedWhileTheClockStands)
{
    Pipe data;
    const auto source = CFFileDescriptorCreate(data.ends[0], [&] {
        note("data");
        data.receive();
    });
    CFRunLoopAddFileDescriptor(loop, source, kCFRunLoopCommonModes);
    CFRunLoopAddFileDescriptor(loop, source, kCFRunLoopCommonModes); // counts once
    addTimer("send", 1.0, 0.0, [&] {
        data.send();
        data.send();
    });
    addTimer("timer", 2.0, 0.0);
    run(3.0);
    EXPECT_EQ(takeLog(), "send@1 data@1 data@1 timer@2");
    EXPECT_EQ(run(0.0), kCFRunLoopRunTimedOut);
    CFFileDescriptorInvalidate(source);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(run(0.0), kCFRunLoopRunFinished);
}

TEST_F(CFRunLoopTest, DescriptorsMayVanish)
{
    Pipe first;
    Pipe second;
    RetainPtr<CFFileDescriptor> sources[2];
    const auto vanish = [&](const char* name) {
        note(name);
        for (const auto& source : sources) CFFileDescriptorInvalidate(source);
    };
    sources[0] = CFFileDescriptorCreate(first.ends[0], [&] { vanish("first"); });
    sources[1] = CFFileDescriptorCreate(second.ends[0], [&] { vanish("second"); });
    for (const auto& source : sources) CFRunLoopAddFileDescriptor(loop, source, kCFRunLoopCommonModes);
    second.send();
    first.closeEnd(1); // hangs up: counts as readable
    EXPECT_EQ(run(0.0), kCFRunLoopRunFinished);
    EXPECT_EQ(takeLog(), "first@0") << "the second was ready too, but gone when its turn came";

    // closed by its owner, who forgot to say so
    Pipe closed;
    const auto source = CFFileDescriptorCreate(closed.ends[0], [&] { note("closed"); });
    CFRunLoopAddFileDescriptor(loop, source, kCFRunLoopCommonModes);
    closed.closeEnd(0);
    EXPECT_EQ(run(0.0), kCFRunLoopRunFinished);
    EXPECT_EQ(takeLog(), "");
}

// Few descriptors are watched by the kernel, which spares a look the system call; many must be polled.
TEST_F(CFRunLoopTest, LooksFindWhatCameAfterQuietOnes)
{
    for (const std::size_t count : {1U, 3U, 40U}) {
        SCOPED_TRACE(count);
        std::vector<Pipe> pipes(count);
        std::vector<RetainPtr<CFFileDescriptor>> sources;
        for (std::size_t i = 0; i < count; ++i) {
            sources.push_back(CFFileDescriptorCreate(pipes[i].ends[0], [this, i] { note(std::to_string(i)); }));
            CFRunLoopAddFileDescriptor(loop, sources[i], kCFRunLoopCommonModes);
        }
        const auto look = [&] {
            run(0.0);
            return takeLog();
        };
        for (int round = 0; round < 3; ++round) {
            for (int i = 0; i < 4; ++i) EXPECT_EQ(look(), "");
            const std::size_t sending = static_cast<std::size_t>(round) % count;
            const std::string called = std::to_string(sending) + "@0";
            std::thread([&] { pipes[sending].send(); }).join();
            EXPECT_EQ(look(), called);
            EXPECT_EQ(look(), called) << "nobody has read it yet";
            pipes[sending].send();
            EXPECT_EQ(look(), called);
            pipes[sending].receive();
            pipes[sending].receive();
        }
        EXPECT_EQ(look(), "");

        Pipe added;
        sources.push_back(CFFileDescriptorCreate(added.ends[0], [this] { note("added"); }));
        CFRunLoopAddFileDescriptor(loop, sources.back(), kCFRunLoopCommonModes);
        added.send();
        EXPECT_EQ(look(), "added@0");
        added.receive();
        for (int i = 0; i < 3; ++i) EXPECT_EQ(look(), "");

        for (const auto& source : sources) CFFileDescriptorInvalidate(source);
        pipes[0].closeEnd(0);
        pollfd writer{pipes[0].ends[1], 0, 0};
        EXPECT_EQ(poll(&writer, 1, 1000), 1) << "nothing else may hold the closed end";
        EXPECT_NE(writer.revents & POLLERR, 0);
    }
}

TEST_F(CFRunLoopTest, TimersEndTheRest)
{
    const Pipe silent;
    const auto source = CFFileDescriptorCreate(silent.ends[0], [] {});
    CFRunLoopAddFileDescriptor(loop, source, kCFRunLoopCommonModes);
    auto* const timer = addTimer("timer", 100.0, 0.0, {});
    const auto rest = [&] {
        for (int i = 0; i < 3; ++i) run(0.0);
        return takeLog();
    };
    EXPECT_EQ(rest(), "");
    CFRunLoopTimerSetNextFireDate(timer, CFAbsoluteTimeGetCurrent() + 1.0);
    EXPECT_EQ(rest(), "");
    clock.advance(1.0);
    EXPECT_EQ(rest(), "timer@1");
    addTimer("new", 1.0, 0.0);
    EXPECT_EQ(rest(), "");
    clock.advance(1.0);
    EXPECT_EQ(rest(), "new@2");
    addBlock("block");
    EXPECT_EQ(rest(), "block@2");
    std::thread([this] { addBlock("from a thread"); }).join();
    EXPECT_EQ(rest(), "from a thread@2");
    CFFileDescriptorInvalidate(source);
}

TEST_F(CFRunLoopTest, ObserversAreCalledWhereSomethingWasDue)
{
    const auto observer = CFRunLoopAddBeforeWaiting(loop, [this] { note("observer"); });
    Pipe data;
    const auto source = CFFileDescriptorCreate(data.ends[0], [&] { data.receive(); });
    CFRunLoopAddFileDescriptor(loop, source, kCFRunLoopCommonModes);
    run(0.0);
    run(1.0);
    EXPECT_EQ(takeLog(), "");
    CFRunLoopWakeUp(loop);
    CFRunLoopWakeUp(loop);
    run(0.0);
    run(0.0);
    EXPECT_EQ(takeLog(), "observer@1") << "woken from its own thread";
    std::thread([this] { CFRunLoopWakeUp(loop); }).join();
    run(1.0);
    EXPECT_EQ(takeLog(), "observer@1") << "from another";
    data.send();
    run(0.0);
    EXPECT_EQ(takeLog(), "observer@2") << "a descriptor";
    addTimer("timer", 1.0, 0.0);
    run(2.0);
    EXPECT_EQ(takeLog(), "timer@3 observer@3");
    CFRunLoopRemoveBeforeWaiting(loop, observer);
    CFFileDescriptorInvalidate(source);
}

TEST_F(CFRunLoopTest, EachTurnHasItsPool)
{
    struct Temporary : NSObject {
        CFRunLoopTest* test = nullptr;
        void dealloc() override { test->note("gone"); }
    };
    addTimer("give", 0.0, 0.0, [this] {
        auto temporary = make<Temporary>();
        temporary->test = this;
        NSAutorelease(temporary);
    });
    addTimer("next", 1.0, 0.0);
    run(2.0);
    EXPECT_EQ(takeLog(), "give@0 gone@0 next@1");
}

// From here on the system's clock: other threads and the kernel know no other.

TEST(CFRunLoopThreads, BlocksOfManyThreadsAllArriveInTheirOrder)
{
    constexpr int kThreads = 4;
    constexpr int kBlocks = 2000;
    CFRunLoopRef loop = CFRunLoopGetCurrent();
    const auto keepWaiting =
        CFRunLoopTimerCreate(CFAbsoluteTimeGetCurrent() + 60.0, 0.0, [loop] { CFRunLoopStop(loop); });
    CFRunLoopAddTimer(loop, keepWaiting, kCFRunLoopCommonModes);
    int received[kThreads] = {};
    int outOfOrder = 0;
    int total = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back([&, t] {
            for (int i = 0; i < kBlocks; ++i)
                CFRunLoopPerformBlock(loop, kCFRunLoopDefaultMode, [&, t, i] {
                    outOfOrder += received[t]++ != i;
                    if (++total == kThreads * kBlocks) CFRunLoopStop(loop);
                });
        });
    CFRunLoopRun();
    for (auto& thread : threads) thread.join();
    CFRunLoopTimerInvalidate(keepWaiting);
    EXPECT_EQ(total, kThreads * kBlocks);
    EXPECT_EQ(outOfOrder, 0);
}

TEST(CFRunLoopThreads, WaitingDoesNoWork)
{
    CFRunLoopRef loop = CFRunLoopGetCurrent();
    int turns = 0;
    const auto observer = CFRunLoopAddBeforeWaiting(loop, [&] { ++turns; });
    const auto timer = CFRunLoopTimerCreate(CFAbsoluteTimeGetCurrent() + 0.05, 0.0, [] {});
    CFRunLoopAddTimer(loop, timer, kCFRunLoopCommonModes);
    CFRunLoopRun();
    CFRunLoopRemoveBeforeWaiting(loop, observer);
    EXPECT_LE(turns, 3);
}

TEST(CFRunLoopThreads, AWakeUpBeforeAWaitIsNotLost)
{
    CFRunLoopRef loop = CFRunLoopGetCurrent();
    const auto guard = CFRunLoopTimerCreate(CFAbsoluteTimeGetCurrent() + 60.0, 0.0, [] { FAIL() << "it waited"; });
    CFRunLoopAddTimer(loop, guard, kCFRunLoopCommonModes);
    const auto observer = CFRunLoopAddBeforeWaiting(loop, [loop] { CFRunLoopStop(loop); });
    for (int i = 0; i < 200; ++i) {
        std::thread other([loop] { CFRunLoopWakeUp(loop); });
        CFRunLoopWakeUp(loop);
        EXPECT_EQ(CFRunLoopRunInMode(kCFRunLoopDefaultMode, 60.0, false), kCFRunLoopRunStopped);
        other.join();
    }
    CFRunLoopRemoveBeforeWaiting(loop, observer);
    CFRunLoopTimerInvalidate(guard);
}

TEST(CFRunLoopThreads, SignalsOnlyWakeIt)
{
    struct sigaction action {};
    action.sa_handler = [](int) {};
    struct sigaction old {};
    ASSERT_EQ(sigaction(SIGUSR1, &action, &old), 0);
    CFRunLoopRef loop = CFRunLoopGetCurrent();
    const auto guard = CFRunLoopTimerCreate(CFAbsoluteTimeGetCurrent() + 60.0, 0.0, [] { FAIL() << "never woken"; });
    CFRunLoopAddTimer(loop, guard, kCFRunLoopCommonModes);
    std::thread sender([loop, receiver = pthread_self()] {
        for (int i = 0; i < 200; ++i) pthread_kill(receiver, SIGUSR1);
        CFRunLoopStop(loop);
    });
    EXPECT_EQ(CFRunLoopRunInMode(kCFRunLoopDefaultMode, 60.0, true), kCFRunLoopRunStopped);
    sender.join();
    CFRunLoopTimerInvalidate(guard);
    sigaction(SIGUSR1, &old, nullptr);
}

TEST(CFRunLoopThreads, ALoopWhoseThreadEndedHoldsNothing)
{
    const auto token = std::make_shared<int>();
    RetainPtr<CFRunLoop> loop;
    std::thread thread([&] {
        loop = CFRunLoopGetCurrent();
        CFRunLoopPerformBlock(loop, kCFRunLoopDefaultMode, [token] {});
        const auto timer = CFRunLoopTimerCreate(CFAbsoluteTimeGetCurrent() + 60.0, 0.0, [token] {});
        CFRunLoopAddTimer(loop, timer, kCFRunLoopDefaultMode);
        CFRunLoopAddBeforeWaiting(loop, [token] {});
    });
    thread.join();
    EXPECT_EQ(token.use_count(), 1);
    CFRunLoopPerformBlock(loop, kCFRunLoopDefaultMode, [token] {});
    EXPECT_EQ(token.use_count(), 1);
    EXPECT_NE(loop.get(), CFRunLoopGetCurrent());
}

} // namespace
