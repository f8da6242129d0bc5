#include "SliderRig.h"

#include "Foundation/NSKeyValueBinding.h"
#include "Slider/ZeFrequencySlider.h"
#include "Slider/ZeGainFader.h"

#include <cmath>

namespace {

constexpr NSRect kFrame{{0, 0}, {200, 20}};

/// Logs the announcements of one key.
class KeyObserver : public NSObject {
public:
    void observeValueForKeyPath(const NSString* keyPath, NSObject* object, void*) override
    {
        log.add(keyPath->utf8(), asKind<NSNumber>(object->valueForKey(keyPath).get())->doubleValue());
    }
    Log log;
};

/// Holds the only reference to a slider, and lets go of it when it hears of a change.
template <typename Slider> class LastOwner : public NSObject {
public:
    LastOwner* listeningTo(const char* key, Log& log)
    {
        slider->setMinValue(-120);
        target->log = &log;
        slider->setTarget(target);
        slider->setAction("changed:");
        slider->addObserverForKeyPath(this, NSString::string(key).get(), nullptr);
        return this;
    }
    void observeValueForKeyPath(const NSString*, NSObject*, void*) override { slider.reset(); }

    RetainPtr<LoggingTarget> target = make<LoggingTarget>();
    RetainPtr<Slider> slider = make<Slider>(kFrame);
};

/// A slider of its own, what it sends, and what it announces of a key.
template <typename Slider> struct Rig {
    explicit Rig(const char* key = "value")
    {
        target->log = &sent;
        slider->setTarget(target);
        slider->setAction("changed:");
        slider->addObserverForKeyPath(observer, NSString::string(key).get(), nullptr);
    }
    void press(unichar key) const
    {
        const auto characters = NSString::string(std::u16string(1, key));
        slider->keyDown(*NSEvent::keyEvent(NSKeyDown, 0, 0, nullptr, characters, characters, false));
    }

    const NSAutoreleasePool pool;
    Log sent;
    RetainPtr<LoggingTarget> target = make<LoggingTarget>();
    RetainPtr<KeyObserver> observer = make<KeyObserver>();
    RetainPtr<Slider> slider = make<Slider>(kFrame);
};

TEST(ZeFrequencySlider, PlacesHertzOnTheMelScale)
{
    const struct {
        double hz, mel, tolerance;
    } kRows[] = {{0, 0, 0},
                 {20, 31.748, 0.001},
                 {700, 2595 * std::log10(2.0), 1e-9},
                 {1000, 999.99, 0.01},
                 {20000, 3816.91, 0.01}};
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.hz);
        EXPECT_NEAR(MelFromHz(row.hz), row.mel, row.tolerance);
        EXPECT_NEAR(HzFromMel(MelFromHz(row.hz)), row.hz, 1e-9);
    }
}

TEST(ZeFrequencySlider, StartsAtTheAudibleRangeWithStepsInHertz)
{
    const Rig<ZeFrequencySlider> rig;
    rig.slider->setFreqValue(1000);
    for (const auto& [key, hz] : {std::pair(NSUpArrowFunctionKey, 1001),
                                  {NSPageDownFunctionKey, 901},
                                  {NSHomeFunctionKey, 20000},
                                  {NSEndFunctionKey, 20}}) {
        rig.press(key);
        EXPECT_NEAR(rig.slider->freqValue(), hz, 1e-6);
    }
}

TEST(ZeFrequencySlider, SendsItsActionOnceForANewFrequencyAndAnnouncesEach)
{
    Rig<ZeFrequencySlider> rig("freqValue");
    rig.slider->setFreqValue(440);
    EXPECT_EQ(rig.sent.take(), "action(549.639)");
    EXPECT_EQ(rig.observer->log.take(), "freqValue(440)");
    rig.slider->setFreqValue(440);
    EXPECT_EQ(rig.sent.take(), "");
    EXPECT_EQ(rig.observer->log.take(), "freqValue(440)");
}

TEST(ZeFrequencySlider, KeepsTheNeighboursOfItsEndsSoThatEchoesDieOut)
{
    // what a unit answers is the nearest 32-bit float, which may lie outside the range by a hair
    Rig<ZeFrequencySlider> rig;
    const auto& slider = rig.slider;
    for (const double rate :
         {8000.0, 11025.0, 22050.0, 44100.0, 44101.3, 48000.0, 88200.0, 96000.0, 176400.0, 192000.0, 384000.0}) {
        SCOPED_TRACE(rate);
        slider->setMinFreqValue(0.01);
        slider->setMaxFreqValue(rate / 2);
        for (const double end : {0.01, rate / 2}) {
            slider->setFreqValue(end);
            const float held = static_cast<float>(slider->freqValue());
            slider->setFreqValue(double{held});
            rig.sent.take();
            EXPECT_EQ(static_cast<float>(slider->freqValue()), held);
            slider->setFreqValue(double{held});
            EXPECT_EQ(rig.sent.take(), "") << "the second echo changes nothing";
        }
    }
}

TEST(ZeScaledSlider, SendsItsActionAlthoughAnObserverLetsGoOfIt)
{
    const NSAutoreleasePool pool;
    Log log;
    const auto frequency = make<LastOwner<ZeFrequencySlider>>();
    frequency->listeningTo("freqValue", log)->slider->setFreqValue(440);
    EXPECT_EQ(log.take(), "action(549.639)");
    const auto gain = make<LastOwner<ZeGainFader>>();
    gain->listeningTo("gainRatio", log)->slider->setBoundObjectValue(-20);
    EXPECT_EQ(log.take(), "action(-20)");
    gain->slider = make<ZeGainFader>(kFrame);
    gain->listeningTo("gainRatio", log)->slider->setGainRatio(0);
    EXPECT_EQ(log.take(), "action(-120)") << "the fader holds its minimum where minus infinity was asked for";
    EXPECT_FALSE(frequency->slider || gain->slider);
}

TEST(ZeGainFader, IsExactlySilentAtItsFirstMinimum)
{
    const NSAutoreleasePool pool;
    const auto fader = make<ZeGainFader>(kFrame);
    fader->setMinValue(-120);
    fader->setMaxValue(20);
    fader->sliderInit();
    fader->setMinValue(-140);
    EXPECT_EQ(fader->minusInfinity(), -120);
    for (const auto& [decibels, ratio] :
         {std::pair(-130.0, 0.0), {-120, 0}, {-119, std::pow(10.0, -119 / 20.0)}, {0, 1}, {20, 10}}) {
        fader->setDoubleValue(decibels);
        EXPECT_EQ(fader->gainRatio(), ratio) << decibels;
    }
}

TEST(ZeGainFader, StepsByOneAndSixDecibels)
{
    const Rig<ZeGainFader> rig;
    rig.slider->setMinValue(-120);
    rig.slider->setDoubleValue(-30);
    rig.press(NSUpArrowFunctionKey);
    EXPECT_EQ(rig.slider->doubleValue(), -29);
    rig.press(NSPageUpFunctionKey);
    EXPECT_EQ(rig.slider->doubleValue(), -23);
}

TEST(ZeGainFader, ARatioMovesTheFaderAndItsModel)
{
    Rig<ZeGainFader> rig("gainRatio");
    const auto& fader = rig.slider;
    fader->setMinValue(-120);
    fader->setMaxValue(20);
    fader->setMinusInfinity(-120);
    rig.observer->log.take();

    fader->setGainRatio(1.0);
    EXPECT_EQ(fader->doubleValue(), 0);
    EXPECT_EQ(rig.sent.take(), "");
    EXPECT_EQ(rig.observer->log.take(), "gainRatio(1) gainRatio(1)");

    fader->setGainRatio(0.3);
    EXPECT_EQ(fader->doubleValue(), double{20.0F * std::log10(0.3F)}) << "computed in 32-bit floats";

    const auto model = make<LevelModel>();
    fader->bind(NSValueBinding, model, NSString::string("level").get());
    fader->setGainRatio(0.0);
    EXPECT_EQ(model->level(), -120);
}

} // namespace
