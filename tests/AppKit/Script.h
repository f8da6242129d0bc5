#pragma once

/// What a person does, written down: "press:25 S-drag:30 release wheel:-1 Ret".
///
/// Each step is a verb of the rig, with what follows its colon, or a key as in TypedKeys.h. "S-" holds Shift.

#include "AppKit/ActionLog.h"
#include "Support/OffscreenRig.h"
#include "TypedKeys.h"

#include <gtest/gtest.h>

#include <map>

struct Step {
    std::string what; ///< behind the colon
    std::uint32_t flags = 0;
    double number() const { return std::stod(what); }
};

class Script {
public:
    using Verb = std::function<void(const Step&)>;
    std::map<std::string, Verb> verbs;
    std::function<void(const TypedKey&)> type;
    bool typesWords = false; ///< else a word is a verb or one key

    void play(std::string_view script) const
    {
        std::istringstream words{std::string(script)};
        for (std::string word; words >> word;) {
            const bool shift = word.starts_with("S-") && word.find(':') != word.npos;
            const auto colon = std::min(word.find(':'), word.size());
            const auto verb = verbs.find(word.substr(shift ? 2 : 0, colon - (shift ? 2 : 0)));
            if (verb != verbs.end())
                verb->second({word.substr(std::min(colon + 1, word.size())), shift ? NSShiftKeyMask + 0U : 0U});
            else
                typeKeys(word);
        }
    }

private:
    void typeKeys(const std::string& word) const
    {
        const auto keys = KeysOf(word);
        ASSERT_TRUE(typesWords || keys.size() == 1) << word << " is no step";
        for (const TypedKey& key : keys) type(key);
    }
};

/// A control in a window. A place is "x,y" in the control, or a number that the control's rig reads in its own way.
template <typename Control> struct ControlRig : OffscreenRig {
    explicit ControlRig(NSRect frame) : owner(make<Control>(frame)), control(add(owner)), log(make<ActionLog>())
    {
        log->watch(*control);
        script.type = [this](const TypedKey& typed) { key(typed.key, typed.flags); };
        script.verbs = {
            {"press", [this](const Step& step) { press(control, placeOf(step.what), step.flags); }},
            {"drag", [this](const Step& step) { dragTo(control, placeOf(step.what), step.flags); }},
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
    NSPoint placeOf(const std::string& what) const
    {
        const auto comma = what.find(',');
        if (comma == what.npos) return at(std::stod(what));
        return {std::stod(what), std::stod(what.substr(comma + 1))};
    }
};
