#pragma once

/// A target that writes down each action with the value its sender has then: "440 880 ".

#include "AppKit/NSControl.h"
#include "AppKit/NSMenuItem.h"
#include "Foundation/NSClass.h"

#include <functional>
#include <string>

class ActionLog : public NSObject {
public:
    NS_CLASS(ActionLog)

    void changed(NSObject* sender)
    {
        if (const auto* control = asKind<NSControl>(sender))
            text += NSNumber::numberWithDouble(control->doubleValue())->stringValue()->utf8() + " ";
        if (const auto* item = asKind<NSMenuItem>(sender)) text += item->title()->utf8() + " ";
        if (also) also();
    }
    template <typename Control> void watch(Control& control)
    {
        control.setTarget(this);
        control.setAction("changed:");
    }
    std::string take() { return std::exchange(text, {}); }

    std::string text;
    std::function<void()> also; ///< done in the action
};
