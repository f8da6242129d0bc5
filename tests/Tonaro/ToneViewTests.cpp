// The picture of the tone: where its points stand, and what dragging them sends.

#include "EditorRig.h"

#include "TonaroToneView.h"

#include <algorithm>
#include <cmath>

namespace {

class ToneViewTest : public EditorTest {
protected:
    TonaroToneView& picture() const { return editor->only<TonaroToneView>(); }
    void mouse(NSEventType type, NSPoint point) { editor->mouse(type, picture(), point); }
    void escape() { editor->key(NSEscapeCharacter); }
};

TEST(TonaroToneShape, FollowsTheSweep)
{
    TonaroToneShape shape{.startHz = 100, .endHz = 10000, .sweeps = true, .isLogarithmic = true};
    EXPECT_NEAR(shape.hzAt(0.5), 1000, 1e-9) << "evenly in pitch";
    shape.isLogarithmic = false;
    EXPECT_NEAR(shape.hzAt(0.5), 5050, 1e-9) << "evenly in hertz";
    EXPECT_EQ(shape.heightOf(22050), 1);
    EXPECT_EQ(shape.heightOf(0), 0);
    EXPECT_EQ(shape.heightOf(1e9), 1);
    EXPECT_EQ(shape.heightOf(NAN), 0);
    for (const double hz : {0.01, 0.5, 99.25, 440.0, 1000.0, 22050.0}) EXPECT_EQ(shape.hzOf(shape.heightOf(hz)), hz);
    EXPECT_EQ(shape.hzOf(-1), 0.01);

    const auto flat = shape.path({{0, 0}, {100, 50}}, false);
    EXPECT_EQ(flat.front().y, flat.back().y);
    const auto path = shape.path({{10, 10}, {100, 50}}, true);
    EXPECT_EQ(path.front().x, 10);
    EXPECT_EQ(path.back().x, 110);
    EXPECT_TRUE(std::is_sorted(path.begin(), path.end(), [](CGPoint a, CGPoint b) { return a.y > b.y; }));
}

TEST(TonaroGraph, IsAsWideAcrossTheCurveEverywhere)
{
    const struct {
        const char* what;
        double (*yAt)(double x);
        CGFloat step; ///< between points
    } kCurves[] = {
        {"flat", [](double) { return 30.0; }, 400},
        {"rising slowly, in strips", [](double x) { return 50 - x / 20; }, 4},
        {"a wave, in one piece", [](double x) { return 30 + 24 * std::sin(x / 12); }, 0.5},
    };
    for (const CGFloat scale : {1.0, 2.0}) {
        for (const auto& curve : kCurves) {
            const auto context = CGBitmapContextCreate(1000, 130);
            CGContextTranslateCTM(context, 3, 0.25);
            CGContextScaleCTM(context, scale, scale);
            std::vector<CGPoint> points;
            for (CGFloat x = 10; x <= 410; x += curve.step) points.push_back({x, curve.yAt(x - 10)});
            const TonaroGraph graph(CGContextGetCTM(context), points, {{10, 2}, {400, 60}}, 2);
            graph.draw(context, NSAppearanceColorName::textColor);
            const auto pixels = CGBitmapContextGetPixels(context);
            const auto inkIn = [&](std::size_t column) {
                double ink = 0;
                for (std::size_t row = 0; row < 130; ++row) ink += pixels[4 * (1000 * row + column) + 3] / 255.0;
                return ink;
            };
            const auto first = static_cast<std::size_t>(10 * scale + 3), count = static_cast<std::size_t>(400 * scale);
            EXPECT_EQ(inkIn(first - 1) + inkIn(first + count), 0) << "beside it";
            int wrong = 0;
            for (std::size_t i = 2; i + 2 < count; ++i) { // the pen is round, and ends there
                const double from = curve.yAt(double(i) / scale), to = curve.yAt(double(i + 1) / scale);
                const double wanted = scale * 2 * std::hypot(1, (to - from) * scale);
                if (std::abs(inkIn(first + i) - wanted) > 0.07 * wanted) ++wrong;
            }
            EXPECT_EQ(wrong, 0) << curve.what << " at " << scale;
        }
    }
}

TEST(TonaroToneShape, HasFiniteWavesInsideItsRectangle)
{
    for (const double hz : {0.0, -1.0, 440.0, 1e30}) {
        for (int waveform = 0; waveform < 4; ++waveform) {
            for (const double highest : {0.0, 22050.0, HUGE_VAL}) {
                const TonaroToneShape shape{.startHz = hz,
                                            .endHz = 8000,
                                            .sweeps = true,
                                            .isLogarithmic = true,
                                            .waveform = waveform,
                                            .highestHz = highest};
                for (const CGPoint point : shape.wave({{0, 0}, {600, 40}})) {
                    ASSERT_TRUE(point.y >= -0.001 && point.y <= 40.001) << point.y;
                }
            }
        }
    }
}

TEST_F(ToneViewTest, FollowsTheUnit)
{
    EXPECT_GT(picture().startPoint().y, picture().endPoint().y + 20) << "the end is higher";
    editor->show(kParamStartFrequency, 20000); // the editor's own event reaches it alone
    EXPECT_EQ(picture().shape().startHz, 440);
    automate(kParamStartFrequency, 20000);
    EXPECT_EQ(picture().shape().startHz, 20000);
    changeRate(96000);
    EXPECT_EQ(picture().shape().highestHz, 48000);
}

TEST_F(ToneViewTest, ADragOfAnEndPointIsOneGesture)
{
    const NSPoint end = picture().endPoint();
    mouse(NSLeftMouseDown, {end.x + 3, end.y - 2});
    EXPECT_EQ(unit.takeLog(), "begin(3)");
    mouse(NSLeftMouseDragged, {end.x + 3, end.y - 2});
    EXPECT_EQ(unit.takeLog(), "") << "where it was pressed it stays";
    mouse(NSLeftMouseDragged, {end.x, end.y + 18});
    EXPECT_EQ(unit.takeLog().substr(0, 6), "set(3,");
    EXPECT_EQ(unit.values[kParamEndFrequency], std::round(unit.values[kParamEndFrequency])) << "whole hertz";
    EXPECT_NEAR(picture().endPoint().y, end.y + 20, 0.1);
    mouse(NSLeftMouseDragged, {end.x, 1000});
    EXPECT_EQ(unit.takeLog(), "set(3,0.01)");
    mouse(NSLeftMouseUp, {end.x, 1000});
    EXPECT_EQ(unit.takeLog(), "end(3)");
    scene.run();
    EXPECT_EQ(editor->text("mEndFrequencyText"), "0.01") << "the editor hears of it";
}

TEST_F(ToneViewTest, EscapePutsBackWhatADragChanged)
{
    const NSPoint start = picture().startPoint();
    mouse(NSLeftMouseDown, start);
    mouse(NSLeftMouseDragged, {start.x, start.y - 10});
    unit.takeLog();
    escape();
    EXPECT_EQ(unit.takeLog(), "set(1,440) end(1)");
    mouse(NSLeftMouseDragged, {start.x, start.y - 20});
    mouse(NSLeftMouseUp, {start.x, start.y - 20});
    EXPECT_EQ(unit.takeLog(), "");

    editor->pressStart();
    editor->mouse(NSLeftMouseDragged, editor->start(), MelFromHz(5000));
    unit.takeLog();
    escape();
    EXPECT_EQ(unit.takeLog(), "set(1,440) end(1)") << "as a slider does";
}

TEST_F(ToneViewTest, OnlyWhatCountsCanBeDragged)
{
    unit.values[kParamUseEnd] = 0;
    editor->view->setAU(&unit);
    scene.run();
    unit.takeLog();
    mouse(NSLeftMouseDown, picture().endPoint());
    mouse(NSLeftMouseUp, picture().endPoint());
    mouse(NSLeftMouseDown, {200, 5});
    mouse(NSLeftMouseUp, {200, 60});
    EXPECT_EQ(unit.takeLog(), "");
    EXPECT_EQ(picture().cursorAtPoint(picture().endPoint()), NSCursorShape::arrow);
    EXPECT_EQ(picture().cursorAtPoint(picture().startPoint()), NSCursorShape::hand);
}

TEST_F(ToneViewTest, APressThatCommitsAnEditMayCloseTheEditor)
{
    editor->outlet<NSTextField>("mGainText").selectText(nullptr);
    editor->key(u'7');
    unit.whenSet = [this] { editor->end(); };
    mouse(NSLeftMouseDown, picture().startPoint());
    EXPECT_EQ(unit.takeLog(), "begin(5) set(5,7) end(5)") << "no drag begins";
}

TEST_F(ToneViewTest, ASetThatClosesTheEditorDuringADragIsSafe)
{
    const NSPoint start = picture().startPoint();
    mouse(NSLeftMouseDown, start);
    unit.whenSet = [this] { editor->end(); };
    unit.takeLog();
    mouse(NSLeftMouseDragged, {start.x, start.y - 10});
    EXPECT_TRUE(unit.takeLog().ends_with("end(1)"));
}

} // namespace
