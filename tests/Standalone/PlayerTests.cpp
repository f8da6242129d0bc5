// The tone as it plays: on a device that does what a test wants, and on none.
#include "SessionRig.h"

#include "Standalone/LevelMeter.h"
#include "ZeKernel/HeapRequests.h"

#include <cmath>

namespace {

using testing::HasSubstr;
using Heard = TonePlayer::Heard;

/// A sound card in the hands of a test.
struct FakeCard {
    class Output final : public SoundOutput {
    public:
        explicit Output(FakeCard& card) : mCard(card) { ++mCard.open; }
        ~Output() override
        {
            mCard.source = nullptr;
            --mCard.open;
        }
        std::string name() const override { return "fake:card"; }
        double sampleRate() const override { return mCard.rate; }
        void start(SoundSource& source) override { mCard.source = &source; }
        bool isAlive() override { return mCard.isThere; }

    private:
        FakeCard& mCard;
    };

    SoundOpener opener()
    {
        return [this](double wanted) -> std::unique_ptr<SoundOutput> {
            wantedRate = wanted;
            if (!isThere) return nullptr;
            return std::make_unique<Output>(*this);
        };
    }
    /// The next samples, as the device's thread would ask for them.
    std::vector<float> play(double seconds)
    {
        std::vector<float> samples(static_cast<std::size_t>(std::lround(seconds * rate)));
        for (std::size_t i = 0; source && i < samples.size(); i += 100) // in blocks
            source->render(std::span(samples).subspan(i, std::min<std::size_t>(100, samples.size() - i)));
        return samples;
    }

    bool isThere = true;
    double rate = 48000, wantedRate = 0;
    int open = 0;
    SoundSource* source = nullptr;
};

float largest(const std::vector<float>& samples)
{
    float most = 0;
    for (const float sample : samples) most = std::max(most, std::abs(sample));
    return most;
}

struct Player : testing::Test {
    Player()
    {
        set(kParamGain, 0);
        set(kParamLength, 0.5F);
        set(kParamStartFrequency, 1000);
        testing::internal::CaptureStderr();
    }
    ~Player() override
    {
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << "not expected";
        EXPECT_EQ(card.open, player.isPlaying() ? 1 : 0) << "an output is open only while a tone plays";
    }
    /// What standard error was told since the last call.
    static std::string messages()
    {
        const std::string text = testing::internal::GetCapturedStderr();
        testing::internal::CaptureStderr();
        return text;
    }
    void set(AudioUnitParameterID parameter, float value)
    {
        AudioUnitSetParameter(&unit, parameter, kAudioUnitScope_Global, 0, value, 0);
    }
    void useCard() { player.useDevice("fake:card", card.opener()); }
    static void run(double seconds) { CFRunLoopRunInMode(kCFRunLoopDefaultMode, seconds, false); }

    CFManualClock clock;
    ToneUnit unit;
    FakeCard card;
    TonePlayer player{unit};
};

TEST_F(Player, PlaysTheToneOnceAtTheDevicesRate)
{
    useCard();
    player.play();
    EXPECT_TRUE(player.isPlaying());
    EXPECT_EQ(card.wantedRate, 44100);
    const auto samples = card.play(0.5);
    EXPECT_NEAR(samples[12], 1, 1e-6) << "a quarter of a period of 1000 Hz at 48000";
    EXPECT_NEAR(samples[36], -1, 1e-6);
    run(0.04);
    EXPECT_NEAR(player.level(), 1, 1e-4);
    EXPECT_EQ(largest(card.play(0.1)), 0) << "silence follows";
    run(0.04);
    EXPECT_FALSE(player.isPlaying());
    EXPECT_EQ(player.level(), 0);
    EXPECT_EQ(card.open, 0);
}

TEST_F(Player, FollowsWhatTheEditorDoes)
{
    useCard();
    player.play();
    card.play(0.1);
    set(kParamGain, -20);
    card.play(0.05); // the level may glide
    EXPECT_NEAR(largest(card.play(0.01)), 0.1, 1e-3);
    set(kParamLength, 0.01F);
    card.play(0.1);
    run(0.04);
    EXPECT_FALSE(player.isPlaying()) << "the tone has become shorter than what was played of it";
}

TEST_F(Player, AsksForNoMemoryWhileItRenders)
{
    useCard();
    player.play();
    std::vector<float> samples(4096);
    const std::size_t before = HeapRequests();
    card.source->render(samples);
    set(kParamWaveform, 2);
    card.source->render(samples);
    player.stop();
    const std::size_t stopped = HeapRequests();
    card.source->render(samples);
    EXPECT_EQ(HeapRequests(), stopped);
    EXPECT_EQ(stopped, before);
    run(0.04);
}

TEST_F(Player, FadesOutWhenStopped)
{
    useCard();
    player.play();
    card.play(0.1);
    player.stop();
    EXPECT_FALSE(player.isPlaying());
    const auto tail = card.play(0.02);
    for (std::size_t i = 1; i < tail.size(); ++i) // a full wave at 1000 Hz steps by 0.131 at most
        ASSERT_LT(std::abs(tail[i] - tail[i - 1]), 0.14F) << i;
    EXPECT_EQ(tail.back(), 0);
    run(0.04);
    EXPECT_EQ(card.open, 0);

    player.play(); // and again, before the first has faded out
    player.stop();
    player.play();
    EXPECT_TRUE(player.isPlaying());
    EXPECT_NEAR(card.play(0.001)[12], 1, 1e-6) << "from the start, at full level";
    player.stop();
    card.play(0.02);
    run(0.04);
}

TEST_F(Player, WithoutADeviceTheClockPlays)
{
    player.useDevice("", card.opener());
    EXPECT_EQ(messages(), "tonaro: there is no sound device; the tone plays in silence\n");
    EXPECT_EQ(player.heard(), Heard::nowhere);
    card.isThere = false;
    for (int round = 0; round < 2; ++round) { // says it once
        player.play();
        run(0.1);
        EXPECT_TRUE(player.isPlaying());
        EXPECT_NEAR(player.level(), 1, 1e-3);
        run(0.5);
        EXPECT_FALSE(player.isPlaying());
    }
    card.isThere = true;
    player.play();
    EXPECT_EQ(player.heard(), Heard::device) << "one that came meanwhile is taken";
    EXPECT_EQ(player.deviceName(), "fake:card");
}

TEST_F(Player, MutedItLooksForNoDevice)
{
    player.mute();
    EXPECT_EQ(player.heard(), Heard::muted);
    player.play();
    run(0.1);
    EXPECT_TRUE(player.isPlaying());
    EXPECT_GT(player.level(), 0);
    EXPECT_EQ(player.heard(), Heard::muted);
    run(0.5);
    EXPECT_FALSE(player.isPlaying());
}

TEST_F(Player, GoesOnInSilenceWhenTheDeviceDisappears)
{
    const struct {
        const char* why;
        bool isThere;
        double seconds; ///< until it is noticed
    } kRows[] = {{"the device says so", false, 0.1}, {"it asks for no samples any more", true, 1.2}};
    set(kParamLength, 3);
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        card.isThere = true;
        useCard();
        int changes = 0;
        player.setChangeHandler([&changes] { ++changes; });
        player.play();
        card.play(0.1);
        run(0.04);
        EXPECT_EQ(player.heard(), Heard::device);
        card.isThere = row.isThere;
        run(row.seconds);
        EXPECT_EQ(card.source, nullptr) << "nobody plays there any more";
        EXPECT_EQ(messages(), "tonaro: the sound device “fake:card” is gone; the tone goes on in silence\n");
        EXPECT_EQ(player.heard(), Heard::nowhere);
        EXPECT_TRUE(player.isPlaying());
        EXPECT_NEAR(player.level(), 1, 1e-3);
        EXPECT_GT(changes, 2);
        run(3);
        EXPECT_FALSE(player.isPlaying()) << "where the tone ends";
        player.setChangeHandler(nullptr);
    }
}

TEST_F(Player, AProgramThatWasStoppedForAWhileStillHasItsDevice)
{
    set(kParamLength, 60);
    const std::function<void()> kRows[] = {[this] { player.mute(); }, [this] { useCard(); }};
    for (const auto& choose : kRows) {
        choose();
        const Heard heard = player.heard();
        player.play();
        card.play(0.1);
        run(0.063); // so that the next look comes before the clock plays on
        clock.advance(5);
        run(0.005);
        card.play(0.1);
        run(0.1);
        EXPECT_EQ(player.heard(), heard);
        EXPECT_NEAR(player.level(), 1, 0.01);
    }
}

TEST_F(Player, TellsThatADeviceCantBeOpened)
{
    useCard();
    card.isThere = false;
    player.play();
    EXPECT_EQ(messages(), "tonaro: the sound device can't be opened; the tone plays in silence\n");
    EXPECT_TRUE(player.isPlaying());
    player.stop();
    run(0.1);
}

/// The strip in a window.
struct Strip : testing::Test {
    Strip() : window(session.openEditor(1))
    {
        window->orderFront();
        session.player().mute();
        SessionScene::run();
        find(*window->contentView());
    }
    void find(NSView& view)
    {
        if (auto* found = asKind<LevelMeter>(&view)) meter = found;
        if (auto* found = asKind<NSButton>(&view); found && found->action() == std::string_view("playOrStop:"))
            button = found;
        for (const auto& subview : view.subviews()) find(*subview);
    }
    std::string title() const { return button->title()->utf8(); }

    const SessionScene scene;
    Session session{{}};
    NSWindow* window;
    LevelMeter* meter = nullptr;
    NSButton* button = nullptr;
};

TEST_F(Strip, PlaysAndStopsAndShowsTheLevel)
{
    ASSERT_TRUE(button && meter);
    EXPECT_EQ(title(), "Play");
    EXPECT_FALSE(window->needsDisplay());
    button->performClick(nullptr);
    EXPECT_EQ(title(), "Stop");
    window->displayIfNeeded();
    SessionScene::run(0.1);
    const NSRect strip = button->superview()->convertRectToWindow(button->superview()->bounds());
    EXPECT_EQ(strip.origin.y, 0);
    EXPECT_EQ(session.editor(0)->frame().origin.y, strip.size.height) << "above the editor";
    button->performClick(nullptr);
    EXPECT_EQ(title(), "Play");
    SessionScene::run(0.1);
    EXPECT_EQ(session.player().level(), 0);
    button->performClick(nullptr);
    SessionScene::run(3); // longer than the tone
    EXPECT_EQ(title(), "Play");
}

TEST_F(Strip, IsReachedByKeyboardAfterTheEditor)
{
    window->selectPreviousKeyView();
    EXPECT_EQ(window->firstResponder(), button);
    const auto space = NSString::string(" ");
    window->sendEvent(
        *NSEvent::keyEvent(NSKeyDown, 0, CFAbsoluteTimeGetCurrent(), window, space.get(), space.get(), false));
    EXPECT_TRUE(session.player().isPlaying());
}

TEST_F(Strip, AllWindowsShowTheSame)
{
    NSWindow* const second = session.openEditor(1);
    button->performClick(nullptr);
    button = nullptr;
    find(*second->contentView());
    ASSERT_TRUE(button);
    EXPECT_EQ(title(), "Stop");
    second->close();
    SessionScene::run(0.1); // goes on with the window that is left
    EXPECT_TRUE(session.player().isPlaying());
}

TEST_F(Strip, NothingHappensWhileNothingPlays)
{
    const auto waits = [] { return CFRunLoopRunInMode(kCFRunLoopDefaultMode, 10, true); };
    EXPECT_NE(waits(), kCFRunLoopRunHandledSource);
    button->performClick(nullptr);
    EXPECT_EQ(waits(), kCFRunLoopRunHandledSource);
    SessionScene::run(3);
    EXPECT_NE(waits(), kCFRunLoopRunHandledSource);
}

TEST(LevelMeter, HasADecibelScale)
{
    const SessionScene scene;
    const auto meter = make<LevelMeter>(CGRectMake(0, 0, 320, 40));
    const struct {
        float level;
        double end;
    } kRows[] = {{0, 0}, {0.0005F, 0}, {0.001F, 10}, {0.0316228F, 160}, {1, 310}, {1.2F, 317.918}, {100, 320}};
    for (const auto& row : kRows) EXPECT_NEAR(meter->barEnd(row.level), row.end, 0.001) << row.level;
}

} // namespace
