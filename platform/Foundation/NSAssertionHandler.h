#pragma once

/// What happens when a call that should have worked did not.

#include "Foundation/NSClass.h"

class NSAssertionHandler : public NSObject {
public:
    NS_CLASS(NSAssertionHandler)

    /// The calling thread's handler; the default one unless another was set.
    static NSAssertionHandler* currentHandler();
    /// Retains `handler`; null restores the default.
    static void setCurrentHandler(NSAssertionHandler* handler);

    /// The default writes a line to the log and raises NSInternalInconsistencyException with `description` as reason. A
    /// handler that returns lets the work go on.
    virtual void handleFailureInMethod(SEL method, NSObject* object, const char* file, int line,
                                       const NSString* description);
};
