// The second half of the loader: outlets and actions, when all objects exist.

#include "AppKit/NSControl.h"
#include "AppKit/NSMenuItem.h"
#include "AppKit/NSNibLoader.h"

namespace {

std::string Quoted(std::string_view name) { return "“" + std::string(name) + "”"; }
std::string ClassName(const NSObject& object) { return object.classTable().name; }

} // namespace

void NSNibLoader::connectAll(std::string_view kind, void (NSNibLoader::*connect)(const Made&, pugi::xml_node))
{
    for (const Made& source : mMade) {
        for (const pugi::xml_node connection : source.element.child("connections").children()) {
            const std::string_view name = connection.name();
            if (name == kind)
                (this->*connect)(source, connection);
            else if (name != "outlet" && name != "action" && kind == "outlet" &&
                     connection.type() == pugi::node_element)
                report(connection, "unknown connection " + Quoted(name));
        }
    }
}

/// The object that a connection names; null where there is none, which is reported.
NSObject* NSNibLoader::objectWithId(pugi::xml_node connection, const char* attribute) const
{
    const std::string_view id = connection.attribute(attribute).value();
    const auto found = mObjectsById.find(id);
    if (found != mObjectsById.end() && found->second) return found->second;
    report(connection, "no element has the id " + Quoted(id));
    return nullptr;
}

void NSNibLoader::connectOutlet(const Made& source, pugi::xml_node connection)
{
    const std::string_view name = connection.attribute("property").value();
    const NSClass::OutletEntry* const outlet = source.object->classTable().findOutlet(name);
    if (!outlet) return report(connection, "unknown outlet " + Quoted(name) + " of " + ClassName(*source.object));
    NSObject* const destination = objectWithId(connection, "destination");
    if (!destination || outlet->connect(source.object, destination)) return;
    report(connection, "the outlet " + Quoted(name) + " of " + ClassName(*source.object) + " takes a " +
                           outlet->className + ", not a " + ClassName(*destination));
}

void NSNibLoader::connectAction(const Made& source, pugi::xml_node connection)
{
    NSObject& object = *source.object;
    const std::string_view name = connection.attribute("selector").value();
    NSObject* const target = objectWithId(connection, "target");
    if (!target) return;
    const NSClass::Action* const action = target->classTable().findAction(name);
    if (!action) return report(connection, "unknown action " + Quoted(name) + " of " + ClassName(*target));
    const auto connect = [&](auto* sender) {
        sender->setTarget(target);
        sender->setAction(action->selector); // the table's text outlives the document's
    };
    if (auto* control = asKind<NSControl>(&object)) return connect(control);
    if (auto* item = asKind<NSMenuItem>(&object)) return connect(item);
    report(connection, "a " + ClassName(object) + " sends no action " + Quoted(name));
}

void NSNibLoader::reportUnconnected() const
{
    for (const Made& each : mMade) {
        if (each.object != mOwner && !each.element.attribute("customClass")) continue;
        for (const NSClass* table = &each.object->classTable(); table; table = table->superclass)
            for (const NSClass::OutletEntry& outlet : table->outlets)
                if (!outlet.get(each.object))
                    report(each.element, "the outlet " + Quoted(outlet.name) + " of " + ClassName(*each.object) +
                                             " is not connected");
    }
}
