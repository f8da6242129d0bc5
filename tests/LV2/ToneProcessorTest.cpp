// The sounding half: what it renders, its messages, its state, and what it must not do while it renders.

#include "LV2/ToneProcessor.h"
#include "LV2/PlugInHost.h"
#include "ZeKernel/HeapRequests.h"

#include <gmock/gmock.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <numbers>
#include <stdexcept>

#include <linux/seccomp.h>
#include <lv2/atom/util.h>
#include <lv2/patch/patch.h>
#include <lv2/time/time.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using std::numbers::pi;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

/// A message as a host or an editor makes one.
class Message {
public:
    Message(Names& names, const char* type)
    {
        lv2_atom_forge_init(&mForge, names.map());
        lv2_atom_forge_set_buffer(&mForge, mBytes.data(), mBytes.size());
        lv2_atom_forge_object(&mForge, &mFrame, 0, names(type));
    }
    Message& key(LV2_URID key)
    {
        lv2_atom_forge_key(&mForge, key);
        return *this;
    }
    Message& urid(LV2_URID value) { return lv2_atom_forge_urid(&mForge, value), *this; }
    Message& integer(std::int32_t value) { return lv2_atom_forge_int(&mForge, value), *this; }
    Message& number(float value) { return lv2_atom_forge_float(&mForge, value), *this; }
    /// One of its 32-bit words: 0 is its size.
    Message& change(std::size_t word, std::uint32_t value)
    {
        std::memcpy(mBytes.data() + 4 * word, &value, sizeof value);
        return *this;
    }
    void sendTo(HostedTone& tone) { tone.send(mBytes.data(), mForge.offset); }

private:
    LV2_Atom_Forge mForge;
    LV2_Atom_Forge_Frame mFrame;
    alignas(8) std::array<std::uint8_t, 256> mBytes{};
};

class ToneProcessorTest : public testing::Test {
protected:
    Message message(const char* type) { return {names, type}; }
    Message formatMessage(std::int32_t format)
    {
        Message made(names, LV2_PATCH__Set);
        made.key(names(LV2_PATCH__property)).urid(names(kTonaroTimeFormatURI));
        made.key(names(LV2_PATCH__value)).integer(format);
        return made;
    }
    /// It arrives, too.
    void sendFormat(std::int32_t format)
    {
        formatMessage(format).sendTo(tone);
        tone.run();
    }

    Names names;
    HostedTone tone{names};
};

TEST_F(ToneProcessorTest, RendersWhatItsPortsSay)
{
    tone.controls[kParamStartFrequency] = 997.0f;
    tone.controls[kParamGain] = 0.0f;
    const auto samples = tone.rendered(20);
    double worst = 0;
    for (std::size_t n = 0; n < samples.size(); ++n)
        worst = std::max(worst, std::abs(samples[n] - std::sin(2 * pi * 997.0 * double(n) / 48000.0)));
    EXPECT_LT(worst, 1e-6);
    EXPECT_EQ(tone.outputs[0], tone.outputs[1]);

    HostedTone mono(names, kTonaroMonoURI);
    mono.controls = tone.controls;
    EXPECT_EQ(mono.rendered(20), samples);
}

TEST_F(ToneProcessorTest, RepeatsASweepAndGoesOnWithATone)
{
    tone.controls[kParamStartFrequency] = 1000.0f;
    tone.controls[kParamEndFrequency] = 4000.0f;
    tone.controls[kParamUseEnd] = 1.0f;
    tone.controls[kParamLength] = 0.128f; // 24 blocks
    const auto crossings = [&](std::size_t blocks) {
        const auto samples = tone.rendered(blocks);
        int count = 0;
        for (std::size_t n = 1; n < samples.size(); ++n) count += samples[n - 1] <= 0 && samples[n] > 0;
        return count;
    };
    EXPECT_NEAR(crossings(6), 1375 * 0.032, 2); // the first quarter, and the last
    crossings(12);
    EXPECT_NEAR(crossings(6), 3625 * 0.032, 2);
    EXPECT_NEAR(crossings(6), 1375 * 0.032, 2);
    // a transport that starts to roll begins it anew
    message(LV2_TIME__Position).key(names(LV2_TIME__speed)).number(1.0f).sendTo(tone);
    EXPECT_NEAR(crossings(6), 1375 * 0.032, 2);
    message(LV2_TIME__Position).key(names(LV2_TIME__speed)).number(1.0f).sendTo(tone);
    EXPECT_NEAR(crossings(6), 2125 * 0.032, 2); // goes on: it rolled already
}

TEST_F(ToneProcessorTest, TakesControlsThatDontFit)
{
    for (const float wild : {std::nanf(""), std::numeric_limits<float>::infinity(), -1e30f, 1e30f, 0.0f}) {
        tone.controls.fill(wild);
        EXPECT_THAT(tone.rendered(4), Each(testing::AllOf(testing::Ge(-1.5f), testing::Le(1.5f)))) << wild;
    }
}

TEST_F(ToneProcessorTest, KeepsTheTimeFormatInItsState)
{
    const LV2_URID format = names(kTonaroTimeFormatURI);
    EXPECT_THAT(tone.saved(), ElementsAre(Pair(format, 1)));
    sendFormat(5);
    EXPECT_THAT(tone.saved(), ElementsAre(Pair(format, 5)));
    for (const std::int32_t wrong : {-1, 21, 1 << 30}) {
        sendFormat(wrong);
        tone.restore({{format, wrong}});
        EXPECT_THAT(tone.saved(), ElementsAre(Pair(format, 5))) << wrong;
    }
    HostedTone other(names);
    other.restore(tone.saved());
    EXPECT_EQ(other.saved(), tone.saved());
    other.restore({});
    EXPECT_THAT(other.saved(), ElementsAre(Pair(format, 1)));
}

TEST_F(ToneProcessorTest, TellsItsTimeFormatWhenAskedOrChanged)
{
    const auto told = [&] {
        tone.run();
        std::vector<std::int32_t> formats;
        for (const auto& bytes : tone.takenMessages()) {
            const auto* const object = reinterpret_cast<const LV2_Atom_Object*>(bytes.data());
            const LV2_Atom* value = nullptr;
            lv2_atom_object_get(object, names(LV2_PATCH__value), &value, 0);
            EXPECT_EQ(object->body.otype, names(LV2_PATCH__Set));
            if (value) formats.push_back(reinterpret_cast<const LV2_Atom_Int*>(value)->body);
        }
        return formats;
    };
    EXPECT_THAT(told(), IsEmpty());
    message(LV2_PATCH__Get).sendTo(tone);
    EXPECT_THAT(told(), ElementsAre(1));
    message(LV2_PATCH__Get).key(names(LV2_PATCH__property)).urid(names("urn:another")).sendTo(tone);
    message(LV2_PATCH__Set).key(names(LV2_PATCH__property)).urid(names(kTonaroTimeFormatURI)).sendTo(tone);
    EXPECT_THAT(told(), IsEmpty());
    formatMessage(3).sendTo(tone);
    EXPECT_THAT(told(), ElementsAre(3));
    tone.restore({{names(kTonaroTimeFormatURI), 4}});
    EXPECT_THAT(told(), ElementsAre(4));
    EXPECT_THAT(told(), IsEmpty());
}

TEST_F(ToneProcessorTest, NeedsNoPortsButRefusesAHostWithoutNames)
{
    const SharedObject object("tonaro.so");
    const LV2_Descriptor* plugin = object.function<const LV2_Descriptor*(std::uint32_t)>("lv2_descriptor")(0);
    const LV2_Feature* const nothing[] = {nullptr};
    EXPECT_EQ(plugin->instantiate(plugin, 48000.0, "", nothing), nullptr);
    const LV2_Feature map{LV2_URID__map, names.map()};
    const LV2_Feature* const features[] = {&map, nullptr};
    const LV2_Handle handle = plugin->instantiate(plugin, 48000.0, "", features);
    plugin->activate(handle);
    plugin->run(handle, 64);
    plugin->run(handle, 0);
    plugin->cleanup(handle);
}

TEST_F(ToneProcessorTest, ReadsNoFurtherThanAMessageGoes)
{
    const struct {
        const char* why;
        std::size_t word;
        std::uint32_t value;
    } kRows[] = {
        {"a message without a body", 0, 0},
        {"half a body", 0, 4},
        {"it ends before the number", 0, 48},
        {"and in the middle of it", 0, 50},
        {"it is longer than what was sent", 0, 1 << 20},
        {"the property is", 6, 1 << 20},
        {"the number is", 12, 1 << 20},
        {"a length that leads back to its beginning", 6, 0xFFFFFFF0},
        {"the largest length", 6, 0xFFFFFFFF},
        {"the property is no name", 7, 0},
        {"a number of another size", 12, 8},
    };
    for (const auto& row : kRows) {
        formatMessage(5).change(row.word, row.value).sendTo(tone);
        tone.run();
        EXPECT_THAT(tone.saved(), ElementsAre(Pair(testing::_, 1))) << row.why;
        sendFormat(1);
    }
    sendFormat(5);
    EXPECT_THAT(tone.saved(), ElementsAre(Pair(testing::_, 5)));
}

TEST_F(ToneProcessorTest, RefusesRatesAtWhichThereIsNoTone)
{
    for (const double rate : {0.0, -48000.0, 0.01, 768001.0, 1e12, 1e300, std::numeric_limits<double>::infinity(),
                              std::numeric_limits<double>::quiet_NaN()})
        EXPECT_THROW(HostedTone(names, kTonaroMonoURI, rate), std::runtime_error) << rate;
    for (const double rate : {1.0, 8000.0, 768000.0}) {
        HostedTone mono(names, kTonaroMonoURI, rate);
        EXPECT_THAT(mono.rendered(4), Each(testing::AllOf(testing::Ge(-1.5f), testing::Le(1.5f)))) << rate;
    }
}

/// Everything that happens while a plug-in runs: values that change, messages, each waveform, sweeps.
void RunEverything(HostedTone& tone)
{
    for (int block = 0; block < 400; ++block) {
        tone.controls[kParamWaveform] = static_cast<float>(block % 4);
        tone.controls[kParamStartFrequency] = static_cast<float>(20 + block * 37 % 9000);
        tone.controls[kParamUseEnd] = static_cast<float>(block % 3 == 0);
        tone.controls[kParamLogSweep] = static_cast<float>(block % 2);
        tone.controls[kParamGain] = static_cast<float>(-(block % 121));
        tone.controls[kParamLength] = 0.001f * static_cast<float>(1 + block % 50);
        tone.runOnly();
    }
}

TEST_F(ToneProcessorTest, AllocatesNothingWhileItRuns)
{
    message(LV2_PATCH__Get).sendTo(tone);
    tone.prepareMessages();
    const std::size_t before = HeapRequests();
    RunEverything(tone);
    EXPECT_EQ(HeapRequests(), before);
    const HostedTone another(names); // to see that they are counted
    EXPECT_GT(HeapRequests(), before);
}

TEST_F(ToneProcessorTest, CallsNothingOfTheSystemWhileItRuns)
{
    message(LV2_PATCH__Get).sendTo(tone);
    tone.prepareMessages();
    tone.runOnly(); // the loader finds the functions at their first call
    const pid_t child = fork();
    if (child == 0) { // from here on the kernel kills whoever calls it for more than an exit
        if (prctl(PR_SET_SECCOMP, SECCOMP_MODE_STRICT) != 0) _exit(2);
        RunEverything(tone);
        syscall(SYS_exit, 0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (WIFEXITED(status) && WEXITSTATUS(status) == 2) GTEST_SKIP() << "this kernel lets nobody forbid calls";
    EXPECT_TRUE(WIFEXITED(status)) << "a call of the system, signal " << WTERMSIG(status);
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

} // namespace
