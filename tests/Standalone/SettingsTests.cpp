#include "Standalone/Settings.h"

#include "Standalone/Session.h"

#include <gtest/gtest.h>

namespace {

using Settings = std::vector<std::pair<std::string, std::string>>;

float valueOf(ToneUnit& unit, AudioUnitParameterID parameter)
{
    float value = 0;
    AudioUnitGetParameter(&unit, parameter, kAudioUnitScope_Global, 0, &value);
    return value;
}

TEST(Settings, GiveTheUnitItsValues)
{
    const struct {
        Settings settings;
        AudioUnitParameterID parameter;
        float value;
    } kRows[] = {
        {{{"waveform", "2"}}, kParamWaveform, 2},
        {{{"waveform", "SawTooth"}}, kParamWaveform, 3},
        {{{"start-frequency", "0.01"}}, kParamStartFrequency, 0.01F},
        {{{"end-frequency", "22050"}}, kParamEndFrequency, 22050},
        {{{"use-end", "1"}}, kParamUseEnd, 1},
        {{{"log-sweep", "1"}}, kParamLogSweep, 1},
        {{{"gain", "-120"}}, kParamGain, -120},
        {{{"gain", "-Inf"}}, kParamGain, -120},
        {{{"length", "1e1"}}, kParamLength, 10},
        {{{"gain", "-3"}, {"gain", "-6"}}, kParamGain, -6},
        {{{"start-frequency", "40000"}, {"sample-rate", "96000"}}, kParamStartFrequency, 40000},
        {{{"start-frequency", "22050"}, {"sample-rate", "0"}}, kParamStartFrequency, 22050},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(testing::PrintToString(row.settings));
        ToneUnit unit;
        applySettings(unit, row.settings);
        EXPECT_EQ(valueOf(unit, row.parameter), row.value);
    }
}

TEST(Settings, SetTheTimeFormat)
{
    ToneUnit unit;
    applySettings(unit, {{"time-format", "7"}});
    std::uint32_t format = 0, size = sizeof format;
    AudioUnitGetProperty(&unit, kPropertyTimeFormat, kAudioUnitScope_Global, 0, &format, &size);
    EXPECT_EQ(format, 7U);
}

TEST(Settings, SayWhatIsWrong)
{
    const struct {
        Settings settings;
        bool isUsage; ///< can't be read, in contrast to a value that can't be had
        const char* message;
    } kRows[] = {
        {{{"volume", "3"}}, true, "--set volume=3: there is no “volume”"},
        {{{"gain", "loud"}}, true, "--set gain=loud: “loud” is not a number"},
        {{{"gain", ""}}, true, "--set gain=: “” is not a number"},
        {{{"gain", "-3dB"}}, true, "--set gain=-3dB: “-3dB” is not a number"},
        {{{"waveform", "noise"}}, true, "--set waveform=noise: “noise” is no waveform and not a number"},
        {{{"time-format", "21"}}, false, "--set time-format=21: the generator refuses this value"},
        {{{"time-format", "-1"}}, true, "--set time-format=-1: “-1” is not a number"},
        {{{"gain", "0.1"}}, false, "--set gain=0.1: outside -120 to 0"},
        {{{"gain", "nan"}}, false, "--set gain=nan: outside -120 to 0"},
        {{{"waveform", "4"}}, false, "--set waveform=4: outside 0 to 3"},
        {{{"start-frequency", "22051"}}, false, "--set start-frequency=22051: outside 0.01 to 22050"},
        {{{"length", "inf"}}, false, "--set length=inf: outside 1e-06 to 86399.99"},
        {{{"length", "1e99"}}, false, "--set length=1e99: no number that large or small can be held"},
        {{{"sample-rate", "-1"}}, false, "--set sample-rate=-1: the generator refuses this value"},
        {{{"sample-rate", "8000"}, {"end-frequency", "5000"}}, false, "--set end-frequency=5000: outside 0.01 to 4000"},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(testing::PrintToString(row.settings));
        ToneUnit unit;
        std::string usage, input;
        try {
            applySettings(unit, row.settings);
        } catch (const UsageError& error) {
            usage = error.message;
        } catch (const InputError& error) {
            input = error.message;
        }
        EXPECT_EQ(row.isUsage ? usage : input, row.message);
    }
}

} // namespace
