#include "Foundation/NSAssertionHandler.h"

#include "Foundation/NSException.h"
#include "Foundation/NSLog.h"
#include "Foundation/NSString.h"

NS_CLASS_TABLE(NSAssertionHandler, NSObject, "")
NS_CLASS_TABLE_END

namespace {

RetainPtr<NSAssertionHandler>& TheHandler()
{
    thread_local RetainPtr<NSAssertionHandler> handler;
    return handler;
}

} // namespace

NSAssertionHandler* NSAssertionHandler::currentHandler()
{
    RetainPtr<NSAssertionHandler>& handler = TheHandler();
    if (!handler) handler = make<NSAssertionHandler>();
    return handler;
}

void NSAssertionHandler::setCurrentHandler(NSAssertionHandler* handler) { TheHandler() = handler; }

void NSAssertionHandler::handleFailureInMethod(SEL method, NSObject* object, const char* file, int line,
                                               const NSString* description)
{
    const std::string reason = description ? description->utf8() : std::string();
    NSLog("assertion failed in %s %s, %s:%d: %s", object ? object->classTable().name : "(null)", method ? method : "",
          file ? file : "", line, reason.c_str());
    throw NSException(NSInternalInconsistencyException, reason);
}
