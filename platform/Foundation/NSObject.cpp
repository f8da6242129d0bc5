#include "Foundation/NSClass.h"
#include "Foundation/NSException.h"
#include "Foundation/NSLog.h"
#include "Foundation/NSObjectTables.h"
#include "Foundation/NSString.h"

namespace {

// A dying object counts from here, so that a reference taken and dropped inside dealloc() never ends it again.
constexpr std::uint32_t kDying = 0x40000000;

std::string ClassName(const NSObject* object) { return object->classTable().name; }

} // namespace

void NSReference::retain(NSObject* object)
{
    if (object) ++object->mReferences;
}

void NSReference::release(NSObject* object)
{
    if (!object || --object->mReferences > 0) return;
    object->mReferences = kDying;
    struct End {
        NSObject* object;
        ~End()
        {
            if (object->mInTables) NSObjectTables::forget(object);
            delete object;
        }
    };
    const End end{object};
    object->dealloc();
}

void NSReference::releaseNoThrow(NSObject* object) noexcept
{
    try {
        release(object);
    } catch (const std::exception& exception) {
        NSLog("an object's end failed: %s", exception.what());
    } catch (...) {
        NSLog("an object's end failed");
    }
}

void NSObjectTables::forget(NSObject* object) noexcept
{
    object->mInTables = false;
    NSForgetNotifications(object);
    NSForgetBindings(object);
    NSForgetObservations(object);
    NSForgetWeakReferences(object);
}

NSObject::~NSObject()
{
    // a destructor of a subclass may have put it back
    if (mInTables) NSObjectTables::forget(this);
}

bool NSObject::initWithCoder(NSCoder&) { return init(); }

static const NSClassRegistration kNSObjectRegistration{NSObject::staticClass()};
const NSClass& NSObject::staticClass()
{
    static const NSClass table{"NSObject", nullptr, "", nullptr, {}, {}, {}};
    return table;
}

const NSClass& NSObject::classTable() const { return staticClass(); }

RetainPtr<NSString> NSObject::description() const
{
    return NSString::stringWithFormat("<%s %p>", ClassName(this).c_str(), static_cast<const void*>(this));
}

bool NSObject::respondsToSelector(SEL selector) const { return selector && classTable().findAction(selector); }

void NSObject::performSelector(SEL selector, NSObject* argument)
{
    const NSClass::Action* action = selector ? classTable().findAction(selector) : nullptr;
    if (!action)
        throw NSException(NSInvalidArgumentException,
                          ClassName(this) + " has no action “" + (selector ? selector : "") + "”");
    action->perform(this, argument);
}
