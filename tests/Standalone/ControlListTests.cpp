#include "Standalone/ControlList.h"

#include "SessionRig.h"
#include "Standalone/Demo.h"

#include <nlohmann/json.hpp>

namespace {

using Json = nlohmann::json;
using testing::ElementsAre;

Options optionsWith(std::vector<std::pair<std::string, std::string>> settings)
{
    Options options;
    options.settings = std::move(settings);
    return options;
}

/// The list of an editor that has come to rest.
struct ListedEditor {
    explicit ListedEditor(const Options& options) : session(options), window(session.openEditor(1))
    {
        window->orderFront();
        SessionScene::run();
        list = Json::parse(controlList(*session.editor(0)));
    }
    const Json& operator[](const char* outlet) const
    {
        for (const Json& control : list)
            if (control.at("outlet") == outlet) return control;
        throw std::runtime_error(std::string("no control ") + outlet);
    }

    SessionScene scene;
    Session session;
    NSWindow* window;
    Json list;
};

TEST(ControlList, StandsInTabOrderWhereAPersonSeesTheControls)
{
    const ListedEditor editor(optionsWith({{"use-end", "1"}}));
    const std::vector<NSView*> views = editor.window->keyViews();
    const auto isOfEditor = [&](const NSView* view) { return view->isDescendantOf(editor.session.editor(0)); };
    ASSERT_EQ(editor.list.size(), static_cast<std::size_t>(std::count_if(views.begin(), views.end(), isOfEditor)));
    for (const Json& control : editor.list) {
        editor.window->selectNextKeyView();
        const auto* focused = asKind<NSView>(editor.window->firstResponder());
        while (focused && !focused->isKindOfClass<NSControl>()) focused = focused->superview();
        ASSERT_TRUE(focused);
        const NSRect frame = focused->convertRectToWindow(focused->bounds());
        EXPECT_THAT(control.at("frame").get<std::vector<double>>(),
                    ElementsAre(frame.origin.x, frame.origin.y, frame.size.width, frame.size.height));
        EXPECT_EQ(control.at("class"), focused->classTable().name);
    }
}

TEST(ControlList, TellsWhatTheControlsShow)
{
    const ListedEditor editor(
        optionsWith({{"waveform", "2"}, {"use-end", "0"}, {"start-frequency", "1000.5"}, {"gain", "-inf"}}));
    const Json& waveform = editor["mWaveformPopup"];
    EXPECT_EQ(waveform.at("value"), 2);
    EXPECT_EQ(waveform.at("text"), "Square");
    EXPECT_EQ(waveform.at("action"), "waveformChanged:");
    EXPECT_THAT(waveform.at("items").get<std::vector<std::string>>(),
                ElementsAre("Sine", "Triangle", "Square", "Sawtooth"));
    EXPECT_EQ(editor["mStartFrequencyText"].at("value"), 1000.5);
    EXPECT_EQ(editor["mStartFrequencyText"].at("text"), "1000.5");
    EXPECT_FALSE(editor["mStartFrequencyText"].contains("items"));
    EXPECT_EQ(editor["mGainSlider"].at("value"), -120);
    EXPECT_EQ(editor["mGainText"].at("value"), nullptr) << "JSON has no infinity";
    EXPECT_EQ(editor["mGainText"].at("text"), "-Inf");
    EXPECT_EQ(editor["mUseEndCheckbox"].at("text"), "Sweep to an end frequency");
    EXPECT_EQ(editor["mLengthText"].at("value"), 110250);
    EXPECT_EQ(editor["mLengthText"].at("text"), "00:00:02.500");
    EXPECT_EQ(editor["mLengthStepper"].at("value"), 2.5);
    EXPECT_EQ(editor[""].at("text"), "Time (hh:mm:ss.ms)") << "the format, which the editor itself knows nothing of";
    EXPECT_EQ(editor.list.back().at("action"), "onHelp:");
    for (const char* outlet : {"mEndFrequencySlider", "mEndFrequencyText", "mLogSweepCheckbox"})
        EXPECT_EQ(editor[outlet].at("enabled"), false) << outlet;
    EXPECT_EQ(editor["mGainSlider"].at("enabled"), true);
}

TEST(Screenshot, NamesTheFileThatCantBeWritten)
{
    const SessionScene scene;
    Options options;
    for (const char* file : {"/nonexistent/editor.png", "/tmp"}) {
        options.file = file;
        try {
            takeScreenshot(options);
            ADD_FAILURE() << "wrote " << file;
        } catch (const InputError& error) {
            EXPECT_EQ(error.message, std::string(file) + ": the picture can't be written");
        }
    }
}

TEST(Screenshot, IsAsLargeAsTheWindowAtItsScale)
{
    const SessionScene scene;
    Options options;
    options.file = testing::TempDir() + "tonaro-screenshot.png";
    options.scale = 1.5;
    takeScreenshot(options);
    const auto picture = CGImageCreateWithPNGFile(options.file);
    std::remove(options.file.c_str());
    ASSERT_TRUE(picture);
    Session session({});
    const NSSize editor = session.openEditor(1)->contentSize();
    EXPECT_EQ(CGImageGetWidth(picture), 1.5 * editor.width);
    EXPECT_EQ(CGImageGetHeight(picture), 1.5 * editor.height) << "with the strip above it";
}

} // namespace
