// What lies behind views that fill themselves isn't drawn, and nobody sees it.

#include "AppKit/NSAppearance.h"
#include "AppKit/NSBox.h"
#include "AppKit/NSColor.h"
#include "AppKit/NSGraphicsContext.h"
#include "AppKit/NSSlider.h"
#include "AppKit/NSTextField.h"
#include "CoreGraphics/Pixels.h"
#include "RecordingDisplay.h"
#include "Support/OffscreenRig.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <random>

namespace {

using testing::IsEmpty;
using testing::Not;

/// Has another colour each time: what should have been drawn and wasn't keeps an old one.
class ChangingView final : public NSView {
public:
    void drawRect(NSRect dirty) override
    {
        drawn.push_back(dirty);
        const auto color = CGColorCreateRGBA(level, 1 - level, 0, 1);
        CGContextSetFillColorWithColor(NSGraphicsContext::currentContext(), color);
        CGContextFillRect(NSGraphicsContext::currentContext(), dirty);
    }
    CGFloat level = 0;
    std::vector<NSRect> drawn;
};

/// Looks as its base does, but has everything behind it drawn.
class ModestBox final : public NSBox {
public:
    NSRect opaqueRect() const override { return {}; }
};

/// Cards on a ground, between the pixels, in each other, beside each other and beyond the edges.
struct Cards {
    Cards(CGFloat scale, RetainPtr<NSBox> (*makeBox)(NSRect)) : rig({120, 100}, scale)
    {
        const NSRect all{{0, 0}, {120, 100}};
        ground = rig.add(make<ChangingView>(all));
        const auto add = [&](NSView* superview, NSRect frame) {
            boxes.push_back(makeBox(frame));
            superview->addSubview(boxes.back());
            return boxes.back().get();
        };
        NSView* const card = add(ground, {{10.3, 8.7}, {60, 50}});
        NSView* const inner = add(card, {{-7.45, -6.2}, {45, 43.4}});
        add(inner, {{20, 20}, {50, 35}}); // cut off by both
        const auto group = make<NSView>(NSRect{{58.5, 41}, {45.5, 40}}),
                   edge = make<NSView>(NSRect{{20, 84}, {8.6, 12}});
        for (const RetainPtr<NSView>& plain : {group, edge}) ground->addSubview(plain);
        add(group, group->bounds());
        add(edge, {{5, -4}, {20, 20}});    // what it fills for sure ends in the pixel where it begins
        add(ground, {{70, 70}, {80, 80}}); // cut off by the window
        add(ground, {{5, 88}, {3, 3}});    // smaller than its corners
        mark = make<ChangingView>(NSRect{{25, 4.5}, {10, 28}});
        card->addSubview(mark);
    }
    CGContextRef pixels() const { return rig.window()->bitmap(); }

    OffscreenRig rig;
    ChangingView* ground = nullptr;
    RetainPtr<ChangingView> mark;
    std::vector<RetainPtr<NSBox>> boxes;
};

RetainPtr<NSBox> makeBox(NSRect frame) { return make<NSBox>(frame); }
RetainPtr<NSBox> makeModestBox(NSRect frame) { return RetainPtr<NSBox>(make<ModestBox>(frame).get()); }

/// One change, the same for both.
void change(std::mt19937& random, std::initializer_list<Cards*> scenes)
{
    const auto part = [&](CGFloat most) { return most * static_cast<CGFloat>(random() % 1000) / 1000; };
    const NSRect dirty{{part(120), part(100)}, {part(40), part(40)}};
    const CGFloat level = part(1), x = part(80), y = part(60);
    const std::size_t box = random() % (*scenes.begin())->boxes.size();
    const auto kind = random() % 8;
    for (Cards* const cards : scenes) {
        cards->ground->level = cards->mark->level = level;
        cards->ground->setNeedsDisplayInRect(dirty);
        if (kind == 0) cards->boxes[box]->setHidden(!cards->boxes[box]->isHidden());
        if (kind == 1) cards->boxes[box]->setFrame({{x, y}, cards->boxes[box]->frame().size});
        if (kind == 2) cards->boxes[box]->setNeedsDisplay();
        if (kind == 3) cards->rig.content()->setNeedsDisplay();
    }
}

/// Of more than a sixteenth: what a clip leaves of a pixel is counted in such steps.
std::string firstDifference(std::span<const std::uint8_t> some, std::span<const std::uint8_t> others, std::size_t width)
{
    if (std::ranges::equal(some, others)) return "none"; // much faster than what follows
    const auto found = std::ranges::mismatch(some, others, [](int x, int y) { return std::abs(x - y) <= 16; }).in1;
    if (found == some.end()) return "none";
    const auto pixel = static_cast<std::size_t>(found - some.begin()) / 4;
    return std::to_string(pixel % width) + "," + std::to_string(pixel / width) + ": " + hexOf(some, pixel) + " for " +
           hexOf(others, pixel);
}

TEST(NSWindowDrawing, WhatIsLeftOutIsNeverSeen)
{
    using enum NSAppearanceName;
    static constexpr std::pair<CGFloat, NSAppearanceName> kRows[] = {
        {1, light}, {1.25, dark}, {1.5, light}, {2, dark}, {3, light}};
    for (const auto& [scale, appearance] : kRows) {
        SCOPED_TRACE(scale);
        const auto shown = std::make_unique<Cards>(scale, makeBox);
        const auto drawn = std::make_unique<Cards>(scale, makeModestBox);
        NSAppearance::setCurrent(appearance);
        std::mt19937 random(static_cast<unsigned>(scale * 100));
        for (int step = 0; step < 600; ++step) {
            const CGContextRef some = shown->pixels(), others = drawn->pixels();
            ASSERT_EQ(firstDifference(CGBitmapContextGetPixels(some), CGBitmapContextGetPixels(others),
                                      CGBitmapContextGetWidth(some)),
                      "none")
                << "after " << step << " changes";
            change(random, {shown.get(), drawn.get()});
        }
    }
}

TEST(NSWindowDrawing, OnlyWhatShowsIsDrawn)
{
    Cards cards(1.25, makeBox);
    const auto drawnFor = [&](NSRect dirty) {
        cards.pixels();
        cards.ground->drawn.clear();
        cards.rig.content()->setNeedsDisplayInRect(dirty);
        cards.pixels();
        return cards.ground->drawn;
    };
    EXPECT_THAT(drawnFor({{62, 20}, {4, 20}}), IsEmpty()) << "within a card";
    EXPECT_THAT(drawnFor({{0, 20}, {40, 20}}), Not(IsEmpty())) << "half beside it";
    cards.boxes[0]->setHidden(true);
    EXPECT_THAT(drawnFor({{62, 20}, {4, 20}}), Not(IsEmpty())) << "where it was";
}

TEST(NSWindowDrawing, AChangedValueLooksAsDrawnAnew)
{
    for (const CGFloat scale : {0.5, 1.0, 1.25, 1.5, 2.0, 3.0}) {
        SCOPED_TRACE(scale);
        OffscreenRig rig({200, 120}, scale);
        auto* const card = rig.add(make<NSBox>(NSRect{{4, 4}, {192, 112}}));
        const std::array<RetainPtr<NSControl>, 5> controls = {
            make<NSSlider>(NSRect{{10, 6}, {90, 26}}), make<NSSlider>(NSRect{{150.3, 5.4}, {26, 100}}),
            make<NSTextField>(NSRect{{8, 40}, {60, 24}}), make<NSTextField>(NSRect{{80.7, 42.2}, {50, 14}}),
            make<NSTextField>(NSRect{{8, 72}, {60, 24}})};
        asKind<NSTextField>(controls[4].get())->setBordered(false);
        for (const auto& control : controls) card->addSubview(control);
        std::mt19937 random(1);
        for (int step = 0; step < 60; ++step) {
            const auto& control = controls[random() % controls.size()];
            const double value = static_cast<double>(random() % 1000) / 999;
            if (step % 7 == 0) control->setEnabled(!control->isEnabled());
            if (step % 2 == 0)
                control->setDoubleValue(value);
            else if (asKind<NSTextField>(control.get()))
                control->setStringValue(NSString::string(u"ÅÇj" + std::u16string(random() % 12, u'W')).get());
            else
                rig.scroll(control, {12, 12}, value < 0.5 ? -20 : 20);
            const CGContextRef shown = rig.window()->bitmap();
            const auto pixels = CGBitmapContextGetPixels(shown);
            const std::vector<std::uint8_t> before(pixels.begin(), pixels.end());
            rig.content()->setNeedsDisplay();
            ASSERT_EQ(firstDifference(before, CGBitmapContextGetPixels(rig.window()->bitmap()),
                                      CGBitmapContextGetWidth(shown)),
                      "none")
                << "after " << step << " changes";
        }
    }
}

TEST(NSWindowDrawing, OnlyWhatAValueShowsIsPresented)
{
    RecordedWindow record;
    OffscreenRig rig(std::make_unique<RecordingDisplay>(record), {200, 80});
    const auto presented = [&] {
        rig.turn();
        return record.takePresented();
    };
    auto* const slider = rig.add(make<NSSlider>(NSRect{{10, 10}, {120, 26}}));
    auto* const field = rig.add(make<NSTextField>(NSRect{{10, 40}, {60, 24}}));
    EXPECT_THAT(presented(), Not(IsEmpty()));
    slider->setDoubleValue(0.1);
    EXPECT_THAT(presented(), testing::ElementsAre(CGRectMake(10, 10, 34, 26))) << "14 around the way from 20 to 30";
    field->setDoubleValue(3);
    EXPECT_THAT(presented(), testing::ElementsAre(CGRectMake(15, 41, 50, 22))) << "within its line and corners";

    rig.press(slider, {20, 13});
    rig.dragTo(slider, {300, 13});
    EXPECT_EQ(slider->doubleValue(), 1);
    presented();
    rig.dragTo(slider, {400, 13});
    EXPECT_THAT(presented(), IsEmpty()) << "it can't go farther";
    rig.release();
}

} // namespace
