#include "Standalone/Settings.h"

#include "Standalone/Session.h"
#include "TonaroLetterCase.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace {

using Setting = std::pair<std::string, std::string>;

constexpr std::string_view kSampleRate = "sample-rate";
constexpr std::string_view kTimeFormat = "time-format";
constexpr std::string_view kWaveform = "waveform";
constexpr std::string_view kGain = "gain";

std::string shown(const Setting& setting) { return "--set " + setting.first + "=" + setting.second; }

template <typename Number> Number numberOf(const Setting& setting)
{
    const std::string& text = setting.second;
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool isWhole = end == text.data() + text.size();
    if (error == std::errc::result_out_of_range && isWhole)
        throw InputError{shown(setting) + ": no number that large or small can be held"};
    if (error != std::errc{} || !isWhole)
        throw UsageError{shown(setting) + ": “" + text + "” is " +
                         (setting.first == kWaveform ? "no waveform and " : "") + "not a number"};
    return value;
}

float valueOf(const Setting& setting)
{
    for (std::size_t i = 0; setting.first == kWaveform && i < kToneWaveformNames.size(); ++i)
        if (equalIgnoringCase(setting.second, kToneWaveformNames[i])) return static_cast<float>(i);
    const float value = numberOf<float>(setting);
    // what the editor shows for silence can be written too
    return setting.first == kGain && value == -std::numeric_limits<float>::infinity() ? kToneSilenceDecibels : value;
}

void setParameter(ToneUnit& unit, const ToneParameterFacts& facts, const Setting& setting)
{
    const float value = valueOf(setting);
    const float highest = ToneMaximum(facts, unit.settings().sampleRate);
    if (!(value >= facts.minValue && value <= highest))
        throw InputError{shown(setting) + ": outside " + shortestText(facts.minValue) + " to " + shortestText(highest)};
    AudioUnitSetParameter(&unit, facts.id, kAudioUnitScope_Global, 0, value, 0);
}

template <typename Number> void setProperty(ToneUnit& unit, AudioUnitPropertyID property, const Setting& setting)
{
    const auto value = numberOf<Number>(setting);
    if (AudioUnitSetProperty(&unit, property, kAudioUnitScope_Global, 0, &value, sizeof value) != noErr)
        throw InputError{shown(setting) + ": the generator refuses this value"};
}

} // namespace

void applySettings(ToneUnit& unit, const std::vector<Setting>& settings)
{
    for (const Setting& setting : settings)
        if (setting.first == kSampleRate) setProperty<double>(unit, kAudioUnitProperty_SampleRate, setting);
    for (const Setting& setting : settings) {
        const ToneParameterFacts* facts = FindToneParameter(setting.first);
        if (facts)
            setParameter(unit, *facts, setting);
        else if (setting.first == kTimeFormat)
            setProperty<std::uint32_t>(unit, kPropertyTimeFormat, setting);
        else if (setting.first != kSampleRate)
            throw UsageError{shown(setting) + ": there is no “" + setting.first + "”"};
    }
}
