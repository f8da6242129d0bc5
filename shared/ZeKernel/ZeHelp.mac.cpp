#include "ZeHelp.h"

#include "Foundation/NSDictionary.h"
#include "Foundation/NSNotification.h"
#include "Foundation/NSNumber.h"
#include "Foundation/NSString.h"

namespace {
constexpr int kHomePage = -1;
} // namespace

ZeString ssHelpNotification(L"ZeHelpNotification");

void ZeHelp::Goto(int anchor, void* parent)
{
    const RetainPtr<NSDictionary> userInfo =
        NSDictionary::dictionary({{"anchor"_ns.get(), NSNumber::numberWithInt(anchor).get()},
                                  {"parent"_ns.get(), NSValue::valueWithPointer(parent).get()}});
    NSNotificationCenter::defaultCenter()->postNotificationName(ssHelpNotification, nullptr, userInfo);
}

void ZeHelp::GotoHome() { Goto(kHomePage, nullptr); }
