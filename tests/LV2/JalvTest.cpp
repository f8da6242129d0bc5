// The plug-in in hosts that people use: jalv with two toolkits, on a JACK server without a sound device.

#include "LV2/EditorLayout.h"
#include "LV2/JackProbe.h"
#include "ui/Xvfb.h"

#include <gmock/gmock.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>

#include <unistd.h>

namespace {

constexpr XClient::KeySymbol kUp = 0xFF52, kReturn = 0xFF0D;

constexpr const char* kPreset = R"(@prefix lv2: <http://lv2plug.in/ns/lv2core#> .
@prefix pset: <http://lv2plug.in/ns/ext/presets#> .
@prefix rdfs: <http://www.w3.org/2000/01/rdf-schema#> .
<https://tonaro.org/lv2/test#high> a pset:Preset ;
    lv2:appliesTo <https://tonaro.org/lv2/stereo> ;
    rdfs:label "High" ;
    lv2:port [ lv2:symbol "start_frequency" ; pset:value 9000.0 ] .
)";

/// A folder that goes away with this.
struct TemporaryFolder {
    TemporaryFolder()
    {
        std::string name = (std::filesystem::temp_directory_path() / "tonaro-XXXXXX").string();
        path = mkdtemp(name.data());
    }
    ~TemporaryFolder() { std::filesystem::remove_all(path); }
    std::filesystem::path path;
};

/// The first shown window of that name below `window`, wherever it lies.
xcb_window_t FindWindow(XClient& client, xcb_window_t window, const std::string& name)
{
    const auto title = std::unique_ptr<xcb_get_property_reply_t, XFree>(xcb_get_property_reply(
        client.get(), xcb_get_property(client.get(), 0, window, XCB_ATOM_WM_NAME, XCB_GET_PROPERTY_TYPE_ANY, 0, 64),
        nullptr));
    if (title && std::string_view(static_cast<const char*>(xcb_get_property_value(title.get())),
                                  static_cast<std::size_t>(xcb_get_property_value_length(title.get()))) == name)
        return window;
    const auto tree = std::unique_ptr<xcb_query_tree_reply_t, XFree>(
        xcb_query_tree_reply(client.get(), xcb_query_tree(client.get(), window), nullptr));
    for (int i = 0; tree && i < xcb_query_tree_children_length(tree.get()); ++i)
        if (const xcb_window_t found = FindWindow(client, xcb_query_tree_children(tree.get())[i], name)) return found;
    return XCB_NONE;
}

bool IsInstalled(const std::string& program)
{
    Program which({"sh", "-c", "command -v " + program});
    which.allOutput();
    return which.waitForExit(5) == 0;
}

double MelFromHz(double hz) { return 2595.0 * std::log10(1.0 + hz / 700.0); }
double HzFromMel(double mel) { return (std::pow(10.0, mel / 2595.0) - 1.0) * 700.0; }

class Jalv : public testing::TestWithParam<const char*> {
protected:
    void SetUp() override
    {
#ifdef __SANITIZE_ADDRESS__
        GTEST_SKIP() << "a program without the sanitizer can't load an object with it";
#endif
        if (!IsInstalled(GetParam()) || !IsInstalled("jackd")) GTEST_SKIP() << GetParam() << " is not installed";
        const auto preset = folder.path / "presets" / "test.lv2";
        std::filesystem::create_directories(preset);
        std::ofstream(preset / "manifest.ttl") << kPreset;
        settings = {server.setting(),
                    "LC_ALL=C.UTF-8",
                    "JACK_NO_AUDIO_RESERVATION=1",
                    "JACK_DEFAULT_SERVER=" + jackName,
                    "HOME=" + folder.path.string(),
                    "XDG_RUNTIME_DIR=" + folder.path.string(),
                    "LV2_PATH=" + std::filesystem::path(TONARO_LV2_BUNDLE).parent_path().string() + ":" +
                        preset.parent_path().string() + ":/usr/lib/lv2"};
        jack.emplace(shell("exec jackd -n " + jackName + " -r -d dummy -r 48000 -p 512"), settings);
        probe.emplace(jackName);
        host.emplace(shell(std::string("exec ") + GetParam() + " https://tonaro.org/lv2/stereo"), settings);
        ASSERT_TRUE(person.waitUntil([&] {
            editor = FindWindow(person, person.screen().root, "Tonaro");
            return editor != XCB_NONE && person.frame(editor).size.width > 600;
        })) << "no editor";
        ASSERT_TRUE(person.waitUntil([&] { return probe->connectTo("Tonaro.*:out_left"); }));
    }
    void TearDown() override
    {
        host.reset();
        probe.reset();
        if (jack) jack->terminate(); // so that it takes its shared memory along
    }
    static std::vector<std::string> shell(const std::string& command)
    {
        return {"sh", "-c", command + " >/dev/null 2>&1"};
    }

    CGPoint origin() { return person.frame(editor).origin; }
    CGPoint at(const std::string& outlet, double part)
    {
        const CGPoint point = placeInEditor(outlet, part), corner = origin();
        return {point.x + corner.x, point.y + corner.y};
    }
    double knobAt(const std::string& outlet) { return knobOnScreen(person, origin(), outlet); }

    TemporaryFolder folder;
    const std::string jackName = "tonaro-" + std::to_string(getpid());
    std::vector<std::string> settings;
    Xvfb server;
    XClient person{server.display()};
    std::optional<Program> jack, host;
    std::optional<JackProbe> probe;
    xcb_window_t editor = XCB_NONE;
};

TEST_P(Jalv, ADragIsHeardAndThePresetIsSeen)
{
    // a busy machine loses a period of samples at times, so each is listened for again
    EXPECT_TRUE(person.waitUntil([&] { return std::abs(probe->hertz() - 440.0) < 0.5; })) << probe->hertz() << " Hz";

    person.moveTo(at("mStartFrequencySlider", 0.3));
    person.press();
    person.glideTo(at("mStartFrequencySlider", 0.6));
    person.release();
    EXPECT_TRUE(person.waitUntil([&] { return std::abs(knobAt("mStartFrequencySlider") - 0.6) < 0.05; }));
    const double dragged = HzFromMel(0.6 * MelFromHz(24000.0));
    EXPECT_TRUE(person.waitUntil([&] { return std::abs(probe->hertz() - dragged) < 0.1 * dragged; }))
        << probe->hertz() << " Hz where about " << dragged << " was set";

    const CGPoint menuBar = {70, 12};
    person.click(menuBar);
    ASSERT_TRUE(person.waitUntil([&] { return !person.menus().empty(); })) << "no menu of presets";
    person.key(kUp); // to the last item
    person.key(kReturn);
    EXPECT_TRUE(person.waitUntil([&] { return std::abs(probe->hertz() - 9000.0) < 1.0; })) << probe->hertz() << " Hz";
    const double preset = MelFromHz(9000.0) / MelFromHz(24000.0);
    EXPECT_TRUE(person.waitUntil([&] { return std::abs(knobAt("mStartFrequencySlider") - preset) < 0.05; }))
        << knobAt("mStartFrequencySlider");
}

INSTANTIATE_TEST_SUITE_P(Hosts, Jalv, testing::Values("jalv.gtk3", "jalv.qt5"), [](const auto& row) {
    return std::string(row.param).substr(5); // "gtk3"
});

} // namespace
