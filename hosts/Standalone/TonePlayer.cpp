#include "Standalone/TonePlayer.h"

#include "Standalone/SilentOutput.h"

#include <cstdio>

namespace {

constexpr CFTimeInterval kLookInterval = 1.0 / 30;
/// So many looks in a row without a sample, and the device counts as gone. Not a time: in a program that was stopped
/// for a while the device stood still, too.
constexpr int kStandstillLooks = 30;
constexpr float kFall = 0.8F; ///< of the level from one look to the next, at most

void say(const std::string& message) { std::fprintf(stderr, "tonaro: %s\n", message.c_str()); }

} // namespace

TonePlayer::~TonePlayer()
{
    mChanged = nullptr;
    finish();
}

void TonePlayer::mute()
{
    mOpen = nullptr;
    mHeard = Heard::muted;
    tell();
}

void TonePlayer::useDevice(std::string name, SoundOpener open)
{
    mOpen = std::move(open);
    mDeviceName = std::move(name);
    mHeard = mDeviceName.empty() ? Heard::nowhere : Heard::device;
    if (mHeard == Heard::nowhere) say("there is no sound device; the tone plays in silence");
    tell();
}

void TonePlayer::play()
{
    finish();
    openOutput();
    mStream.begin(mOutput->sampleRate());
    mSeenPosition = 0;
    mStillLooks = 0;
    mOutput->start(mStream);
    mTimer = CFRunLoopTimerCreate(CFAbsoluteTimeGetCurrent() + kLookInterval, kLookInterval, [this] { look(); });
    CFRunLoopAddTimer(CFRunLoopGetCurrent(), mTimer.get(), kCFRunLoopCommonModes);
    tell();
}

void TonePlayer::openOutput()
{
    const double unitRate = mStream.unit().settings().sampleRate;
    const double rate = unitRate > 0 ? unitRate : kToneDefaultSampleRate;
    if (mOpen) mOutput = mOpen(rate);
    if (mOutput) {
        mDeviceName = mOutput->name();
        mHeard = Heard::device;
        return;
    }
    if (mHeard == Heard::device) say("the sound device can't be opened; the tone plays in silence");
    if (mOpen) mHeard = Heard::nowhere;
    mOutput = std::make_unique<SilentOutput>(rate);
}

void TonePlayer::stop()
{
    mStream.fadeOut();
    mStops = true;
    tell();
}

void TonePlayer::look()
{
    const RetainPtr<CFRunLoopTimer> keep = mTimer; // its callback is this call
    const std::uint64_t position = mStream.position();
    ++mStillLooks;
    if (position != mSeenPosition) { // a device that asks for much at a time has nothing new at every look
        mLevel = std::max(mStream.takePeak(), mLevel * kFall);
        mSeenPosition = position;
        mStillLooks = 0;
    }
    if (!mOutput->isAlive() || mStillLooks > kStandstillLooks) goOnInSilence();
    if (mStream.isOver()) finish();
    tell();
}

void TonePlayer::goOnInSilence()
{
    const double rate = mOutput->sampleRate();
    mOutput.reset(); // nobody renders any more
    say("the sound device “" + mDeviceName + "” is gone; the tone goes on in silence");
    mHeard = Heard::nowhere;
    mStillLooks = 0;
    mOutput = std::make_unique<SilentOutput>(rate);
    mOutput->start(mStream);
}

void TonePlayer::finish()
{
    CFRunLoopTimerInvalidate(mTimer.get());
    mTimer = nullptr;
    mOutput.reset();
    mStops = false;
    mLevel = 0;
}

void TonePlayer::tell() const
{
    if (mChanged) mChanged();
}
