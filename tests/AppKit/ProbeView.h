#pragma once

/// A view that writes what happens to it into a log, and does what a test tells it to.

#include "RecordingDisplay.h"
#include "Script.h"

class ProbeView final : public NSView {
public:
    static RetainPtr<ProbeView> named(const char* name, NSRect frame, std::string& log)
    {
        auto view = make<ProbeView>(frame);
        view->name = name;
        view->log = &log;
        return view;
    }

    std::string name;
    std::string* log = nullptr;
    bool takesMouse = true, tracks = false, takesFocus = false, keepsFocus = false;
    std::function<void(const char* what)> then; ///< called after the line is in the log

    void note(const char* what)
    {
        *log += name + ":" + what + " ";
        const auto call = then; // which may put another in its place
        if (call) call(what);
    }

    void mouseDown(NSEvent& event) override
    {
        if (!takesMouse) return NSView::mouseDown(event);
        if (tracks) window()->beginTracking(this);
        note("down");
    }
    void mouseDragged(NSEvent&) override { note("drag"); }
    void mouseUp(NSEvent&) override { note("up"); }
    void mouseEntered(NSEvent&) override { note("in"); }
    void mouseExited(NSEvent&) override { note("out"); }
    void scrollWheel(NSEvent&) override { note("wheel"); }
    void keyDown(NSEvent& event) override
    {
        if (event.keyCharacter() != u'k') return NSView::keyDown(event);
        note("key");
    }
    void trackingDidEnd(bool byRelease) override { note(byRelease ? "released" : "ended"); }
    bool acceptsFirstResponder() const override { return takesFocus; }
    bool becomeFirstResponder() override
    {
        note("gets");
        return true;
    }
    bool resignFirstResponder() override
    {
        note(keepsFocus ? "keeps" : "loses");
        return !keepsFocus;
    }
    void abortEditing() override { note("aborts"); }
    NSCursorShape cursorAtPoint(NSPoint) const override { return NSCursorShape::hand; }
    NSRect focusRingBounds() const override { return takesFocus ? bounds() : NSRect{}; }
};

/// A window with such views. A script names them: "press:knob drag:other release focus:box k"; "back" is the window's
/// background. What nobody wanted and what was refused is noted as "unwanted" and "refused"; "who" notes who has the
/// keyboard.
struct ProbeRig {
    std::string log; // views write into it until the window is gone
    RecordedWindow record;
    OffscreenRig rig{std::make_unique<RecordingDisplay>(record), {200, 100}};
    std::map<std::string, RetainPtr<ProbeView>> views;
    Script script;

    ProbeRig()
    {
        script.otherwise = TypingInto([this](const TypedKey& typed) { wanted(rig.key(typed.key, typed.flags)); });
        script.verbs = {
            {"press", onView([this](NSView* view, NSPoint spot) { wanted(rig.press(view, spot)); })},
            {"drag", onView([this](NSView* view, NSPoint spot) { rig.dragTo(view, spot); })},
            {"move", onView([this](NSView* view, NSPoint spot) { rig.moveTo(view, spot); })},
            {"wheel", onView([this](NSView* view, NSPoint spot) { wanted(rig.scroll(view, spot, 1)); })},
            {"rightClick", onView([this](NSView* view, NSPoint spot) {
                 rig.rightPress(view, spot);
                 rig.rightRelease();
             })},
            {"hide", onView([](NSView* view, NSPoint) { view->setHidden(true); })},
            {"remove", onView([](NSView* view, NSPoint) { view->removeFromSuperview(); })},
            {"focus", onView([this](NSView* view, NSPoint) {
                 if (!window()->makeFirstResponder(view)) log += "refused ";
             })},
            {"deaf", onProbe([](ProbeView& probe) { probe.takesMouse = false; })},
            {"eager", onProbe([](ProbeView& probe) { probe.takesFocus = true; })},
            {"shy", onProbe([](ProbeView& probe) { probe.takesFocus = false; })},
            {"keeps", onProbe([](ProbeView& probe) { probe.keepsFocus = true; })},
            {"untrack", onProbe([this](ProbeView& probe) { window()->endTracking(&probe); })},
            {"release", [this](const Step&) { rig.release(); }},
            {"who", [this](const Step&) { log += "=" + focus() + " "; }},
            {"close", [this](const Step&) { window()->close(); }},
        };
    }
    NSWindow* window() const { return rig.window(); }
    RetainPtr<ProbeView> add(const char* name, NSRect frame, NSView* superview = nullptr)
    {
        const auto view = views[name] = ProbeView::named(name, frame, log);
        (superview ? superview : rig.content())->addSubview(view);
        return view;
    }
    /// Does the steps. @return what the views noted meanwhile
    std::string play(std::string_view steps)
    {
        script.play(steps);
        return takeLog();
    }
    std::string takeLog() { return std::exchange(log, {}); }
    /// The name of the view that has the keyboard.
    std::string focus() const
    {
        const auto* const view = asKind<ProbeView>(window()->firstResponder());
        return view ? view->name : "window";
    }

private:
    void wanted(bool isWanted) { log += isWanted ? "" : "unwanted "; }
    Script::Verb onView(const std::function<void(NSView*, NSPoint)>& act) const
    {
        return [this, act](const Step& step) {
            if (step.what == "back")
                act(rig.content(), {1, 90});
            else
                act(views.at(step.what), {3, 3});
        };
    }
    Script::Verb onProbe(const std::function<void(ProbeView&)>& act) const
    {
        return [this, act](const Step& step) { act(*views.at(step.what)); };
    }
};
