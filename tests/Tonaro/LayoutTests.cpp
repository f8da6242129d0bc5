// The interface description: connected, aligned, and wide enough for its texts.

#include "EditorRig.h"

#include "AppKit/NSBox.h"
#include "CoreText/CTLine.h"
#include "TonaroFormatPopUp.h"

#include <gmock/gmock.h>

namespace {

const char* const kLanguages[] = {"en", "de", "fr", "es", "ja"};
constexpr double kScales[] = {1, 1.25, 1.5, 2};

/// An editor in some language; what the log is told while it loads is kept.
class Layout {
public:
    explicit Layout(const char* language)
    {
        NSBundle::setPreferredLanguages({language});
        unit.sampleRate = 768000; // for the longest ranges
        NSLogSetSink([this](std::string_view line) { log.emplace_back(line); });
        editor = std::make_unique<Editor>(&unit);
        NSLogSetSink(nullptr);
        collect(*editor->view);
    }
    ~Layout() { NSBundle::setPreferredLanguages({"en"}); }
    Layout(const Layout&) = delete;
    Layout& operator=(const Layout&) = delete;

    EditorScene scene;
    ScriptedUnit unit;
    std::vector<std::string> log;
    std::unique_ptr<Editor> editor;
    std::vector<NSView*> views; ///< but the cards, which lie under the others
    std::vector<NSControl*> controls;

private:
    void collect(const NSView& view)
    {
        for (const RetainPtr<NSView>& inner : view.subviews()) {
            if (inner->isKindOfClass<NSBox>()) continue;
            views.push_back(inner);
            if (auto* control = asKind<NSControl>(inner.get())) controls.push_back(control);
            collect(*inner);
        }
    }
};

const NSTextField* labelIn(const NSControl& control)
{
    const auto* field = asKind<NSTextField>(&control);
    return field && !field->isEditable() ? field : nullptr;
}

std::string textOf(const NSControl& control)
{
    if (labelIn(control)) return control.stringValue()->utf8();
    if (const auto* popup = asKind<NSPopUpButton>(&control); popup && popup->titleOfSelectedItem())
        return popup->titleOfSelectedItem()->utf8();
    const auto* button = asKind<NSButton>(&control);
    return button && button->title() ? button->title()->utf8() : "";
}

/// What a control draws in a frame `widening` points wider than its own, away from the side at which its text stands.
class Picture {
public:
    Picture(NSControl& control, CGFloat widening, double scale)
        : mContext(CGBitmapContextCreate(pixels(control.bounds().size.width + 2 * kMargin, scale),
                                         pixels(control.bounds().size.height, scale))),
          mLeft(pixels(kMargin, scale)),
          mRight(pixels(kMargin + control.bounds().size.width, scale))
    {
        const bool toTheRight = control.cell()->alignment() == NSRightTextAlignment;
        const NSSize size = control.bounds().size;
        const NSGraphicsContext::Scope scope(mContext);
        CGContextScaleCTM(mContext, scale, scale);
        control.cell()->drawWithFrame(
            CGRectMake(kMargin - (toTheRight ? widening : 0), 0, size.width + widening, size.height), control);
    }

    static constexpr CGFloat kMargin = 160;

    friend bool operator==(const Picture& a, const Picture& b) { return std::ranges::equal(a.bytes(), b.bytes()); }
    bool hasInkOutside() const
    {
        const std::size_t width = CGBitmapContextGetWidth(mContext);
        for (std::size_t i = 3; i < bytes().size(); i += 4) {
            const std::size_t x = i / 4 % width;
            if ((x < mLeft || x >= mRight) && bytes()[i] > 0) return true;
        }
        return false;
    }

private:
    static std::size_t pixels(CGFloat points, double scale)
    {
        return static_cast<std::size_t>(std::ceil(points * scale));
    }
    std::span<const std::uint8_t> bytes() const { return CGBitmapContextGetPixels(mContext); }

    RetainPtr<CGContext> mContext;
    std::size_t mLeft, mRight;
};

TEST(Layout, ConnectsEverythingWithoutAWordInTheLog)
{
    const Layout layout("en");
    EXPECT_THAT(layout.log, testing::IsEmpty());
    for (const NSClass::OutletEntry& outlet : layout.editor->view->classTable().outlets)
        EXPECT_TRUE(outlet.get(layout.editor->view)) << outlet.name;
    for (const NSControl* control : layout.controls) {
        if (labelIn(*control)) continue;
        ASSERT_TRUE(control->action()) << control->classTable().name;
        ASSERT_TRUE(control->target()) << control->action();
        EXPECT_TRUE(control->target()->respondsToSelector(control->action())) << control->action();
    }
}

TEST(Layout, KeepsItsViewsInsideAndApart)
{
    const Layout layout("en");
    for (const NSView* view : layout.views) {
        EXPECT_EQ(CGRectIntersection(view->frame(), layout.editor->view->bounds()), view->frame());
        for (const NSView* other : layout.views) {
            if (other == view) continue;
            const NSRect common = CGRectIntersection(view->frame(), other->frame());
            EXPECT_TRUE(CGRectIsEmpty(common))
                << common.origin.x << ',' << common.origin.y << ' ' << common.size.width << 'x' << common.size.height
                << ' ' << view->classTable().name << ' ' << other->classTable().name;
        }
    }
}

TEST(Layout, AlignsTextOnTwoLines)
{
    const Layout layout("en");
    const CGFloat sliders = layout.editor->start().frame().origin.x;
    std::set<CGFloat> labels, fields;
    for (const NSControl* control : layout.controls) {
        if (control->cell()->alignment() != NSRightTextAlignment) continue;
        const CGFloat left = control->frame().origin.x, right = CGRectGetMaxX(control->frame());
        if (left == sliders) continue; // the length's field stands where the other rows have their slider
        (right <= sliders ? labels : fields).insert(right);
    }
    EXPECT_THAT(labels, testing::SizeIs(1));
    EXPECT_THAT(fields, testing::SizeIs(1));
}

TEST(Layout, HasRoomForItsTextsInEveryLanguageAndScale)
{
    for (const char* language : kLanguages) {
        const Layout layout(language);
        int texts = 0;
        for (NSControl* control : layout.controls) {
            if (textOf(*control).empty()) continue;
            ++texts;
            if (asKind<NSPopUpButton>(control)) continue;
            for (const double scale : kScales) {
                SCOPED_TRACE(textOf(*control) + " at " + std::to_string(scale));
                const Picture drawn(*control, 0, scale);
                EXPECT_TRUE(drawn == Picture(*control, Picture::kMargin, scale)) << "it is cut";
                EXPECT_FALSE(drawn.hasInkOutside());
            }
        }
        EXPECT_EQ(texts, 14) << "five names, two ranges, three units, two check boxes, two choices";
    }
}

TEST(Layout, HasRoomForEveryFormatInEveryLanguage)
{
    for (const char* language : kLanguages) {
        const Layout layout(language);
        const auto popup = std::find_if(layout.controls.begin(), layout.controls.end(),
                                        [](NSControl* control) { return asKind<TonaroFormatPopUp>(control); });
        ASSERT_NE(popup, layout.controls.end());
        auto& formats = *asKind<TonaroFormatPopUp>(*popup);
        EXPECT_EQ(formats.numberOfItems(), 11);
        for (int i = 0; i < formats.numberOfItems(); ++i) {
            formats.selectItemAtIndex(i);
            const auto line = CTLineCreate(formats.titleOfSelectedItem()->units(), formats.cell()->font());
            SCOPED_TRACE(formats.titleOfSelectedItem()->utf8());
            EXPECT_LT(CTLineGetTypographicBounds(line).width, formats.bounds().size.width - 36) << "inset and chevron";
        }
    }
}

TEST(Layout, SpeaksTheUsersLanguage)
{
    const auto check = [](const char* language, const char* title, const char* toolTip) {
        SCOPED_TRACE(language);
        const Layout layout(language);
        EXPECT_EQ(layout.editor->outlet<NSButton>("mUseEndCheckbox").title()->utf8(), title);
        EXPECT_TRUE(std::any_of(layout.views.begin(), layout.views.end(), [&](const NSView* view) {
            return view->toolTip() && view->toolTip()->utf8() == toolTip;
        }));
    };
    check("en", "Sweep to an end frequency", "Help");
    check("de", "Bis zu einer Endfrequenz gleiten", "Hilfe");
    check("fr", "Balayer jusqu’à une fréquence finale", "Aide");
    check("nl", "Sweep to an end frequency", "Help");
}

} // namespace
