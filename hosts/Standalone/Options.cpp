#include "Standalone/Options.h"

#include "Standalone/SoundFile.h"

#include <charconv>
#include <getopt.h>

namespace {

constexpr double kLargestScale = 4;
constexpr int kMostEditors = 16;

enum Key : int {
    kSet = 256,
    kScreenshot,
    kScale,
    kAppearance,
    kTrace,
    kControls,
    kEditors,
    kDemo,
    kRender,
    kDevice,
    kListDevices,
    kMute,
    kHelp,
    kVersion
};

// clang-format off
constexpr option kOptions[] = {
    {"set",          required_argument, nullptr, kSet},
    {"screenshot",   required_argument, nullptr, kScreenshot},
    {"scale",        required_argument, nullptr, kScale},
    {"appearance",   required_argument, nullptr, kAppearance},
    {"trace",        no_argument,       nullptr, kTrace},
    {"controls",     no_argument,       nullptr, kControls},
    {"editors",      required_argument, nullptr, kEditors},
    {"demo",         required_argument, nullptr, kDemo},
    {"render",       required_argument, nullptr, kRender},
    {"device",       required_argument, nullptr, kDevice},
    {"list-devices", no_argument,       nullptr, kListDevices},
    {"mute",         no_argument,       nullptr, kMute},
    {"help",         no_argument,       nullptr, kHelp},
    {"version",      no_argument,       nullptr, kVersion},
    {nullptr,        0,                 nullptr, 0},
};
// clang-format on

template <typename Number>
Number parseNumber(std::string_view option, std::string_view text, Number lowest, Number highest)
{
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size() || !(value >= lowest && value <= highest))
        throw UsageError{std::string(option) + ": “" + std::string(text) + "” is not a number from " +
                         std::to_string(static_cast<int>(lowest)) + " to " + std::to_string(static_cast<int>(highest))};
    return value;
}

std::pair<std::string, std::string> parseSetting(std::string_view text)
{
    const std::size_t equals = text.find('=');
    if (equals == std::string_view::npos || equals == 0)
        throw UsageError{"--set: “" + std::string(text) + "” is not of the form NAME=VALUE"};
    return {std::string(text.substr(0, equals)), std::string(text.substr(equals + 1))};
}

std::optional<NSAppearanceName> parseAppearance(std::string_view text)
{
    if (text == "auto") return std::nullopt;
    if (text == "light") return NSAppearanceName::light;
    if (text == "dark") return NSAppearanceName::dark;
    throw UsageError{"--appearance: “" + std::string(text) + "” is none of light, dark and auto"};
}

void chooseMode(Options& options, Options::Mode mode)
{
    if (options.mode != Options::Mode::window && options.mode != mode)
        throw UsageError{
            "only one of --render, --screenshot, --controls, --list-devices and --demo can be done at a time"};
    options.mode = mode;
}

void chooseFile(Options& options, Options::Mode mode, const char* option)
{
    chooseMode(options, mode);
    options.file = optarg;
    if (options.file.empty()) throw UsageError{std::string(option) + ": the name of a file is missing"};
}

void take(Options& options, int key)
{
    switch (key) {
    case kSet:
        options.settings.push_back(parseSetting(optarg));
        break;
    case kScreenshot:
        chooseFile(options, Options::Mode::screenshot, "--screenshot");
        break;
    case kDemo:
        chooseFile(options, Options::Mode::demo, "--demo");
        break;
    case kRender:
        chooseFile(options, Options::Mode::render, "--render");
        if (!soundFileKind(options.file))
            throw UsageError{"--render: “" + options.file + "” ends neither in .wav nor in .flac"};
        break;
    case kDevice:
        options.device = optarg;
        if (options.device.empty()) throw UsageError{"--device: the name of a device is missing"};
        break;
    case kListDevices:
        chooseMode(options, Options::Mode::listDevices);
        break;
    case kMute:
        options.mute = true;
        break;
    case kScale:
        options.scale = parseNumber<double>("--scale", optarg, 1, kLargestScale);
        break;
    case kAppearance:
        options.appearance = parseAppearance(optarg);
        break;
    case kTrace:
        options.trace = true;
        break;
    case kControls:
        chooseMode(options, Options::Mode::controls);
        break;
    case kEditors:
        options.editors = parseNumber<int>("--editors", optarg, 1, kMostEditors);
        break;
    case 'h':
    case kHelp:
        options.mode = Options::Mode::help;
        break;
    case kVersion:
        options.mode = Options::Mode::version;
        break;
    default:
        throw UsageError{""}; // getopt has said what is wrong
    }
}

} // namespace

Options parseOptions(int argc, char** argv)
{
    Options options;
    optind = 1;
    for (int key; (key = getopt_long(argc, argv, "h", kOptions, nullptr)) != -1;) {
        take(options, key);
        if (options.mode == Options::Mode::help || options.mode == Options::Mode::version) return options;
    }
    if (optind < argc) throw UsageError{"“" + std::string(argv[optind]) + "” is not an option"};
    return options;
}

std::string helpText()
{
    return R"(Usage: tonaro [OPTION]...
Opens the editor of a test-tone generator.

  --set NAME=VALUE       start with that value; may be given several times:
                           waveform         0 to 3, or sine, triangle, square, sawtooth
                           start-frequency  Hz
                           use-end          0 or 1: sweep to the end frequency
                           end-frequency    Hz
                           log-sweep        0 or 1: sweep evenly in pitch
                           gain             dB from -120 to 0; -inf is -120
                           length           seconds
                           sample-rate      Hz
                           time-format      0 to 20: in which format the length is shown
  --device NAME          play on that sound device; without it, on the first there is
  --list-devices         print the names of the sound devices, and end
  --mute                 play without sound
  --render FILE          write the tone into a .wav or .flac file, and end
  --editors N            open N windows on the same generator
  --scale S              S pixels per point; without it, the desktop's
  --appearance A         light, dark, or auto: as the desktop (light in a picture)
  --trace                print each begin, set and end that reaches the generator
  --screenshot FILE.png  draw the editor without a display, and end
  --controls             print the editor's controls as JSON, and end
  --demo FILE.png        without a display: drag the start frequency, print what
                         reached the generator, draw the editor, and end
  --help                 show this text, and end
  --version              show the version, and end

Examples:
  tonaro --set start-frequency=1000 --set gain=-20
  tonaro --set use-end=1 --set length=10 --render sweep.wav
  tonaro --screenshot editor.png --scale 2
  tonaro --trace | grep '^set 5'

Exit status: 0, 1 for an error in the input, 2 for wrong usage.
)";
}
