// The bundle as hosts and their tools read it.

#include "LV2/TonaroPorts.h"
#include "ToneUnit/ToneParameters.h"
#include "ui/Program.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <sstream>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

const std::string kBundle = TONARO_LV2_BUNDLE;
const std::vector<std::string> kLv2Path = {"LV2_PATH=" + std::filesystem::path(kBundle).parent_path().string()};

std::string OutputOf(const std::string& command)
{
    Program program({"sh", "-c", "exec 2>&1; " + command}, kLv2Path);
    return program.allOutput();
}

TEST(Bundle, IsValid)
{
    if (!IsInstalled("lv2_validate") || !IsInstalled("sord_validate")) GTEST_SKIP() << "no lv2_validate";
    // the standard alone: other plug-ins that are installed may have faults of their own
    const std::string standard = "$(dpkg -L lv2-dev | grep '[.]lv2/.*[.]ttl$' | grep -v '[.]doap') ";
    const std::string ours = kBundle + "/manifest.ttl " + kBundle + "/tonaro.ttl";
    EXPECT_THAT(OutputOf("lv2_validate " + ours + " | tail -n 20"), HasSubstr("Found 0 errors"));
    EXPECT_THAT(OutputOf("sord_validate " + standard + ours + " | tail -n 20"), HasSubstr("Found 0 errors"));
    const std::string wrong = testing::TempDir() + "tonaro-wrong.ttl";
    EXPECT_THAT(OutputOf("sed 's/lv2:index 3/lv2:index \"three\"/' " + kBundle + "/tonaro.ttl >" + wrong +
                         "; lv2_validate " + kBundle + "/manifest.ttl " + wrong + " | tail -n 1; rm " + wrong),
                testing::Not(HasSubstr("Found 0 errors"))); // one would be seen
}

struct ListedPort {
    std::string symbol, name;
    double least = NAN, most = NAN, initial = NAN;
};

/// The ports that `lv2info` lists.
std::vector<ListedPort> PortsOf(const char* uri)
{
    std::vector<ListedPort> ports;
    std::istringstream lines(OutputOf(std::string("lv2info ") + uri));
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string key, rest;
        words >> key >> std::ws;
        std::getline(words, rest);
        if (key == "Port") ports.emplace_back();
        if (ports.empty()) continue;
        if (key == "Symbol:") ports.back().symbol = rest;
        if (key == "Name:") ports.back().name = rest;
        if (key == "Minimum:") ports.back().least = std::stod(rest);
        if (key == "Maximum:") ports.back().most = std::stod(rest);
        if (key == "Default:") ports.back().initial = std::stod(rest);
    }
    return ports;
}

TEST(Bundle, DescribesThePortsAsTheyAre)
{
    if (!IsInstalled("lv2info")) GTEST_SKIP() << "no lv2info";
    const auto mono = PortsOf(kTonaroMonoURI), stereo = PortsOf(kTonaroStereoURI);
    ASSERT_EQ(mono.size(), std::size_t{kPortRight});
    ASSERT_EQ(stereo.size(), std::size_t{kPortCount});
    EXPECT_EQ(stereo[kPortControl].symbol, "control");
    EXPECT_EQ(stereo[kPortNotify].symbol, "notify");
    EXPECT_EQ(stereo[kPortLeft].symbol, "out_left");
    for (const auto& ports : {mono, stereo})
        for (const ToneParameterFacts& facts : kToneParameters) {
            const ListedPort& port = ports[facts.id];
            const float most = facts.maxValue == kToneUpToNyquist ? kTonaroHighestPortHz : ToneMaximum(facts, 48000.0);
            std::string symbol = facts.optionName;
            std::replace(symbol.begin(), symbol.end(), '-', '_');
            EXPECT_EQ(port.symbol, symbol);
            EXPECT_EQ(port.name, facts.name);
            EXPECT_FLOAT_EQ(static_cast<float>(port.least), facts.minValue) << symbol;
            EXPECT_FLOAT_EQ(static_cast<float>(port.most), most) << symbol;
            EXPECT_FLOAT_EQ(static_cast<float>(port.initial), facts.defaultValue) << symbol;
        }
    for (const char* name : kToneWaveformNames)
        EXPECT_THAT(OutputOf(std::string("lv2info ") + kTonaroMonoURI), HasSubstr(" = \"" + std::string(name) + "\""));
}

TEST(Bundle, ExportsItsEntriesAndNothingElse)
{
    const auto exported = [](const char* object) {
        std::vector<std::string> names;
        std::istringstream lines(OutputOf("nm -D --defined-only --format=just-symbols " + kBundle + "/" + object));
        for (std::string line; std::getline(lines, line);) names.push_back(line);
        return names;
    };
    EXPECT_THAT(exported("tonaro.so"), ElementsAre("lv2_descriptor"));
    EXPECT_THAT(exported("tonaro_ui.so"), ElementsAre("lv2ui_descriptor"));
}

TEST(Bundle, TheSoundingHalfLoadsNothingOfTheEditors)
{
    const std::string needed = OutputOf("readelf -d " + kBundle + "/tonaro.so | grep NEEDED");
    EXPECT_THAT(needed, HasSubstr("libc.so"));
    for (const char* library : {"xcb", "cairo", "pango", "glib", "icu", "plist"})
        EXPECT_THAT(needed, testing::Not(HasSubstr(library)));
    EXPECT_THAT(OutputOf("readelf -d " + kBundle + "/tonaro_ui.so"), HasSubstr("NODELETE"));
}

} // namespace
