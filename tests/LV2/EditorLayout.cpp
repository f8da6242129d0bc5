#include "LV2/EditorLayout.h"

#include "Foundation/NSAutoreleasePool.h"
#include "Foundation/NSBundle.h"
#include "TonaroCocoaViewFactory.h"
#include "ToneUnit/ToneUnit.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <stdexcept>

namespace {

struct Layout {
    std::map<std::string, NSRect> frames;
    CGFloat width = 0;
};

void Collect(TonaroCocoaView& editor, NSView& view, Layout& layout)
{
    const NSRect frame = view.convertRectToWindow(view.bounds());
    for (const NSClass::OutletEntry& outlet : editor.classTable().outlets)
        if (outlet.get(&editor) == &view) layout.frames[outlet.name] = frame;
    const auto* const control = asKind<NSControl>(&view);
    if (control && control->action()) layout.frames[control->action()] = frame;
    for (const RetainPtr<NSView>& subview : view.subviews()) Collect(editor, *subview, layout);
}

Layout ReadLayout()
{
    const NSAutoreleasePool pool;
    NSBundle::registerBundle(NSBundle::bundleWithPath(TONARO_LV2_BUNDLE "/org.tonaro.view.bundle").get());
    ToneUnit unit;
    Layout layout;
    auto* const editor = asKind<TonaroCocoaView>(make<TonaroCocoaViewFactory>()->uiViewForAudioUnit(&unit, NSSize{}));
    if (!editor) throw std::runtime_error("the editor can't be opened");
    Collect(*editor, *editor, layout);
    layout.width = editor->frame().size.width;
    return layout;
}

const Layout& TheLayout()
{
    static const Layout layout = ReadLayout();
    return layout;
}

} // namespace

CGPoint placeInEditor(const std::string& control, double part)
{
    const auto found = TheLayout().frames.find(control);
    if (found == TheLayout().frames.end()) throw std::runtime_error("no control \"" + control + "\"");
    const NSRect& frame = found->second;
    return {frame.origin.x + part * frame.size.width, CGRectGetMidY(frame)};
}

CGFloat editorWidth() { return TheLayout().width; }

double knobOnScreen(XClient& person, CGPoint origin, const std::string& slider)
{
    const CGPoint from = placeInEditor(slider, 0.0);
    const CGFloat width = placeInEditor(slider, 1.0).x - from.x;
    const auto row = person.pixels(CGRectMake(origin.x + from.x, std::floor(origin.y + from.y), width, 1));
    const auto isTrack = [](std::uint32_t pixel) { return (pixel >> 16 & 0xFF) > 0xB8 && (pixel >> 16 & 0xFF) < 0xE8; };
    const auto knobEnd = std::find_if_not(row.rbegin(), row.rend(), isTrack);
    // the knob is 20 wide, and stops where it touches the ends
    return (static_cast<double>(row.rend() - knobEnd) - 20.0) / (static_cast<double>(row.size()) - 20.0);
}

double partOfHz(double hz) { return std::log10(1.0 + hz / 700.0) / std::log10(1.0 + 24000.0 / 700.0); }
double hzOfPart(double part) { return (std::pow(1.0 + 24000.0 / 700.0, part) - 1.0) * 700.0; }
