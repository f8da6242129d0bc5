#include "zepos/Options.h"

#include "zepos/FormatNames.h"

#include <charconv>
#include <cmath>
#include <getopt.h>
#include <limits>

namespace {

enum Key : int {
    kOperand = 1, // getopt's own
    kFrom = 256,
    kTo,
    kRate,
    kFrameRate,
    kTempo,
    kTimeSignature,
    kTicks,
    kPercentBase,
    kOffset,
    kLength,
    kLocale,
    kTicksFor,
    kListFormats,
    kHelp,
    kVersion,
};

constexpr option kOptions[] = {
    {"from", required_argument, nullptr, kFrom},
    {"to", required_argument, nullptr, kTo},
    {"rate", required_argument, nullptr, kRate},
    {"frame-rate", required_argument, nullptr, kFrameRate},
    {"tempo", required_argument, nullptr, kTempo},
    {"time-signature", required_argument, nullptr, kTimeSignature},
    {"ticks", required_argument, nullptr, kTicks},
    {"percent-base", required_argument, nullptr, kPercentBase},
    {"offset", required_argument, nullptr, kOffset},
    {"length", no_argument, nullptr, kLength},
    {"locale", required_argument, nullptr, kLocale},
    {"ticks-for", required_argument, nullptr, kTicksFor},
    {"list-formats", no_argument, nullptr, kListFormats},
    {"help", no_argument, nullptr, kHelp},
    {"version", no_argument, nullptr, kVersion},
    {nullptr, 0, nullptr, 0},
};

[[noreturn]] void refuse(std::string_view option, std::string_view text, std::string_view wanted)
{
    throw UsageError{std::string(option) + ": “" + std::string(text) + "” is not " + std::string(wanted)};
}

template <typename Number> bool isNumber(std::string_view text, Number& value)
{
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size();
}

/// A number from `lowest` on, `lowest` itself left out where `above` is set; never infinite.
template <typename Number>
Number parseNumber(std::string_view option, std::string_view text, std::string_view wanted,
                   Number lowest = std::numeric_limits<Number>::lowest(), bool above = false)
{
    Number value{};
    const bool fits = isNumber(text, value) && (above ? value > lowest : value >= lowest) &&
                      value <= std::numeric_limits<Number>::max();
    if (!fits) refuse(option, text, wanted);
    return value;
}

double parseFrameRate(std::string_view text)
{
    constexpr std::string_view kOption = "--frame-rate", kWanted = "a rate above 0, such as 23.976 or 24000/1001";
    const std::size_t slash = text.find('/');
    const double rate = parseNumber(kOption, text.substr(0, slash), kWanted, 0.0, true);
    if (slash == std::string_view::npos) return rate;
    const double quotient = rate / parseNumber(kOption, text.substr(slash + 1), kWanted, 0.0, true);
    if (!(quotient > 0.0 && std::isfinite(quotient))) refuse(kOption, text, kWanted);
    return quotient;
}

void parseTimeSignature(Options& options, std::string_view text)
{
    const std::size_t slash = std::min(text.find('/'), text.size());
    const std::string_view value = text.substr(std::min(slash + 1, text.size()));
    if (!isNumber(text.substr(0, slash), options.beatsPerMeasure) || options.beatsPerMeasure == 0 ||
        !isNumber(value, options.beatValue) || options.beatValue == 0)
        refuse("--time-signature", text, "a time signature, such as 6/8");
}

_qvposfmt_format parseFormat(std::string_view option, std::string_view text)
{
    const auto format = formatNamed(text);
    if (!format) refuse(option, text, "a format; see --list-formats");
    return *format;
}

void take(Options& options, int key)
{
    constexpr std::string_view kPositive = "a whole number from 1 to 4294967295", kWhole = "a whole number";
    switch (key) {
    case kFrom:
        options.from = parseFormat("--from", optarg);
        break;
    case kTo:
        options.to = parseFormat("--to", optarg);
        break;
    case kRate:
        options.sampleRate = parseNumber("--rate", optarg, kPositive, 1u);
        break;
    case kFrameRate:
        options.frameRate = parseFrameRate(optarg);
        break;
    case kTempo:
        options.tempo = parseNumber("--tempo", optarg, "a number above 0", 0.0, true);
        break;
    case kTimeSignature:
        parseTimeSignature(options, optarg);
        break;
    case kTicks:
        options.ticksPerBeat = parseNumber("--ticks", optarg, kPositive, 1u);
        break;
    case kPercentBase:
        options.percentBase = parseNumber("--percent-base", optarg, "a whole number from 1 on", 1LL);
        break;
    case kOffset:
        options.offset = parseNumber<long long>("--offset", optarg, kWhole);
        break;
    case kLength:
        options.isLength = true;
        break;
    case kLocale:
        options.locale = optarg;
        break;
    case kTicksFor:
        options.mode = Options::Mode::ticks;
        options.span = parseNumber("--ticks-for", optarg, "a number of samples above 0", 0.0, true);
        break;
    case kListFormats:
        options.mode = Options::Mode::listFormats;
        break;
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

void checkTogether(const Options& options)
{
    if ((options.from == QVPOSFMT_PERCENT || options.to == QVPOSFMT_PERCENT) && options.percentBase == 0)
        throw UsageError{"percent: of how many samples? Give --percent-base"};
    if (options.mode == Options::Mode::ticks && !options.operands.empty())
        throw UsageError{"--ticks-for takes no positions"};
    if (options.mode == Options::Mode::listFormats && !options.operands.empty())
        throw UsageError{"--list-formats takes no positions"};
}

/// Whether an argument is a negative position, which getopt would take for options.
bool isNegative(std::string_view argument)
{
    return argument.size() > 1 && argument[0] == '-' &&
           (argument[1] == '.' || (argument[1] >= '0' && argument[1] <= '9'));
}

} // namespace

Options parseOptions(int argc, char** argv)
{
    Options options;
    optind = 1;
    while (optind < argc) {
        if (isNegative(argv[optind])) {
            options.operands.emplace_back(argv[optind++]);
            continue;
        }
        const int key = getopt_long(argc, argv, "-", kOptions, nullptr); // '-': operands come in their place
        if (key == -1) break;
        if (key == kOperand)
            options.operands.emplace_back(optarg);
        else
            take(options, key);
        if (options.mode == Options::Mode::help || options.mode == Options::Mode::version) return options;
    }
    options.operands.insert(options.operands.end(), argv + optind, argv + argc); // behind "--"
    checkTogether(options);
    return options;
}

std::string helpText()
{
    return R"(Usage: zepos [OPTION]... [POSITION]...
Converts positions, one a line. Without a POSITION, converts the lines of standard input.

  --from FORMAT           what POSITION is written as; without it, a count of samples
  --to FORMAT             what to write; without it, a plain count of samples
  --rate N                samples per second (44100)
  --frame-rate R          frames per second of frames and frames-metric: 25, 24000/1001 (25)
  --tempo R               beats per minute (120)
  --time-signature N/M    beats per measure, value of a beat (4/4)
  --ticks N               ticks per beat (960)
  --percent-base N        samples that are 100 %
  --offset N              the position, in samples, that is shown as zero (0)
  --length                positions are lengths: the offset doesn't apply, measures count from 0
  --locale NAME           whose separators are written and read, such as de_DE; without it, the user's
  --ticks-for SPAN        print a tidy step of a ruler near SPAN samples: the step in samples,
                          coarse or fine, and the number of its subdivisions
  --list-formats          print the formats, an example of each (position 1800000), and
                          what they are
  --help                  show this text, and end
  --version               show the version, and end

Examples:
  zepos --to smpte-drop 1800000                          00:00:40;23
  zepos --from smpte-ebu --rate 48000 00:00:01:00        48000
  zepos --from time --to measures --tempo 90 0:01:30.5   34:4.720
  zepos --rate 48000 --to time -4344000                  -00:01:30.500
  zepos --to smpte-nondrop-30 --ticks-for 300000         441000 coarse 10
  zepos --from frames-metric --to smpte-film < counts.txt

A text that can't be read is reported on standard error with its number and the character
at which reading stopped; the others are still converted.
Exit status: 0, 1 for a text that can't be read, 2 for wrong usage.
)";
}
