#include "Standalone/ControlList.h"

#include <nlohmann/json.hpp>

namespace {

using Json = nlohmann::ordered_json;

std::string textOf(const NSString* text) { return text ? text->utf8() : std::string(); }

/// The name under which the editor knows the control; empty when it doesn't.
std::string outletOf(const TonaroCocoaView& editor, const NSControl& control)
{
    for (const NSClass::OutletEntry& outlet : editor.classTable().outlets)
        if (outlet.get(&editor) == &control) return outlet.name;
    return {};
}

bool isReachedByKeyboard(const NSControl& control)
{
    const auto* field = dynamic_cast<const NSTextField*>(&control);
    return !field || field->isEditable();
}

Json describe(const TonaroCocoaView& editor, const NSControl& control)
{
    const NSRect frame = control.convertRectToWindow(control.bounds());
    const SEL action = control.action();
    Json json = {
        {"outlet", outletOf(editor, control)},
        {"class", control.classTable().name},
        {"frame", {frame.origin.x, frame.origin.y, frame.size.width, frame.size.height}},
        {"value", control.doubleValue()},
        {"text", textOf(control.stringValue().get())},
        {"enabled", control.isEnabled()},
        {"action", action ? action : ""},
    };
    if (const auto* popup = dynamic_cast<const NSPopUpButton*>(&control)) {
        json["value"] = popup->indexOfSelectedItem();
        json["text"] = textOf(popup->titleOfSelectedItem());
        json["items"] = Json::array();
        for (int i = 0; i < popup->numberOfItems(); ++i) json["items"].push_back(textOf(popup->itemTitleAtIndex(i)));
    } else if (dynamic_cast<const NSButton*>(&control)) {
        json["text"] = textOf(control.cell()->title());
    }
    return json;
}

void collect(const TonaroCocoaView& editor, const NSView& view, Json& list)
{
    if (view.isHidden()) return;
    const auto* control = dynamic_cast<const NSControl*>(&view);
    if (control && isReachedByKeyboard(*control)) list.push_back(describe(editor, *control));
    for (const RetainPtr<NSView>& subview : view.subviews()) collect(editor, *subview, list);
}

} // namespace

std::string controlList(const TonaroCocoaView& editor)
{
    Json list = Json::array();
    collect(editor, editor, list);
    // text from outside may be anything; what isn't UTF-8 is replaced
    return list.dump(2, ' ', false, Json::error_handler_t::replace);
}
