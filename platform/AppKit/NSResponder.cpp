#include "AppKit/NSResponder.h"
#include "Foundation/NSClass.h"

NS_CLASS_TABLE(NSResponder, NSObject, "")
NS_CLASS_TABLE_END

namespace {

void PassOn(NSResponder& from, void (NSResponder::*message)(NSEvent&), NSEvent& event)
{
    const RetainPtr<NSResponder> next = from.nextResponder();
    if (next)
        ((*next).*message)(event);
    else
        from.noResponderFor(event);
}

} // namespace

void NSResponder::mouseDown(NSEvent& event) { PassOn(*this, &NSResponder::mouseDown, event); }
void NSResponder::mouseDragged(NSEvent& event) { PassOn(*this, &NSResponder::mouseDragged, event); }
void NSResponder::mouseUp(NSEvent& event) { PassOn(*this, &NSResponder::mouseUp, event); }
void NSResponder::rightMouseDown(NSEvent& event) { PassOn(*this, &NSResponder::rightMouseDown, event); }
void NSResponder::rightMouseDragged(NSEvent& event) { PassOn(*this, &NSResponder::rightMouseDragged, event); }
void NSResponder::rightMouseUp(NSEvent& event) { PassOn(*this, &NSResponder::rightMouseUp, event); }
void NSResponder::mouseMoved(NSEvent& event) { PassOn(*this, &NSResponder::mouseMoved, event); }
void NSResponder::scrollWheel(NSEvent& event) { PassOn(*this, &NSResponder::scrollWheel, event); }
void NSResponder::keyDown(NSEvent& event) { PassOn(*this, &NSResponder::keyDown, event); }
void NSResponder::keyUp(NSEvent& event) { PassOn(*this, &NSResponder::keyUp, event); }
void NSResponder::noResponderFor(NSEvent&) {}
