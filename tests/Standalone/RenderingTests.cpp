// The tone as a file, read back with the library that other programs read it with.
#include "Standalone/Rendering.h"

#include "Standalone/NewFile.h"
#include "Standalone/ProgressBar.h"
#include "Standalone/SoundFile.h"
#include "Support/TemporaryFolder.h"
#include "ui/Program.h"

#include <cmath>
#include <csignal>
#include <numbers>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <poll.h>
#include <sndfile.hh>
#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class Rendering : public testing::Test {
protected:
    std::string path(const std::string& name) const { return folder / name; }
    std::vector<std::string> files() const { return folder.files(); }
    void render(const std::string& name, std::vector<std::pair<std::string, std::string>> settings = {}) const
    {
        Options options;
        options.file = path(name);
        options.settings = std::move(settings);
        renderTone(options);
    }
    std::string complaint(const std::string& name, std::vector<std::pair<std::string, std::string>> settings = {}) const
    {
        try {
            render(name, std::move(settings));
        } catch (const InputError& error) {
            return error.message;
        }
        return {};
    }

    const TemporaryFolder folder;
};

TEST_F(Rendering, ReadsBackAsItWasSet)
{
    const struct {
        const char* name;
        int kind;
        const char *rate, *seconds, *hertz, *decibels;
        sf_count_t frames;
    } kRows[] = {
        {"a.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_24, "48000", "0.5", "1000", "-6", 24000},
        {"b.FLAC", SF_FORMAT_FLAC | SF_FORMAT_PCM_24, "44100", "0.25", "441", "-20", 11025},
        {"c.Wav", SF_FORMAT_WAV | SF_FORMAT_PCM_24, "8000", "0.001", "1000", "0", 8},
        {"d.wav", SF_FORMAT_WAV | SF_FORMAT_PCM_24, "0", "0.1", "441", "-inf", 4410},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.name);
        render(row.name, {{"sample-rate", row.rate},
                          {"length", row.seconds},
                          {"start-frequency", row.hertz},
                          {"gain", row.decibels}});
        SndfileHandle file(path(row.name));
        ASSERT_EQ(file.error(), SF_ERR_NO_ERROR);
        EXPECT_EQ(file.format(), row.kind);
        EXPECT_EQ(file.channels(), 1);
        const double rate = row.rate == std::string("0") ? 44100 : std::stod(row.rate);
        EXPECT_EQ(file.samplerate(), rate);
        ASSERT_EQ(file.frames(), row.frames);

        std::vector<double> samples(static_cast<std::size_t>(row.frames));
        file.readf(samples.data(), row.frames);
        const double amplitude = std::pow(10, std::stod(row.decibels) / 20);
        for (std::size_t i = 0; i < samples.size(); ++i) {
            const double cycles = std::stod(row.hertz) * static_cast<double>(i) / rate;
            // a step of 24 bits; the last one below full scale is missing at 0 dB
            ASSERT_NEAR(samples[i], amplitude * std::sin(2 * std::numbers::pi * cycles), 0x1p-22) << i;
        }
    }
}

TEST_F(Rendering, LimitsWhatGoesBeyondFullScale)
{
    render("square.wav", {{"waveform", "square"}, {"gain", "0"}, {"length", "0.1"}, {"start-frequency", "100"}});
    SndfileHandle file(path("square.wav"));
    std::vector<float> samples(static_cast<std::size_t>(file.frames()));
    file.readf(samples.data(), file.frames());
    int jumps = 0; // what wraps around instead jumps from one end to the other
    for (std::size_t i = 1; i < samples.size(); ++i) jumps += samples[i - 1] * samples[i] < -0.5F;
    EXPECT_LE(jumps, 20) << "10 periods";
    EXPECT_GE(*std::max_element(samples.begin(), samples.end()), 0.99999F);
}

TEST_F(Rendering, SaysWhatIsWrongAndLeavesNothing)
{
    fs::create_directory(path("folder.wav"));
    fs::create_symlink("/dev/full", path("full.wav"));
    fs::create_symlink("/dev/full", path("full.flac"));
    mkfifo(path("pipe.wav").c_str(), 0600);
    const int reader = open(path("pipe.wav").c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    const auto before = files();
    const struct {
        const char *name, *rate, *reason;
    } kRows[] = {
        {"missing/a.wav", "44100", "No such file or directory"},
        {"folder.wav", "44100", "Is a directory"},
        {"full.wav", "44100", "No space left on device"},
        {"full.flac", "44100", "No space left on device"},
        {"pipe.wav", "44100", "a sound file can't be written into a pipe"},
        {"a.wav", "44100.5", "a sound file can't hold this sample rate"},
    };
    for (const auto& row : kRows)
        EXPECT_EQ(complaint(row.name, {{"sample-rate", row.rate}}), path(row.name) + ": " + row.reason);
    EXPECT_THAT(complaint("a.flac", {{"sample-rate", "768000"}}), HasSubstr("a.flac: "));
    close(reader);
    EXPECT_EQ(files(), before);
}

TEST_F(Rendering, TakesThePlaceOfWhatWasThereAndItsRights)
{
    folder.write("there.wav", "old");
    chmod(path("there.wav").c_str(), 0640);
    fs::create_symlink("there.wav", path("link.wav"));
    render("link.wav", {{"length", "0.01"}});
    struct stat facts {};
    ASSERT_EQ(lstat(path("there.wav").c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 07777, 0640U);
    EXPECT_EQ(SndfileHandle(path("there.wav")).frames(), 441);
    EXPECT_TRUE(fs::is_symlink(path("link.wav")));
    EXPECT_THAT(files(), ElementsAre("link.wav", "there.wav"));
}

TEST_F(Rendering, FollowsLinksAlsoToAFileThatIsntThereYet)
{
    fs::create_directory(path("folder"));
    fs::create_symlink("folder/next.wav", path("link.wav"));
    fs::create_symlink(path("new.wav"), path("folder/next.wav"));
    render("link.wav", {{"length", "0.01"}});
    EXPECT_EQ(SndfileHandle(path("new.wav")).frames(), 441);
    EXPECT_TRUE(fs::is_symlink(path("link.wav")));
    EXPECT_TRUE(fs::is_symlink(path("folder/next.wav")));
    fs::create_symlink("circle.wav", path("circle.wav"));
    EXPECT_EQ(complaint("circle.wav"), path("circle.wav") + ": Too many levels of symbolic links");
}

TEST_F(Rendering, AFailureKeepsWhatWasThere)
{
    folder.write("there.wav", "old");
    {
        const NewFile file(path("there.wav"));
        ASSERT_EQ(write(file.descriptor(), "new", 3), 3);
    }
    std::string text;
    std::ifstream(path("there.wav")) >> text;
    EXPECT_EQ(text, "old");
    EXPECT_THAT(files(), ElementsAre("there.wav"));
}

TEST_F(Rendering, AnInterruptionLeavesNothing)
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        SCOPED_TRACE(signal);
        Program program({TONARO_PROGRAM, "--render", path("long.flac"), "--set=length=86000"});
        const double until = SecondsNow() + 20;
        while (files().empty() && SecondsNow() < until) usleep(1000); // until it writes
        ASSERT_THAT(files(), testing::SizeIs(1));
        EXPECT_NE(files().front(), "long.flac");
        program.sendSignal(signal);
        EXPECT_EQ(program.waitForExit(20), -signal);
        EXPECT_THAT(files(), IsEmpty());
    }
}

TEST_F(Rendering, ASignalEndsTheWaitForAReader)
{
    mkfifo(path("pipe.wav").c_str(), 0600);
    Program program({TONARO_PROGRAM, "--render", path("pipe.wav")});
    usleep(300000); // until it waits
    program.sendSignal(SIGINT);
    EXPECT_EQ(program.waitForExit(20), -SIGINT);
}

TEST_F(Rendering, APipeGetsNoProgress)
{
    Program program({"sh", "-c", "exec \"$0\" --render \"$1\" 2>&1", TONARO_PROGRAM, path("a.wav")});
    EXPECT_EQ(program.allOutput(), "");
    EXPECT_EQ(program.waitForExit(20), 0);
    EXPECT_THAT(files(), ElementsAre("a.wav"));
}

TEST(ProgressBar, DrawsOneLineOnATerminal)
{
    const int terminal = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK);
    ASSERT_EQ(grantpt(terminal), 0);
    ASSERT_EQ(unlockpt(terminal), 0);
    std::FILE* const file = std::fopen(ptsname(terminal), "w");
    ASSERT_TRUE(file);
    {
        ProgressBar bar("a.wav", file);
        for (const std::uint64_t done : {0U, 1U, 1U, 500U, 1000U}) bar.show(done, 1000);
    }
    std::string text; // which the terminal passes on in pieces
    for (pollfd arrival{terminal, POLLIN, 0}; !text.ends_with('\n') && poll(&arrival, 1, 5000) > 0;) {
        char piece[400];
        const ssize_t length = read(terminal, piece, sizeof piece);
        if (length <= 0) break;
        text.append(piece, static_cast<std::size_t>(length));
    }
    EXPECT_EQ(text, "\ra.wav  [--------------------]   0 %"
                    "\ra.wav  [##########----------]  50 %"
                    "\ra.wav  [####################] 100 %\r\n");
    std::fclose(file);
    close(terminal);
}

} // namespace
