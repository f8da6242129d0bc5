// The plug-in in hosts that people use: jalv with two toolkits, on a JACK server without a sound device.

#include "LV2/EditorLayout.h"
#include "LV2/JackProbe.h"
#include "Support/TemporaryFolder.h"
#include "ui/Xvfb.h"

#include <gmock/gmock.h>

#include <cmath>
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

class Jalv : public testing::TestWithParam<const char*> {
protected:
    void SetUp() override
    {
#ifdef __SANITIZE_ADDRESS__
        GTEST_SKIP() << "a program without the sanitizer can't load an object with it";
#endif
        if (!IsInstalled(GetParam()) || !IsInstalled("jackd")) GTEST_SKIP() << GetParam() << " is not installed";
        folder.write("presets/test.lv2/manifest.ttl", kPreset);
        settings = {server.setting(),
                    "LC_ALL=C.UTF-8",
                    "JACK_NO_AUDIO_RESERVATION=1",
                    "JACK_DEFAULT_SERVER=" + jackName,
                    "HOME=" + folder.path(),
                    "XDG_RUNTIME_DIR=" + folder.path(),
                    "LV2_PATH=" + std::filesystem::path(TONARO_LV2_BUNDLE).parent_path().string() + ":" +
                        folder / "presets" + ":/usr/lib/lv2"};
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
    const double dragged = hzOfPart(0.6);
    EXPECT_TRUE(person.waitUntil([&] { return std::abs(probe->hertz() - dragged) < 0.1 * dragged; }))
        << probe->hertz() << " Hz where about " << dragged << " was set";

    const CGPoint menuBar = {70, 12};
    person.click(menuBar);
    ASSERT_TRUE(person.waitUntil([&] { return !person.menus().empty(); })) << "no menu of presets";
    person.key(kUp); // to the last item
    person.key(kReturn);
    EXPECT_TRUE(person.waitUntil([&] { return std::abs(probe->hertz() - 9000.0) < 1.0; })) << probe->hertz() << " Hz";
    const double preset = partOfHz(9000.0);
    EXPECT_TRUE(person.waitUntil([&] { return std::abs(knobAt("mStartFrequencySlider") - preset) < 0.05; }))
        << knobAt("mStartFrequencySlider");
}

INSTANTIATE_TEST_SUITE_P(Hosts, Jalv, testing::Values("jalv.gtk3", "jalv.qt5"), [](const auto& row) {
    return std::string(row.param).substr(5); // "gtk3"
});

} // namespace
