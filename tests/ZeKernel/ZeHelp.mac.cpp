#include "ZeHelp.h"

#include <functional>
#include <string>

#include "Foundation/NSAutoreleasePool.h"
#include "Foundation/NSNotification.h"
#include <gtest/gtest.h>

namespace {

/// What an observer of help requests was told while `request` ran: "8 parent" or "-1 null" for each.
std::string Requests(const std::function<void()>& request, const void* parent)
{
    const NSAutoreleasePool pool;
    std::string log;
    const RetainPtr<NSObject> observation = NSNotificationCenter::defaultCenter()->addObserverUsingBlock(
        "ZeHelpNotification"_ns.get(), nullptr, [&](NSNotification& notification) {
            const NSDictionary* info = notification.userInfo();
            const auto* anchor = asKind<NSNumber>(info->objectForKey("anchor"));
            const auto* value = asKind<NSValue>(info->objectForKey("parent"));
            const bool isWhole = anchor && value && std::string(value->objCType()) == "^v" && info->count() == 2 &&
                                 std::string(anchor->objCType()) == "i" && !notification.object();
            log += isWhole ? anchor->description()->utf8() : "incomplete";
            log += !value || !value->pointerValue() ? " null" : value->pointerValue() == parent ? " parent" : " other";
        });
    request();
    return log;
}

} // namespace

TEST(ZeHelp, PostsTheAnchorAndTheParent)
{
    int parent = 0;
    EXPECT_EQ(Requests([&] { ZeHelp::Goto(8, &parent); }, &parent), "8 parent");
    EXPECT_EQ(Requests([] { ZeHelp::Goto(8, nullptr); }, nullptr), "8 null");
    EXPECT_EQ(Requests([] { ZeHelp::GotoHome(); }, nullptr), "-1 null");
}

TEST(ZeHelp, PostsToNobody)
{
    const NSAutoreleasePool pool;
    EXPECT_NO_THROW(ZeHelp::Goto(8, nullptr));
}
