#pragma once

/// Controls and the keyboard in scripts: a word that is no verb is a key as in TypedKeys.h.

#include "AppKit/ActionLog.h"
#include "Support/OffscreenRig.h"
#include "Support/Script.h"
#include "TypedKeys.h"

#include <gtest/gtest.h>

/// For `Script::otherwise`: each word is one key, unless it may be text.
template <typename Press> auto TypingInto(Press press, bool isText = false)
{
    return [press, isText](const std::string& word) {
        const auto keys = KeysOf(word);
        ASSERT_TRUE(isText || keys.size() == 1) << word << " is no step";
        for (const TypedKey& key : keys) press(key);
    };
}

/// A control in a window. A place is "x,y" in the control, or a number that the control's rig reads in its own way.
template <typename Control> struct ControlRig : OffscreenRig {
    explicit ControlRig(NSRect frame) : owner(make<Control>(frame)), control(add(owner)), log(make<ActionLog>())
    {
        log->watch(*control);
        script.otherwise = TypingInto([this](const TypedKey& typed) { key(typed.key, typed.flags); });
        script.verbs = {
            {"press", [this](const Step& step) { press(control, placeOf(step), flagsOf(step)); }},
            {"drag", [this](const Step& step) { dragTo(control, placeOf(step), flagsOf(step)); }},
            {"release", [this](const Step&) { release(); }},
            {"click", [this](const Step&) { click(control); }},
            {"wheel",
             [this](const Step& step) {
                 scroll(control, {5, 5}, step.number());
             }},
            {"wait", [this](const Step& step) { advance(step.number()); }},
            {"hide", [this](const Step&) { control->setHidden(true); }},
            {"enable", [this](const Step&) { control->setEnabled(true); }},
            {"disable", [this](const Step&) { control->setEnabled(false); }},
            {"remove", [this](const Step&) { control->removeFromSuperview(); }},
            {"|", [this](const Step&) { log->text += "| "; }},
        };
    }
    virtual ~ControlRig() = default;
    virtual NSPoint at(double number) const { return {number, 5}; }

    /// @return what was sent meanwhile, with the bars of the script between
    std::string play(std::string_view steps)
    {
        script.play(steps);
        return log->take();
    }

    RetainPtr<Control> owner;
    Control* control;
    RetainPtr<ActionLog> log;
    Script script;

private:
    static std::uint32_t flagsOf(const Step& step) { return step.shift ? NSShiftKeyMask : 0U; }
    NSPoint placeOf(const Step& step) const
    {
        const auto numbers = step.numbers();
        return numbers.size() == 2 ? NSPoint{numbers[0], numbers[1]} : at(numbers.at(0));
    }
};
