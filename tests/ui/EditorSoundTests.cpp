// The strip above the editor in a real window.
#include "ui/EditorRig.h"

#include <csignal>
#include <fstream>

#include <unistd.h>

namespace {

class EditorSound : public EditorTest {
protected:
    /// Where the strip's meter is on the screen: the part of the strip above the editor's sliders.
    std::vector<std::uint32_t> meter()
    {
        const CGRect slider = controls["mGainSlider"].frame;
        return person.pixels(CGRectMake(10 + slider.origin.x, 10, slider.size.width, kStripHeight));
    }
    void pressPlay() { person.click({10 + kPlay.x, 10 + kPlay.y}); }

    static constexpr double kStripHeight = 54;
    static constexpr CGPoint kPlay{88, 28};
};

/// How often the program has waited for something, all its threads together.
long waits(pid_t process)
{
    std::ifstream file("/proc/" + std::to_string(process) + "/status");
    long count = 0;
    for (std::string word; file >> word;)
        if (word == "voluntary_ctxt_switches:") file >> count;
    return count;
}

TEST_F(EditorSound, StopsFromTheKeyboard)
{
    static constexpr XClient::KeySymbol kShiftOnly[] = {kShift};
    start({"--set=length=80000"});
    const auto quiet = meter();
    person.key(kTab, kShiftOnly); // the strip comes after the editor
    person.key(' ');
    EXPECT_TRUE(person.waitUntil([&] { return meter() != quiet; }));
    person.key(' ');
    EXPECT_TRUE(person.waitUntil([&] { return meter() == quiet; }));
}

TEST_F(EditorSound, EndsByItselfAndNothingWakesItUpWhileNothingPlays)
{
    start({"--set=length=0.2"});
    const auto quiet = meter();
    const long idle = waits(editor->process());
    traceUntilQuiet(); // some time
    EXPECT_EQ(waits(editor->process()), idle);
    pressPlay();
    EXPECT_TRUE(person.waitUntil([&] { return meter() != quiet; }));
    EXPECT_TRUE(person.waitUntil([&] { return meter() == quiet; }));
    person.moveTo({1200, 850});
    EXPECT_TRUE(traceUntilQuiet().isEmpty()) << "playing changes nothing of the generator";
    const long after = waits(editor->process());
    traceUntilQuiet();
    EXPECT_EQ(waits(editor->process()), after);
}

/// A real sound server without a sound card.
class JackServer {
public:
    JackServer() : mServer({"sh", "-c", "exec jackd -n \"$0\" -r -d dummy -r 48000 >/dev/null 2>&1", kName}, settings())
    {
    }

    static std::vector<std::string> settings()
    {
        return {"JACK_DEFAULT_SERVER=" + kName, "JACK_NO_AUDIO_RESERVATION=1", "PULSE_SERVER=/nonexistent"};
    }
    static std::string devices()
    {
        return Program({"sh", "-c", "exec \"$0\" --list-devices 2>/dev/null", TONARO_PROGRAM}, settings()).allOutput();
    }
    void stop() { mServer.sendSignal(SIGKILL); }

private:
    static inline const std::string kName = "tonaro-test-" + std::to_string(getpid());
    Program mServer;
};

TEST_F(EditorSound, PlaysOnAServerUntilThatIsGone)
{
    if (!IsInstalled("jackd")) GTEST_SKIP() << "jackd is not installed";
    JackServer jack;
    ASSERT_TRUE(person.waitUntil([] { return JackServer::devices() == "jack:system  (2 channels, 48000 Hz)\n"; }));
    auto settings = JackServer::settings();
    settings.push_back(server.setting());
    Program program({"sh", "-c", "exec \"$0\" --scale=1 --device jack:system --set length=60 2>&1", TONARO_PROGRAM},
                    settings);
    ASSERT_TRUE(person.waitUntil([&] { return !(windows = person.windowsNamed("Tonaro")).empty(); }));
    person.moveWindow(windows.front(), 10, 10);
    EXPECT_TRUE(program.linesUntilQuiet().empty()) << "there is a device";
    const auto quiet = meter();
    pressPlay();
    EXPECT_TRUE(person.waitUntil([&] { return meter() != quiet; }));
    jack.stop();
    const auto line = program.nextLine(10);
    ASSERT_TRUE(line);
    EXPECT_EQ(line->text, "tonaro: the sound device “jack:system” is gone; the tone goes on in silence");
    EXPECT_TRUE(person.waitUntil([&] { return meter() != quiet; }));
    pressPlay(); // the window lives on
    EXPECT_TRUE(person.waitUntil([&] { return meter() == quiet; }));
    EXPECT_FALSE(program.nextLine(0.2));
}

TEST(Sound, OneLineTellsThatThereIsNoDevice)
{
    Xvfb server;
    XClient person(server.display());
    // no server of sounds is reached, and no card is described
    Program program({"sh", "-c", "exec \"$0\" --device \"$1\" 2>&1", TONARO_PROGRAM, "nothing:there"},
                    {server.setting(), "JACK_DEFAULT_SERVER=tonaro-test", "PULSE_SERVER=/nonexistent"});
    EXPECT_EQ(program.allOutput(), "tonaro: --device: there is no sound device “nothing:there”; --list-devices names "
                                   "those there are\n");
    EXPECT_EQ(program.waitForExit(10), 1);

    Program silent({"sh", "-c", "exec \"$0\" 2>&1", TONARO_PROGRAM},
                   {server.setting(), "JACK_DEFAULT_SERVER=tonaro-test", "PULSE_SERVER=/nonexistent",
                    "ALSA_CONFIG_PATH=/dev/null"});
    const auto line = silent.nextLine(10);
    ASSERT_TRUE(line);
    EXPECT_EQ(line->text, "tonaro: there is no sound device; the tone plays in silence");
    EXPECT_FALSE(silent.nextLine(0.3));
    EXPECT_EQ(person.windowsNamed("Tonaro").size(), 1U);
}

} // namespace
