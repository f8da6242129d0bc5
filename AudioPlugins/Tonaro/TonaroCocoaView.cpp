#include "TonaroCocoaView.h"

#include "AppKit/NSGraphicsContext.h"
#include "AppKit/NSImage.h"
#include "AppKit/NSWindow.h"
#include "Foundation/NSAssertionHandler.h"
#include "Foundation/NSBundle.h"
#include "Foundation/NSNumberFormatter.h"
#include "PosFmt.h"
#include "TonaroUnitFollower.h"
#include "TonaroUnitListener.h"

namespace {

constexpr const char* kBackgroundImage = "PluginPattern";
constexpr double kLowestGainDecibels = -120.0;

constexpr const char* kCreateFailed = "[TonaroCocoaView _addListeners] AUEventListenerCreate()";
constexpr const char* kAddFailed = "[TonaroCocoaView _addListeners] AUEventListenerAddEventType()";
constexpr const char* kDisposeFailed = "[TonaroCocoaView _removeListeners] AUListenerDispose()";

/// The properties whose changes the view registers for.
constexpr AudioUnitPropertyID kWatchedProperties[] = {kAudioUnitProperty_SampleRate, kPropertyInputLength};

/// The views that follow the unit on their own.
void bindViewsInside(const NSView& view, AudioUnit unit)
{
    for (const RetainPtr<NSView>& inside : view.subviews()) {
        if (auto* follower = dynamic_cast<TonaroUnitFollower*>(inside.get())) follower->setAU(unit);
        bindViewsInside(*inside, unit);
    }
}

} // namespace

NS_CLASS_TABLE(TonaroCocoaView, NSView, kTonaroViewBundleIdentifier)
    .outlet("mWaveformPopup", &TonaroCocoaView::mWaveformPopup)
        .outlet("mStartFrequencyText", &TonaroCocoaView::mStartFrequencyText)
        .outlet("mEndFrequencyText", &TonaroCocoaView::mEndFrequencyText)
        .outlet("mLogSweepCheckbox", &TonaroCocoaView::mLogSweepCheckbox)
        .outlet("mGainSlider", &TonaroCocoaView::mGainSlider)
        .outlet("mGainText", &TonaroCocoaView::mGainText)
        .outlet("mEndFreqRangeText", &TonaroCocoaView::mEndFreqRangeText)
        .outlet("mStartFreqRangeText", &TonaroCocoaView::mStartFreqRangeText)
        .outlet("mLengthStepper", &TonaroCocoaView::mLengthStepper)
        .outlet("mLengthText", &TonaroCocoaView::mLengthText)
        .outlet("mEndFrequencySlider", &TonaroCocoaView::mEndFrequencySlider)
        .outlet("mStartFrequencySlider", &TonaroCocoaView::mStartFrequencySlider)
        .outlet("mUseEndCheckbox", &TonaroCocoaView::mUseEndCheckbox)
        .action("onHelp:", &TonaroCocoaView::onHelp)
        .action("waveformChanged:", &TonaroCocoaView::waveformChanged)
        .action("gainChanged:", &TonaroCocoaView::gainChanged)
        .action("startFrequencyChanged:", &TonaroCocoaView::startFrequencyChanged)
        .action("endFrequencyChanged:", &TonaroCocoaView::endFrequencyChanged)
        .action("startFrequencySliderChanged:", &TonaroCocoaView::startFrequencySliderChanged)
        .action("endFrequencySliderChanged:", &TonaroCocoaView::endFrequencySliderChanged)
        .action("logSweepChanged:", &TonaroCocoaView::logSweepChanged)
        .action("useEndCheckboxChanged:", &TonaroCocoaView::useEndCheckboxChanged)
        .action("lengthChanged:", &TonaroCocoaView::lengthChanged)
        .action("lengthStepperChanged:", &TonaroCocoaView::lengthStepperChanged)
NS_CLASS_TABLE_END

void EventListenerDispatcher(void* userData, void* object, const AudioUnitEvent* event, std::uint64_t, float value)
{
    const RetainPtr<TonaroCocoaView> view(static_cast<TonaroCocoaView*>(userData)); // an edit may close its window
    view->_eventListener(object, event, value);
}

void TonaroCocoaView::awakeFromNib()
{
    const NSBundle* bundle = NSBundle::bundleForClass(classTable());
    std::string path = bundle->pathForImageResource(kBackgroundImage);
    // a missing picture is named in the log with the place where it should be
    if (path.empty()) path = bundle->resourcePath() + "/" + kBackgroundImage + ".png";
    const auto image = make<NSImage>(&NSImage::initByReferencingFile, NSString::string(path).get());
    mBackgroundColor = NSColor::colorWithPatternImage(image);
}

void TonaroCocoaView::drawRect(NSRect dirty)
{
    if (mBackgroundColor) mBackgroundColor->set();
    NSRectFill(dirty);
}

NSRect TonaroCocoaView::opaqueRect() const
{
    const CGFloat scale = window() ? window()->backingScaleFactor() : 1;
    return mBackgroundColor && mBackgroundColor->isOpaqueForScale(scale) ? bounds() : NSRect{};
}

bool TonaroCocoaView::performKeyEquivalent(NSEvent& event)
{
    const RetainPtr<TonaroCocoaView> keep(this);
    return (mEditing && mEditing->performKey(event)) || NSView::performKeyEquivalent(event);
}

void TonaroCocoaView::setAU(AudioUnit unit)
{
    const RetainPtr<TonaroCocoaView> keep(this); // what the unit is asked and told may close the window
    if (isBound()) _removeListeners();
    mAU = unit;
    mLengthText.call(&ZeTimeTextField::setFormat, unsigned{QVPOSFMT_TIME});
    mLengthText.call(&ZeTimeTextField::setIsLength, true);
    mGainSlider.call(&NSSlider::setMinValue, kLowestGainDecibels);
    if (auto* formatter = asKind<NSNumberFormatter>(mGainText.call(&NSControl::formatter)))
        formatter->setNegativeInfinitySymbol(NSString::string("-Inf").get());
    _addListeners();
    _synchronizeUIWithAU();
    mEditing = std::make_unique<TonaroEditing>(*this, unit);
    bindViewsInside(*this, unit);
}

void TonaroCocoaView::_addListeners()
{
    report(AUEventListenerCreate(EventListenerDispatcher, this, CFRunLoopGetCurrent(), kCFRunLoopCommonModes,
                                 kTonaroListenerSeconds, kTonaroListenerSeconds, &mEventListener),
           __func__, kCreateFailed);

    std::array<AudioUnitParameterID, kParamCount> parameterIDs{};
    AudioUnitEvent event{};
    event.mEventType = kAudioUnitEvent_ParameterValueChange;
    for (AudioUnitParameterID id = 0; id < kParamCount; ++id) {
        parameterIDs[id] = id;
        mParameter[id] = {mAU, id, kAudioUnitScope_Global, 0};
        event.mArgument.mParameter = mParameter[id];
        report(AUEventListenerAddEventType(mEventListener, this, &event), __func__, kAddFailed);
    }
    event.mEventType = kAudioUnitEvent_PropertyChange;
    for (const AudioUnitPropertyID property : kWatchedProperties) {
        event.mArgument.mProperty = {mAU, property, kAudioUnitScope_Global, 0};
        report(AUEventListenerAddEventType(mEventListener, this, &event), __func__, kAddFailed);
    }

    mParamSetter = make<ZeParameterSetter>(&ZeParameterSetter::initWithAudioUnit, mAU, mEventListener,
                                           parameterIDs.data(), unsigned{kParamCount});
    mParamSetter->addZeSlider(mGainSlider, kParamGain);
    mParamSetter->addZeSlider(mStartFrequencySlider, kParamStartFrequency);
    mParamSetter->addZeSlider(mEndFrequencySlider, kParamEndFrequency);
}

void TonaroCocoaView::_removeListeners()
{
    // a drag that goes on ends here, while its gesture can still reach the unit at which it began
    if (window()) window()->endTracking(this);

    mEditing.reset();
    const AUEventListenerRef listener = std::exchange(mEventListener, nullptr);
    const RetainPtr<ZeParameterSetter> setter = std::move(mParamSetter);
    report(AUListenerDispose(listener), __func__, kDisposeFailed);
}

void TonaroCocoaView::dealloc()
{
    if (isBound()) _removeListeners();
    mBackgroundColor.reset();
    NSView::dealloc();
}

void TonaroCocoaView::report(OSStatus status, SEL method, const char* message, std::source_location where)
{
    if (status == noErr) return;
    NSAssertionHandler::currentHandler()->handleFailureInMethod(
        method, this, where.file_name(), static_cast<int>(where.line()), NSString::string(message).get());
}
