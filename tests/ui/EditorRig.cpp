#include "ui/EditorRig.h"

#include <charconv>
#include <limits>

namespace {

constexpr double kSilence = 0.2; // seconds: within two intervals of the unit's events, and some drawing

double NumberAtEnd(const std::string& line)
{
    double value = std::numeric_limits<double>::quiet_NaN();
    const std::size_t start = line.rfind(' ') + 1;
    std::from_chars(line.data() + start, line.data() + line.size(), value);
    return value;
}

} // namespace

std::string Trace::shape() const
{
    std::string shape, before;
    for (const auto& line : mLines) {
        const std::string what = line.text.substr(0, line.text.find(' ', line.text.find(' ') + 1));
        if (what == before && what.starts_with("set")) continue;
        shape += (shape.empty() ? "" : ", ") + what;
        before = what;
    }
    return shape;
}

std::size_t Trace::count(const std::string& start) const
{
    return static_cast<std::size_t>(
        std::count_if(mLines.begin(), mLines.end(), [&](const auto& line) { return line.text.starts_with(start); }));
}

std::vector<double> Trace::values(int parameter) const
{
    std::vector<double> values;
    for (const auto& line : mLines)
        if (line.text.starts_with("set " + std::to_string(parameter) + " ")) values.push_back(NumberAtEnd(line.text));
    return values;
}

double Trace::last(int parameter) const
{
    const auto all = values(parameter);
    return all.empty() ? std::numeric_limits<double>::quiet_NaN() : all.back();
}

double Trace::secondsUntilSilence() const
{
    if (isEmpty()) return 0;
    double edited = mLines.front().seconds;
    for (const auto& line : mLines)
        if (line.text.starts_with("end")) edited = line.seconds;
    return mLines.back().seconds - edited;
}

EditorTest::EditorTest() : person(server.display()) {}

void EditorTest::start(const std::vector<std::string>& options)
{
    std::vector<std::string> words = {TONARO_PROGRAM, "--trace", "--scale=1", "--mute"};
    words.insert(words.end(), options.begin(), options.end());
    editor.emplace(words, std::vector<std::string>{server.setting(), "LC_ALL=C.UTF-8", "GTK_THEME="});
    const std::size_t count = std::find(options.begin(), options.end(), "--editors=2") != options.end() ? 2 : 1;
    ASSERT_TRUE(person.waitUntil([&] { return (windows = person.windowsNamed("Tonaro")).size() == count; }));
    const int heightOfEach = static_cast<int>(person.frame(windows.front()).size.height) + 10;
    for (std::size_t i = 0; i < count; ++i) person.moveWindow(windows[i], 10, 10 + static_cast<int>(i) * heightOfEach);
    person.focus(windows.front());
    editor->linesUntilQuiet();
}

Trace EditorTest::silentTrace()
{
    Trace trace = traceUntilQuiet();
    EXPECT_FALSE(trace.isEmpty()) << "nothing reached the generator";
    EXPECT_LE(trace.secondsUntilSilence(), kSilence) << trace.shape();
    return trace;
}

Trace EditorTest::traceUntil(const std::string& start)
{
    Trace trace(editor->linesUntil([&](const std::string& line) { return line.starts_with(start); }));
    EXPECT_EQ(trace.count(start), 1U) << "no \"" << start << "\" in: " << trace.shape();
    return trace;
}

CGPoint EditorTest::at(const std::string& outlet, double part) const
{
    const CGRect frame = controls[outlet].frame;
    return {10 + frame.origin.x + part * frame.size.width, 10 + CGRectGetMidY(frame)};
}

void EditorTest::drag(const std::string& outlet, double from, double to)
{
    person.moveTo(at(outlet, from));
    person.press();
    person.glideTo(at(outlet, to));
    person.release();
}

void EditorTest::typeInto(const std::string& outlet, const std::string& text)
{
    static constexpr XClient::KeySymbol kControlOnly[] = {kControl};
    person.click(at(outlet));
    person.key('a', kControlOnly);
    person.type(text);
}

void EditorTest::tabTo(const std::string& outlet)
{
    for (const Control& control : controls.all()) {
        if (!control.enabled) continue;
        person.key(kTab);
        if (control.outlet == outlet) return;
    }
    ADD_FAILURE() << outlet << " is not reached";
}

void EditorTest::glideToItem(xcb_window_t menu, std::size_t index, std::size_t count)
{
    ASSERT_NE(menu, xcb_window_t{XCB_NONE}) << "no menu opened";
    const CGRect frame = person.frame(menu);
    const double part = (static_cast<double>(index) + 0.5) / static_cast<double>(count);
    person.glideTo({CGRectGetMidX(frame), frame.origin.y + part * frame.size.height});
}
