#include "AppKit/NSButton.h"

#include "Script.h"

#include <gmock/gmock.h>

namespace {

/// "check" makes the button a check box, "look" notes whether it looks pressed.
struct Clicks : ControlRig<NSButton> {
    Clicks() : ControlRig({{20, 20}, {120, 26}})
    {
        window()->makeFirstResponder(control);
        script.verbs["check"] = [this](const Step&) { control->setButtonType(NSSwitchButton); };
        script.verbs["look"] = [this](const Step&) { log->text += control->isHighlighted() ? "pressed " : "raised "; };
        script.verbs["repeat"] = [this](const Step&) { key(u' ', 0, true); };
        script.verbs["perform"] = [this](const Step&) { control->performClick(nullptr); };
    }
};

TEST(NSButton, SendsWhatAPersonDoes)
{
    ExpectLogs<Clicks>({
        {"a check box changes with each click", "check click click _", "1 0 1 "},
        {"a push button has no state", "click Ret", "0 0 "},
        {"Return is not for check boxes", "check Ret", ""},
        {"a release outside is no click", "check press:5 look drag:5,50 look release", "pressed raised "},
        {"back inside it is", "check press:5 drag:5,50 drag:9 release look", "1 raised "},
        {"a held key clicks once and looks pressed for a moment", "_ repeat look wait:0.2 look", "0 pressed raised "},
        {"disabled in the middle of a click", "check press:5 disable release click perform look", "raised "},
        {"hidden in the middle of a click", "check press:5 hide release", ""},
    });
}

TEST(NSButton, AClickGivesItTheKeyboard)
{
    Clicks rig;
    rig.window()->makeFirstResponder(nullptr);
    EXPECT_EQ(rig.play("click _"), "0 0 ");
    rig.control->setButtonType(NSSwitchButton);
    EXPECT_FALSE(rig.key(NSCarriageReturnCharacter)) << "Return is left to the window";
}

TEST(NSButton, AValueAboveZeroIsOn)
{
    static const struct {
        double value;
        int state;
    } kRows[] = {{0, 0}, {1, 1}, {0.25, 1}, {7, 1}, {-1, 0}};
    const auto button = make<NSButton>(NSRect{{0, 0}, {100, 26}});
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.value);
        button->setFloatValue(static_cast<float>(row.value));
        EXPECT_EQ(button->state(), row.state);
        EXPECT_EQ(button->floatValue(), static_cast<float>(row.state));
    }
}

} // namespace
