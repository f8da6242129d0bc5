#include "Standalone/AssertionLog.h"

#include "Foundation/NSAssertionHandler.h"
#include "Foundation/NSLog.h"
#include "Foundation/NSString.h"

namespace {

class LoggingAssertionHandler final : public NSAssertionHandler {
public:
    void handleFailureInMethod(SEL, NSObject*, const char* file, int line, const NSString* description) override
    {
        NSLog("%s:%d: %s", file, line, description->utf8().c_str());
    }
};

} // namespace

void logAssertionFailures() { NSAssertionHandler::setCurrentHandler(make<LoggingAssertionHandler>().get()); }
