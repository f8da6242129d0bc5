#include "Standalone/Options.h"

#include "Standalone/Settings.h"

#include <gmock/gmock.h>

namespace {

Options parse(std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), "tonaro");
    std::vector<char*> argv;
    for (std::string& argument : arguments) argv.push_back(argument.data());
    argv.push_back(nullptr);
    return parseOptions(static_cast<int>(arguments.size()), argv.data());
}

TEST(Options, ReadsALine)
{
    const Options none = parse({});
    EXPECT_EQ(none.mode, Options::Mode::window);
    EXPECT_EQ(none.scale, 0);
    EXPECT_EQ(none.editors, 1);
    EXPECT_EQ(none.appearance, std::nullopt);
    EXPECT_FALSE(none.trace);
    EXPECT_FALSE(none.mute);
    EXPECT_EQ(none.device, "");

    const Options all = parse({"--set", "gain=-3", "--set=length=", "--set", "a=b=c", "--screenshot", "x.png",
                               "--screenshot", "y.png", "--scale=1.25", "--trace", "--editors", "16", "--mute",
                               "--device", "jack:system", "--appearance=light", "--appearance", "dark"});
    using Setting = std::pair<std::string, std::string>;
    EXPECT_THAT(all.settings, testing::ElementsAre(Setting("gain", "-3"), Setting("length", ""), Setting("a", "b=c")));
    EXPECT_EQ(all.mode, Options::Mode::screenshot);
    EXPECT_EQ(all.file, "y.png");
    EXPECT_EQ(all.scale, 1.25);
    EXPECT_EQ(all.appearance, NSAppearanceName::dark);
    EXPECT_EQ(all.editors, 16);
    EXPECT_TRUE(all.trace);
    EXPECT_TRUE(all.mute);
    EXPECT_EQ(all.device, "jack:system");
    EXPECT_EQ(parse({"--appearance=dark", "--appearance=auto"}).appearance, std::nullopt);
}

TEST(Options, ChoosesWhatToDo)
{
    const struct {
        std::vector<std::string> line;
        Options::Mode mode;
    } kRows[] = {
        {{"--controls"}, Options::Mode::controls},
        {{"--demo", "x.png"}, Options::Mode::demo},
        {{"--render", "x.wav"}, Options::Mode::render},
        {{"--list-devices"}, Options::Mode::listDevices},
        {{"--version"}, Options::Mode::version},
        {{"-h"}, Options::Mode::help},
        {{"--controls", "--help", "--nonsense"}, Options::Mode::help},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(testing::PrintToString(row.line));
        EXPECT_EQ(parse(row.line).mode, row.mode);
    }
}

TEST(Options, SaysWhatIsWrong)
{
    const struct {
        std::vector<std::string> line;
        const char* message; ///< "" where the C library has said it on standard error
    } kRows[] = {
        {{"--nonsense"}, ""},
        {{"--screenshot"}, ""},
        {{"--trace=yes"}, ""},
        {{"extra"}, "“extra” is not an option"},
        {{"--trace", "--", "extra"}, "“extra” is not an option"},
        {{"--set", "gain"}, "--set: “gain” is not of the form NAME=VALUE"},
        {{"--set", "=3"}, "--set: “=3” is not of the form NAME=VALUE"},
        {{"--screenshot", ""}, "--screenshot: the name of a file is missing"},
        {{"--device="}, "--device: the name of a device is missing"},
        {{"--render", "tone.mp3"}, "--render: “tone.mp3” ends neither in .wav nor in .flac"},
        {{"--render", "wav"}, "--render: “wav” ends neither in .wav nor in .flac"},
        {{"--demo="}, "--demo: the name of a file is missing"},
        {{"--scale", "0.5"}, "--scale: “0.5” is not a number from 1 to 4"},
        {{"--scale", "nan"}, "--scale: “nan” is not a number from 1 to 4"},
        {{"--scale", "2x"}, "--scale: “2x” is not a number from 1 to 4"},
        {{"--scale", ""}, "--scale: “” is not a number from 1 to 4"},
        {{"--appearance", "Dark"}, "--appearance: “Dark” is none of light, dark and auto"},
        {{"--editors", "0"}, "--editors: “0” is not a number from 1 to 16"},
        {{"--editors", "99999999999"}, "--editors: “99999999999” is not a number from 1 to 16"},
        {{"--controls", "--demo", "x.png"},
         "only one of --render, --screenshot, --controls, --list-devices and --demo can be done at a time"},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(testing::PrintToString(row.line));
        testing::internal::CaptureStderr();
        std::string message = "nothing";
        try {
            parse(row.line);
        } catch (const UsageError& error) {
            message = error.message;
        }
        EXPECT_EQ(message, row.message);
        EXPECT_EQ(testing::internal::GetCapturedStderr().empty(), !message.empty());
    }
}

TEST(Options, HelpNamesEverySetting)
{
    for (const ToneParameterFacts& facts : kToneParameters)
        EXPECT_THAT(helpText(), testing::HasSubstr(facts.optionName));
}

} // namespace
