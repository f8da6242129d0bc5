#include "AppKit/NSAppearance.h"

#include "AppKit/NSBox.h"
#include "AppKit/NSButton.h"
#include "AppKit/NSImage.h"
#include "AppKit/NSPopUpButton.h"
#include "AppKit/NSSlider.h"
#include "AppKit/NSTextField.h"
#include "Foundation/NSNotification.h"
#include "RecordingDisplay.h"
#include "Support/OffscreenRig.h"
#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <cmath>

namespace {

using enum NSAppearanceColorName;
using Color = std::array<CGFloat, 4>;

/// Leaves the process light, as it found it.
class Appearance : public testing::Test {
protected:
    ~Appearance() override { NSApplication::sharedApplication()->setAppearance(std::nullopt); }
    static void show(std::optional<NSAppearanceName> name) { NSApplication::sharedApplication()->setAppearance(name); }
};

// --- contrast, as the accessibility guidelines of the web reckon it

double Luminance(const Color& color)
{
    const auto linear = [](double c) { return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4); };
    return 0.2126 * linear(color[0]) + 0.7152 * linear(color[1]) + 0.0722 * linear(color[2]);
}

/// Of a colour that may let its ground shine through.
double Contrast(NSAppearanceColorName drawn, NSAppearanceColorName ground)
{
    Color color = CGColorGetComponents(NSAppearanceColor(drawn));
    const Color under = CGColorGetComponents(NSAppearanceColor(ground));
    for (std::size_t i = 0; i < 3; ++i) color[i] = color[i] * color[3] + under[i] * (1 - color[3]);
    const auto [dark, light] = std::minmax({Luminance(color), Luminance(under)});
    return (light + 0.05) / (dark + 0.05);
}

TEST_F(Appearance, TextAndMarksStandOutFromTheirGround)
{
    constexpr double kText = 4.5, kMark = 3;
    static constexpr struct {
        const char* what;
        NSAppearanceColorName drawn, ground;
        double least;
    } kPairs[] = {
        {"a title on a card", textColor, cardColor, kText},
        {"a title in a window", textColor, windowBackgroundColor, kText},
        {"text in a field", textColor, fieldColor, kText},
        {"the title of a pressed button", textColor, fieldPressedColor, kText},
        {"selected text", textColor, selectionColor, kText},
        {"selected text without the keyboard", textColor, inactiveSelectionColor, kText},
        {"an item of a menu", textColor, menuColor, kText},
        {"the item under the pointer", menuHighlightTextColor, menuHighlightColor, kText},
        {"a label on a card", secondaryLabelColor, cardColor, kText},
        {"a label in a window", secondaryLabelColor, windowBackgroundColor, kText},
        {"the arrows of a stepper", secondaryLabelColor, fieldColor, kText},
        {"a note", bubbleTextColor, bubbleColor, kText},
        {"a check mark", alternateTextColor, controlAccentColor, kMark},
        {"a check mark, pressed", alternateTextColor, pressedAccentColor, kMark},
        {"a check box that is on", controlAccentColor, cardColor, kMark},
        {"a slider's value", controlAccentColor, trackColor, kMark},
        {"a meter beyond its end", errorColor, trackColor, kMark},
        {"a caret", controlAccentColor, fieldColor, kMark},
        {"the border of a field", fieldBorderColor, cardColor, kMark},
        {"the border of a field, from inside", fieldBorderColor, fieldColor, kMark},
        {"the border of a field under the pointer", fieldHoverBorderColor, cardColor, kMark},
        {"the border of a refused field", errorColor, cardColor, kMark},
        {"the focus on a card", focusRingColor, cardColor, kMark},
        {"a tick", tickColor, cardColor, kMark},
        {"the highlight of a menu", menuHighlightColor, menuColor, kMark},
        {"a note over a card", bubbleColor, cardColor, kMark},
    };
    for (const NSAppearanceName name : {NSAppearanceName::light, NSAppearanceName::dark}) {
        show(name);
        for (const auto& pair : kPairs)
            EXPECT_GE(Contrast(pair.drawn, pair.ground), pair.least)
                << pair.what << (name == NSAppearanceName::dark ? ", dark" : ", light");
        // a knob stands out by its own colour or by its border
        EXPECT_GE(std::max(Contrast(knobColor, cardColor), Contrast(knobBorderColor, cardColor)), kMark);
        EXPECT_GE(std::max(Contrast(knobColor, controlAccentColor), Contrast(knobBorderColor, controlAccentColor)),
                  kMark);
    }
}

// --- the change

std::vector<std::uint8_t> PixelsOf(NSWindow& window)
{
    const auto pixels = CGBitmapContextGetPixels(window.bitmap());
    return {pixels.begin(), pixels.end()};
}

/// One of each control, a field in the middle of an edit, and the change to dark before or after the first drawing.
struct Panel {
    explicit Panel(bool changes)
    {
        show(changes ? NSAppearanceName::light : NSAppearanceName::dark);
        rig.add(make<NSBox>(NSRect{{5, 5}, {300, 200}}));
        auto* slider = rig.add(make<NSSlider>(NSRect{{10, 10}, {150, 26}}));
        slider->setDoubleValue(0.5);
        rig.add(make<NSButton>(NSRect{{170, 10}, {100, 26}}))->setTitle("Play"_ns.get());
        auto* popUp = rig.add(make<NSPopUpButton>(NSRect{{10, 40}, {120, 26}}));
        popUp->addItemWithTitle("Sine"_ns.get());
        auto* label = rig.add(make<NSTextField>(NSRect{{10, 70}, {120, 26}}));
        label->setStringValue("Label"_ns.get());
        label->cell()->setTextColor(NSColor::colorNamed("secondaryLabelColor").get());
        auto* field = rig.add(make<NSTextField>(NSRect{{150, 70}, {120, 26}}));
        field->setEditable(true);
        field->setBordered(true);
        rig.window()->makeFirstResponder(field);
        rig.type("440");
        rig.turn();
        if (!changes) return;
        before = PixelsOf(*rig.window());
        show(NSAppearanceName::dark);
    }
    static void show(NSAppearanceName name) { NSApplication::sharedApplication()->setAppearance(name); }

    OffscreenRig rig;
    std::vector<std::uint8_t> before;
};

TEST_F(Appearance, EverythingChangesWhileItIsShown)
{
    std::vector<std::uint8_t> changed, light;
    {
        Panel panel(true);
        EXPECT_TRUE(panel.rig.window()->needsDisplay());
        changed = PixelsOf(*panel.rig.window());
        light = panel.before;
        show(NSAppearanceName::light);
        EXPECT_EQ(PixelsOf(*panel.rig.window()), light) << "back again";
    }
    Panel dark(false);
    EXPECT_EQ(changed, PixelsOf(*dark.rig.window()));
    EXPECT_NE(changed, light);
}

RetainPtr<NSObject> Heard(const std::function<void()>& heard)
{
    return NSNotificationCenter::defaultCenter()->addObserverUsingBlock(
        NSString::string(NSAppearanceDidChangeNotification).get(), nullptr, [heard](NSNotification&) { heard(); });
}

TEST_F(Appearance, OnlyAnotherOneIsAnnounced)
{
    int heard = 0;
    const auto observer = Heard([&] { ++heard; });
    show(NSAppearanceName::light);
    EXPECT_EQ(heard, 0);
    show(NSAppearanceName::dark);
    show(NSAppearanceName::dark);
    EXPECT_EQ(heard, 1);
}

TEST_F(Appearance, AWindowMayCloseWhenItHears)
{
    OffscreenRig first, second;
    const auto observer = Heard([&] {
        first.window()->close();
        second.window()->close();
    });
    show(NSAppearanceName::dark);
    EXPECT_EQ(first.window()->bitmap(), nullptr);
}

class ChangingDesktop final : public RecordingDisplay {
public:
    ChangingDesktop(RecordedWindow& record, NSAppearanceName name) : RecordingDisplay(record), mName(name) {}
    void change(NSAppearanceName name)
    {
        mName = name;
        mChanged();
    }
    NSAppearanceName appearance() const override { return mName; }
    void setAppearanceHandler(const std::function<void()>& changed) override { mChanged = changed; }

private:
    NSAppearanceName mName;
    std::function<void()> mChanged;
};

TEST_F(Appearance, FollowsTheDesktopUnlessOneWasChosen)
{
    const auto light = NSAppearanceName::light, dark = NSAppearanceName::dark;
    NSApplication* const application = NSApplication::sharedApplication();
    RecordedWindow record;
    auto owned = std::make_unique<ChangingDesktop>(record, dark);
    ChangingDesktop& desktop = *owned;
    application->setDisplay(std::move(owned));
    EXPECT_EQ(NSAppearance::current(), dark) << "from the start";
    desktop.change(light);
    EXPECT_EQ(NSAppearance::current(), light);
    show(dark);
    desktop.change(light);
    EXPECT_EQ(NSAppearance::current(), dark) << "chosen";
    show(std::nullopt);
    EXPECT_EQ(NSAppearance::current(), light) << "no longer chosen";
    desktop.change(dark);
    application->setDisplay(nullptr);
    EXPECT_EQ(NSAppearance::current(), light) << "without a display";
}

TEST_F(Appearance, APictureHasAVariantForTheDark)
{
    static const struct {
        const char* why;
        std::vector<std::size_t> files; ///< widths of "", "@2x", "-dark", "-dark@2x"; 0 for none
        std::size_t light1, light2, dark1, dark2;
    } kRows[] = {
        {"all of them", {1, 2, 3, 4}, 1, 2, 3, 4},      {"none for the dark", {1, 2, 0, 0}, 1, 2, 1, 2},
        {"coarse, but dark", {1, 2, 3, 0}, 1, 2, 3, 3}, {"dark only where it is fine", {1, 0, 0, 4}, 1, 1, 1, 4},
        {"dark only", {0, 0, 3, 4}, 0, 0, 3, 4},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        const TemporaryFolder folder;
        const char* const kNames[] = {"p.png", "p@2x.png", "p-dark.png", "p-dark@2x.png"};
        for (std::size_t i = 0; i < row.files.size(); ++i) {
            if (row.files[i] == 0) continue;
            const auto stripe = CGBitmapContextCreate(row.files[i], 1);
            ASSERT_TRUE(CGImageWritePNGFile(CGBitmapContextCreateImage(stripe).get(), folder / kNames[i]));
        }
        const auto path = NSString::string(folder / "p.png");
        const auto image = make<NSImage>(&NSImage::initByReferencingFile, path.get());
        const auto widthAt = [&](NSAppearanceName name, CGFloat scale) {
            show(name);
            const auto picture = image->representationForScale(scale).image;
            return picture ? CGImageGetWidth(picture.get()) : 0;
        };
        EXPECT_EQ(widthAt(NSAppearanceName::dark, 1), row.dark1);
        EXPECT_EQ(widthAt(NSAppearanceName::dark, 2), row.dark2);
        EXPECT_EQ(widthAt(NSAppearanceName::light, 1), row.light1);
        EXPECT_EQ(widthAt(NSAppearanceName::light, 2), row.light2);
    }
}

} // namespace
