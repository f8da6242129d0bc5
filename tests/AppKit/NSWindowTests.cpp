#include "AppKit/NSAppearance.h"
#include "AppKit/NSColor.h"
#include "AppKit/NSGraphicsContext.h"
#include "ProbeView.h"
#include "RecordingDisplay.h"
#include "Support/CaughtLog.h"
#include "Support/OffscreenRig.h"
#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <cstdlib>

namespace {

using testing::ElementsAre;

class PaintedView final : public NSView {
public:
    void drawRect(NSRect dirty) override
    {
        drawn.push_back(dirty);
        const auto fill = CGColorCreateRGBA(color[0], color[1], color[2], 1);
        CGContextSetFillColorWithColor(NSGraphicsContext::currentContext(), fill);
        CGContextFillRect(NSGraphicsContext::currentContext(), CGRectInset(bounds(), -50, -50)); // clipped to the view
        const auto call = then; // which may put another in its place
        if (call) call();
    }
    std::array<CGFloat, 3> color = {1, 0, 0};
    std::vector<NSRect> drawn;
    std::function<void()> then;
};

struct DrawingRig {
    explicit DrawingRig(CGFloat scale = 1) : rig(std::make_unique<RecordingDisplay>(record, scale), {200, 100})
    {
        view = rig.add(make<PaintedView>(NSRect{{10, 10}, {100, 50}}));
        rig.turn();
        record.takePresented();
        view->drawn.clear();
    }
    std::vector<CGRect> turn()
    {
        rig.turn();
        return record.takePresented();
    }
    RecordedWindow record;
    OffscreenRig rig;
    PaintedView* view = nullptr;
};

constexpr std::array<int, 4> kRed = {255, 0, 0, 255}, kGreen = {0, 255, 0, 255};

std::array<int, 4> Background()
{
    const auto color = CGColorGetComponents(NSAppearanceColor(NSAppearanceColorName::windowBackgroundColor));
    std::array<int, 4> bytes{};
    std::transform(color.begin(), color.end(), bytes.begin(),
                   [](CGFloat component) { return static_cast<int>(std::lround(component * 255)); });
    return bytes;
}

TEST(NSWindow, ABitmapHasThePixelsOfItsScale)
{
    static const struct {
        CGFloat scale;
        std::size_t width, height;
    } kRows[] = {{1, 421, 10}, {1.25, 526, 13}, {1.5, 632, 15}, {2, 842, 20}, {3, 1263, 30}};
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.scale);
        OffscreenRig rig({421, 10}, row.scale);
        EXPECT_EQ(CGBitmapContextGetWidth(rig.window()->bitmap()), row.width);
        EXPECT_EQ(CGBitmapContextGetHeight(rig.window()->bitmap()), row.height);
    }
}

TEST(NSWindow, OnlyWhatChangedIsShownOnceATurn)
{
    DrawingRig t;
    EXPECT_THAT(t.turn(), ElementsAre());
    t.view->setNeedsDisplayInRect({{5, 5}, {10, 10}});
    t.view->setNeedsDisplayInRect({{8, 5}, {9, 10}}); // joined with the first
    t.view->setNeedsDisplayInRect({{80, 40}, {100, 100}});
    EXPECT_THAT(t.turn(), ElementsAre(CGRectMake(15, 15, 12, 10), CGRectMake(90, 50, 20, 10)));
    EXPECT_THAT(t.view->drawn, ElementsAre(CGRectMake(5, 5, 12, 10), CGRectMake(80, 40, 20, 10)));
    EXPECT_THAT(t.turn(), ElementsAre());
}

TEST(NSWindow, WhatChangedIsWidenedToWholePixels)
{
    DrawingRig t(1.25);
    t.view->setNeedsDisplayInRect({{0, 0}, {1, 1}}); // pixels 12.5 to 13.75
    EXPECT_THAT(t.turn(), ElementsAre(CGRectMake(12, 12, 2, 2)));
    t.view->setNeedsDisplayInRect({{2, 2}, {4, 4}}); // 15 to 20, on the pixel
    EXPECT_THAT(t.turn(), ElementsAre(CGRectMake(15, 15, 5, 5)));
}

TEST(NSWindow, ManyChangesAreDrawnAsFewRectangles)
{
    NSDirtyRegion region;
    for (int i = 0; i < 100; ++i) region.add(CGRectMake(i % 10 * 40, i / 10 * 40, 5, 5));
    EXPECT_LE(region.rects().size(), NSDirtyRegion::kMost);
    for (int i = 0; i < 100; ++i) {
        const CGPoint inside{i % 10 * 40 + 2.0, i / 10 * 40 + 2.0};
        EXPECT_TRUE(std::any_of(region.rects().begin(), region.rects().end(),
                                [&](CGRect rect) { return CGRectContainsPoint(rect, inside); }));
    }
}

TEST(NSWindow, ViewsAreClippedAndCoverEachOtherInTheirOrder)
{
    DrawingRig t;
    const auto inner = make<PaintedView>(NSRect{{90, 40}, {50, 50}});
    inner->color = {0, 1, 0};
    t.view->addSubview(inner);
    EXPECT_EQ(t.rig.pixel(10, 10), kRed);
    EXPECT_EQ(t.rig.pixel(9, 10), Background());
    EXPECT_EQ(t.rig.pixel(105, 55), kGreen);
    EXPECT_EQ(t.rig.pixel(115, 65), Background()); // outside of the superview
    inner->setHidden(true);
    EXPECT_EQ(t.rig.pixel(105, 55), kRed);
    t.view->setFrame({{50, 10}, {100, 50}});
    EXPECT_EQ(t.rig.pixel(20, 20), Background());
    t.view->removeFromSuperview();
    EXPECT_EQ(t.rig.pixel(60, 20), Background());
}

TEST(NSWindow, HiddenWindowsAndViewsShowNothing)
{
    DrawingRig t;
    t.view->setHidden(true);
    t.turn();
    t.view->setNeedsDisplay();
    EXPECT_THAT(t.turn(), ElementsAre());
    t.rig.window()->orderOut();
    t.rig.content()->setNeedsDisplay();
    EXPECT_THAT(t.turn(), ElementsAre());
    t.rig.window()->orderFront();
    EXPECT_THAT(t.turn(), ElementsAre(CGRectMake(0, 0, 200, 100)));
}

TEST(NSWindow, AViewMayChangeAnythingWhileItDraws)
{
    DrawingRig t;
    t.view->then = [&] {
        t.view->then = nullptr;
        t.rig.content()->setFrame({{0, 0}, {300, 200}});
        t.view->setNeedsDisplay();
        t.view->removeFromSuperview();
        t.rig.window()->displayIfNeeded();
    };
    t.view->setNeedsDisplay();
    t.turn();
    t.turn();
    EXPECT_EQ(CGBitmapContextGetWidth(t.rig.window()->bitmap()), 300U);
    EXPECT_EQ(t.rig.pixel(20, 20), Background());
}

TEST(NSWindow, ANewScaleIsDrawnAnew)
{
    DrawingRig t;
    t.record.client->backendResized({200, 100}, 2);
    EXPECT_THAT(t.turn(), ElementsAre(CGRectMake(0, 0, 400, 200)));
    EXPECT_EQ(t.rig.pixel(20, 20), kRed);
    EXPECT_EQ(t.rig.pixel(19, 20), Background());
    EXPECT_EQ(t.rig.window()->backingScaleFactor(), 2);
}

TEST(NSWindow, WhatAHostGivesBeyondTheContentIsBackground)
{
    DrawingRig t;
    t.record.client->backendResized({400, 300}, 1);
    EXPECT_EQ(t.rig.pixel(20, 20), kRed);
    EXPECT_EQ(t.rig.pixel(399, 299), Background());
}

TEST(NSWindow, LostPixelsAreShownAgainWithoutDrawing)
{
    DrawingRig t;
    t.record.client->backendExposed();
    EXPECT_THAT(t.record.takePresented(), ElementsAre(CGRectMake(0, 0, 200, 100)));
    EXPECT_THAT(t.view->drawn, ElementsAre());
}

TEST(NSWindow, TheFocusRingIsDrawnOverItsNeighboursWhileTheWindowHasTheKeyboard)
{
    std::string log;
    DrawingRig t;
    const auto focused = ProbeView::named("f", {{112, 10}, {40, 20}}, log);
    focused->takesFocus = true;
    t.rig.add(focused);
    const auto beside = [&t] { return t.rig.pixel(109, 20); }; // of the red view, under the ring
    EXPECT_EQ(beside(), kRed);
    t.rig.window()->makeFirstResponder(focused);
    EXPECT_NE(beside(), kRed);
    t.record.client->backendFocusChanged(false);
    EXPECT_EQ(beside(), kRed);
    t.record.client->backendFocusChanged(true);
    EXPECT_NE(beside(), kRed);
    focused->setFrame({{150, 40}, {40, 20}});
    EXPECT_EQ(beside(), kRed);
    focused->setFrame({{112, 10}, {40, 20}});
    t.rig.window()->makeFirstResponder(nullptr);
    EXPECT_EQ(beside(), kRed);
}

TEST(NSWindow, AnOverlayLiesAboveAllAndTakesNoPress)
{
    DrawingRig t;
    const auto overlay = make<PaintedView>(NSRect{{20, 20}, {10, 10}});
    overlay->color = {0, 1, 0};
    t.rig.window()->addOverlay(overlay);
    EXPECT_EQ(t.rig.pixel(25, 25), kGreen);
    EXPECT_EQ(t.rig.content()->hitTest({25, 25}), t.view);
    overlay->setFrame({{40, 20}, {10, 10}});
    EXPECT_EQ(t.rig.pixel(25, 25), kRed);
    t.rig.window()->removeOverlay(overlay);
    EXPECT_EQ(t.rig.pixel(45, 25), kRed);
    EXPECT_EQ(overlay->window(), nullptr);
}

TEST(NSWindow, AToolTipAppearsWhenThePointerRests)
{
    DrawingRig t;
    t.view->setToolTip("Gain of the tone"_ns.get());
    const auto shown = [&t] { return t.rig.pixel(60, 50) != kRed; };
    t.rig.moveTo(t.view, {30, 10});
    t.rig.advance(0.5);
    EXPECT_FALSE(shown());
    t.rig.moveTo(t.view, {30, 11});
    t.rig.advance(0.5);
    EXPECT_FALSE(shown());
    t.rig.advance(0.11);
    EXPECT_TRUE(shown());
    t.rig.press(t.view, {30, 11});
    EXPECT_FALSE(shown());
    t.rig.release();
    t.rig.advance(2);
    EXPECT_FALSE(shown());
}

TEST(NSColor, APatternStartsAtTheCornerOfTheWindow)
{
    const TemporaryFolder folder;
    const auto writeTile = [&](const char* name, std::size_t size) { // left half red, right half green
        const auto tile = CGBitmapContextCreate(size, size);
        const auto half = static_cast<CGFloat>(size) / 2;
        CGContextSetFillColorWithColor(tile, CGColorCreateRGBA(1, 0, 0, 1).get());
        CGContextFillRect(tile, CGRectMake(0, 0, half, 2 * half));
        CGContextSetFillColorWithColor(tile, CGColorCreateRGBA(0, 1, 0, 1).get());
        CGContextFillRect(tile, CGRectMake(half, 0, half, 2 * half));
        ASSERT_TRUE(CGImageWritePNGFile(CGBitmapContextCreateImage(tile).get(), folder / name));
    };
    writeTile("tile.png", 4);
    writeTile("tile@2x.png", 8);
    class PatternView final : public NSView {
    public:
        void drawRect(NSRect dirty) override
        {
            color->set();
            NSRectFill(dirty);
        }
        RetainPtr<NSColor> color;
    };
    for (const std::size_t scale : {1U, 2U}) {
        SCOPED_TRACE(scale);
        OffscreenRig rig({40, 40}, static_cast<CGFloat>(scale));
        auto* const view = rig.add(make<PatternView>(NSRect{{3, 3}, {30, 30}}));
        const auto path = NSString::string(folder / "tile.png");
        view->color = NSColor::colorWithPatternImage(make<NSImage>(&NSImage::initByReferencingFile, path).get());
        view->setNeedsDisplay();
        EXPECT_EQ(rig.pixel(scale * 4, scale * 10), kRed);
        EXPECT_EQ(rig.pixel(scale * 6, scale * 10), kGreen);
        EXPECT_EQ(rig.pixel(scale * 8, scale * 10), kRed);
        EXPECT_EQ(rig.pixel(scale * 2, scale * 10), Background());
    }
}

TEST(NSColor, APatternThatCannotBeReadIsNamedOnceAndPaintsQuietly)
{
    const CaughtLog log;
    const auto image = make<NSImage>(&NSImage::initByReferencingFile, "/nowhere/PluginPattern.png"_ns.get());
    const auto color = NSColor::colorWithPatternImage(image);
    color->CGColorForScale(1);
    EXPECT_EQ(CGColorGetComponents(color->CGColorForScale(2).get()),
              CGColorGetComponents(NSAppearanceColor(NSAppearanceColorName::windowBackgroundColor)));
    EXPECT_EQ(image->size(), NSSize{});
    EXPECT_THAT(log.lines, ElementsAre(testing::HasSubstr("/nowhere/PluginPattern.png")));
}

TEST(NSColor, TellsWhetherAnythingShowsThroughIt)
{
    const auto folder = std::filesystem::temp_directory_path() / "tonaro-opaque-test";
    std::filesystem::create_directories(folder);
    const auto writePicture = [&](const char* name, CGFloat alphaOfLastPixel) {
        const auto picture = CGBitmapContextCreate(2, 2);
        CGContextFillRect(picture, CGRectMake(0, 0, 2, 2));
        CGContextClearRect(picture, CGRectMake(1, 1, 1, 1));
        CGContextSetAlpha(picture, alphaOfLastPixel);
        CGContextFillRect(picture, CGRectMake(1, 1, 1, 1));
        ASSERT_TRUE(CGImageWritePNGFile(CGBitmapContextCreateImage(picture).get(), (folder / name).string()));
    };
    writePicture("solid.png", 1);
    writePicture("thin.png", 0.99);
    writePicture("mixed.png", 1);
    writePicture("mixed@2x.png", 0);
    const auto pattern = [&](const char* name) {
        const auto path = NSString::string((folder / name).string());
        return NSColor::colorWithPatternImage(make<NSImage>(&NSImage::initByReferencingFile, path).get());
    };
    using enum NSAppearanceColorName;
    const struct {
        const char* why;
        RetainPtr<NSColor> color;
        CGFloat scale;
        bool isOpaque;
    } rows[] = {
        {"plain", NSColor::colorWithRGBA(1, 0, 0, 1), 1, true},
        {"plain and thin", NSColor::colorWithRGBA(1, 0, 0, 0.99), 1, false},
        {"by name", NSColor::colorNamed(cardColor), 1, true},
        {"a thin one by name", NSColor::colorNamed(shadowColor), 1, false},
        {"a picture", pattern("solid.png"), 1, true},
        {"a picture at a scale that it has no other for", pattern("solid.png"), 2, true},
        {"one thin pixel", pattern("thin.png"), 1, false},
        {"the other picture isn't drawn", pattern("mixed.png"), 1, true},
        {"the other picture is drawn", pattern("mixed.png"), 2, false},
        {"no picture: the background", pattern("none.png"), 1, true},
    };
    NSLogSetSink([](std::string_view) {});
    for (const auto& row : rows) EXPECT_EQ(row.color->isOpaqueForScale(row.scale), row.isOpaque) << row.why;
    NSLogSetSink({});
    std::filesystem::remove_all(folder);
}

} // namespace
