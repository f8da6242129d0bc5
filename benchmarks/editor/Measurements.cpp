#include "Measurements.h"

#include "BareHost.h"
#include "Figures.h"
#include "Process.h"
#include "Traffic.h"

#include <algorithm>
#include <stdexcept>

namespace {

constexpr int kWidth = 1200, kHeight = 1000; // of the host's window
constexpr double kPatience = 10;             // seconds until an editor counts as dead

/// Processor time of all threads but those of the host.
double editorSeconds(const Screen& screen) { return ProcessSeconds() - screen.watchingSeconds(); }

/// Calls the editor 30 times a second for so long.
void runFor(OpenEditor& editor, double seconds)
{
    const double start = Now();
    for (double tick = start; tick < start + seconds; tick += kTick) {
        editor.idle();
        SleepUntil(tick + kTick);
    }
}

/// Calls the editor until nothing was drawn for a few calls in a row.
void settle(OpenEditor& editor, Screen& screen)
{
    const double start = Now();
    for (int quiet = 0; quiet < 6 && Now() < start + kPatience;) {
        runFor(editor, kTick);
        quiet = screen.takeDrawn().empty() ? quiet + 1 : 0;
    }
}

/// @return when its first pixels were drawn, as in `Now`
double awaitPixels(OpenEditor& editor, Screen& screen, xcb_window_t window)
{
    const double start = Now();
    double lastDrawn = 0;
    for (double tick = start; tick < start + kPatience;) {
        editor.idle();
        tick += kTick;
        while (Now() < tick) {
            const auto drawn = screen.takeDrawn();
            if (!drawn.empty()) lastDrawn = drawn.back().time;
            if (lastDrawn > 0 && screen.hasPixels(window)) return lastDrawn;
            SleepUntil(std::min(tick, Now() + 0.001));
        }
    }
    throw std::runtime_error("the editor shows nothing");
}

struct Opened {
    xcb_window_t window;
    std::unique_ptr<OpenEditor> editor;
};

Opened open(const EditorLibrary& library, const EditorFacts& facts, Screen& screen)
{
    Opened opened{screen.makeWindow(kWidth, kHeight), nullptr};
    screen.takeDrawn();
    opened.editor = std::make_unique<OpenEditor>(library, facts, opened.window);
    opened.editor->tellAllPorts();
    return opened;
}

Opened openAndSettle(const EditorLibrary& library, const EditorFacts& facts, Screen& screen)
{
    Opened opened = open(library, facts, screen);
    awaitPixels(*opened.editor, screen, opened.window);
    settle(*opened.editor, screen);
    return opened;
}

/// Pixels that these rectangles cover together, as part of the editor.
double partOf(const std::vector<DrawnRect>& drawn, const DrawnRect& editor)
{
    std::vector<bool> covered(std::size_t{kWidth} * kHeight);
    for (const DrawnRect& rect : drawn)
        for (int y = std::max(rect.y, 0); y < std::min(rect.y + rect.height, kHeight); ++y)
            for (int x = std::max(rect.x, 0); x < std::min(rect.x + rect.width, kWidth); ++x)
                covered[static_cast<std::size_t>(y) * kWidth + static_cast<std::size_t>(x)] = true;
    const auto count = std::count(covered.begin(), covered.end(), true);
    return static_cast<double>(count) / (static_cast<double>(editor.width) * editor.height);
}

/// A place where the wheel sets a port: points of a grid are tried until the editor writes one.
Point placeForWheel(OpenEditor& editor, Screen& screen, const DrawnRect& place)
{
    constexpr int kStep = 24, kCalls = 4;
    for (int y = place.y + kStep / 2; y < place.y + place.height; y += kStep)
        for (int x = place.x + kStep / 2; x < place.x + place.width; x += kStep) {
            screen.movePointer({x, y});
            for (int i = 0; i < 2; ++i) editor.idle();
            for (const bool up : {true, false}) {
                const unsigned before = editor.written();
                screen.turnWheel(up);
                screen.sync();
                for (int i = 0; i < kCalls; ++i) {
                    editor.idle();
                    SleepUntil(Now() + 0.002);
                }
                if (editor.written() != before) return {x, y};
            }
        }
    throw std::runtime_error("the wheel sets nothing");
}

} // namespace

void measureOpening(const EditorFacts& facts)
{
    Screen screen;
    screen.resourcesOfOthers();
    const xcb_window_t window = screen.makeWindow(kWidth, kHeight);
    SleepUntil(Now() + 0.1);
    screen.takeDrawn();
    const Memory before = MemoryNow();
    const std::size_t threads = ThreadsNow();

    const double startOfAll = Now(), usedBefore = editorSeconds(screen);
    const EditorLibrary library(facts);
    const double start = Now(), usedByLoading = editorSeconds(screen);
    OpenEditor editor(library, facts, window);
    const double returned = Now();
    editor.tellAllPorts();
    const double shown = awaitPixels(editor, screen, window);
    print("load-ms", (start - startOfAll) * 1e3);
    print("instantiate-ms", (returned - start) * 1e3);
    print("pixels-ms", (shown - start) * 1e3);
    print("load-cpu-ms", (usedByLoading - usedBefore) * 1e3);
    print("pixels-cpu-ms", (editorSeconds(screen) - usedByLoading) * 1e3);

    settle(editor, screen);
    runFor(editor, 2);
    const Memory opened = MemoryNow();
    print("memory-mib", opened.own - before.own);
    print("memory-shared-mib", opened.shared - before.shared);
    print("threads", static_cast<double>(ThreadsNow() - threads));

    const Opened second = openAndSettle(library, facts, screen);
    runFor(editor, 0.5);
    print("second-mib", MemoryNow().own - opened.own);
    print("second-shared-mib", MemoryNow().shared - opened.shared);
    const DrawnRect place = screen.editorIn(window);
    print("width", place.width);
    print("height", place.height);
}

void measureClosing(const EditorFacts& facts)
{
    constexpr unsigned kWarmUp = 50; // caches fill
    Screen screen;
    const EditorLibrary library(facts);
    struct Held {
        Memory memory = MemoryNow();
        double bytes = BytesInUse();
        std::size_t descriptors = DescriptorsNow();
        std::uint64_t resources;
        explicit Held(Screen& on) : resources(on.resourcesOfOthers()) {}
    };
    const auto openAndClose = [&] {
        Opened opened = open(library, facts, screen);
        awaitPixels(*opened.editor, screen, opened.window);
        opened.editor.reset();
        screen.destroyWindow(opened.window);
    };
    for (unsigned i = 0; i < kWarmUp; ++i) openAndClose();
    screen.sync();
    screen.takeDrawn();
    const Held before(screen);
    const unsigned count = facts.count ? facts.count : 1000;
    for (unsigned i = 0; i < count; ++i) openAndClose();
    SleepUntil(Now() + 0.5); // the display server lets go of what a closed connection held
    screen.takeDrawn();
    const Held after(screen);
    print("openings", count);
    print("left-kib-each", (after.memory.own - before.memory.own) * 1024 / count);
    print("left-heap-bytes-each", (after.bytes - before.bytes) / count);
    print("left-descriptors", static_cast<double>(after.descriptors) - static_cast<double>(before.descriptors));
    print("left-resources", static_cast<double>(after.resources) - static_cast<double>(before.resources));
}

void measureIdling(const EditorFacts& facts)
{
    const double seconds = facts.count ? facts.count : 10;
    Screen screen;
    const EditorLibrary library(facts);
    double used = ProcessSeconds();
    const double start = Now();
    for (double tick = start; tick < start + seconds; tick += kTick) SleepUntil(tick + kTick);
    const double bare = ProcessSeconds() - used;

    const Opened opened = openAndSettle(library, facts, screen);
    runFor(*opened.editor, 2);
    screen.takeDrawn();
    const Traffic traffic = TrafficUntilNow();
    used = ProcessSeconds();
    runFor(*opened.editor, seconds);
    const double idle = ProcessSeconds() - used;
    print("idle-percent", (idle - bare) / seconds * 100);
    print("bare-percent", bare / seconds * 100);
    print("idle-sent-bytes", static_cast<double>(TrafficUntilNow().sent - traffic.sent));
    print("idle-received-bytes", static_cast<double>(TrafficUntilNow().received - traffic.received));
    print("idle-drawn", static_cast<double>(screen.takeDrawn().size()));
}

void measureChanging(const EditorFacts& facts)
{
    const unsigned count = facts.count ? facts.count : 100;
    Screen screen;
    const EditorLibrary library(facts);
    const Opened opened = openAndSettle(library, facts, screen);
    OpenEditor& editor = *opened.editor;
    const DrawnRect place = screen.editorIn(opened.window);

    std::vector<double> used;
    std::vector<std::vector<DrawnRect>> drawnByChange; // looked at later: that would empty the processor's caches
    for (unsigned i = 0; i < count; ++i) {
        double own = ThreadSeconds(), others = editorSeconds(screen) - own, called = 0;
        const auto call = [&](auto&& what) {
            const double before = ThreadSeconds();
            what();
            called += ThreadSeconds() - before;
        };
        call([&] { editor.tell(facts.changedPort, facts.values[i % 2]); });
        const double start = Now();
        while (!screen.wasDrawn() && Now() < start + 1) {
            call([&] { editor.idle(); });
            for (double end = Now() + kTick; !screen.wasDrawn() && Now() < end;) SleepUntil(Now() + 0.001);
        }
        used.push_back(called + (editorSeconds(screen) - ThreadSeconds() - others));
        std::vector<DrawnRect> drawn;
        for (int quiet = 0; quiet < 3;) { // the rest of what the change draws
            const auto more = screen.takeDrawn();
            drawn.insert(drawn.end(), more.begin(), more.end());
            quiet = more.empty() ? quiet + 1 : 0;
            runFor(editor, kTick);
        }
        drawnByChange.push_back(std::move(drawn));
    }
    std::vector<double> parts, rects;
    for (const auto& drawn : drawnByChange) {
        parts.push_back(partOf(drawn, place));
        rects.push_back(static_cast<double>(drawn.size()));
    }
    print("change-us", medianOf(used) * 1e6);
    print("change-drawn-percent", medianOf(parts) * 100);
    print("change-rects", medianOf(rects));
}

void measureWheel(const EditorFacts& facts)
{
    const unsigned count = facts.count ? facts.count : 48;
    constexpr unsigned kPhases = 8;
    Screen screen;
    const EditorLibrary library(facts);
    const Opened opened = openAndSettle(library, facts, screen);
    OpenEditor& editor = *opened.editor;
    placeForWheel(editor, screen, screen.editorIn(opened.window));
    settle(editor, screen);

    std::vector<double> latencies;
    double used = 0;
    for (unsigned i = 0; i < count; ++i) {
        // turned at every part of the time between two calls equally often
        double tick = Now();
        editor.idle();
        screen.takeDrawn();
        SleepUntil(tick + kTick * (i / 2 % kPhases + 0.5) / kPhases);
        const double start = Now(), usedBefore = editorSeconds(screen);
        screen.turnWheel(i % 2 == 0);
        while (!screen.wasDrawn() && Now() < start + 1) {
            tick += kTick;
            SleepUntil(tick);
            if (!screen.wasDrawn()) editor.idle();
            SleepUntil(Now() + 0.002);
        }
        used += editorSeconds(screen) - usedBefore;
        const auto drawn = screen.takeDrawn();
        if (!drawn.empty()) latencies.push_back(drawn.front().time - start);
        settle(editor, screen);
    }
    print("wheel-ms", medianOf(latencies) * 1e3);
    print("wheel-cpu-us", used / count * 1e6);
    print("wheel-missed", static_cast<double>(count - latencies.size()));
}
