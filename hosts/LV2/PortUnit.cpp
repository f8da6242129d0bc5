#include "LV2/PortUnit.h"

#include "AudioUnit/AUEventListener.h"

#include <cmath>
#include <cstring>
#include <limits>

namespace {

constexpr CFAbsoluteTime kNever = std::numeric_limits<CFAbsoluteTime>::infinity();

} // namespace

PortUnit::PortUnit(PortHost& host, double sampleRateHz) : mHost(host), mTone(sampleRateHz)
{
    for (const ToneParameterFacts& facts : kToneParameters)
        mPorts[facts.id].held = fitting(facts.id, facts.defaultValue);
    mTimer = CFRunLoopTimerCreate(kNever, kNever, [this] { settle(); });
    CFRunLoopAddTimer(CFRunLoopGetCurrent(), mTimer, kCFRunLoopCommonModes);
}

PortUnit::~PortUnit()
{
    close();
    CFRunLoopTimerInvalidate(mTimer);
}

void PortUnit::close()
{
    for (const ToneParameterFacts& facts : kToneParameters) {
        mPorts[facts.id].gestures = 0;
        endEdit(facts.id);
    }
    setTimer();
}

float PortUnit::fitting(AudioUnitParameterID parameter, float value) const
{
    const ToneParameterFacts& facts = kToneParameters[parameter];
    const float held = HeldValue(facts, value, mTone.settings().sampleRate);
    return facts.unit == kAudioUnitParameterUnit_Hertz ? std::min(held, kTonaroHighestPortHz) : held;
}

// --- from the host

void PortUnit::portChanged(AudioUnitParameterID port, float value)
{
    if (!FindToneParameter(port) || std::isnan(value)) return;
    Port& changed = mPorts[port];
    if (changed.echoes.take(value, CFAbsoluteTimeGetCurrent())) {
        changed.waiting.reset(); // what the host said before that, our write has replaced there too
        if (changed.echoes.isEmpty() && !changed.isEdited()) show(port, fitting(port, value));
    } else if (changed.isEdited()) {
        changed.waiting = fitting(port, value);
    } else {
        show(port, fitting(port, value));
    }
    setTimer();
}

void PortUnit::show(AudioUnitParameterID parameter, float value)
{
    if (std::exchange(mPorts[parameter].held, value) == value) return;
    const AudioUnitParameter changed{this, parameter, kAudioUnitScope_Global, 0};
    const AudioUnitEvent event{kAudioUnitEvent_ParameterValueChange, {.mParameter = changed}};
    AUEventListenerNotify(nullptr, nullptr, &event);
}

void PortUnit::timeFormatChanged(std::uint32_t format) { changeTimeFormat(format); }

/// @return whether that is another one, and a format
bool PortUnit::changeTimeFormat(std::uint32_t format)
{
    std::uint32_t held = 0, size = sizeof held;
    mTone.GetProperty(kPropertyTimeFormat, kAudioUnitScope_Global, 0, &held, &size);
    if (format == held || format >= kTonaroTimeFormats) return false;
    mTone.SetProperty(kPropertyTimeFormat, kAudioUnitScope_Global, 0, &format, sizeof format);
    const AudioUnitProperty changed{this, kPropertyTimeFormat, kAudioUnitScope_Global, 0};
    const AudioUnitEvent event{kAudioUnitEvent_PropertyChange, {.mProperty = changed}};
    AUEventListenerNotify(nullptr, nullptr, &event);
    return true;
}

// --- from the editor

OSStatus PortUnit::GetProperty(AudioUnitPropertyID property, AudioUnitScope scope, AudioUnitElement element,
                               void* outData, std::uint32_t* ioDataSize)
{
    return mTone.GetProperty(property, scope, element, outData, ioDataSize);
}

OSStatus PortUnit::SetProperty(AudioUnitPropertyID property, AudioUnitScope scope, AudioUnitElement element,
                               const void* data, std::uint32_t dataSize)
{
    if (property != kPropertyTimeFormat) return kAudioUnitErr_PropertyNotWritable;
    if (scope != kAudioUnitScope_Global || element != 0) return kAudioUnitErr_InvalidElement;
    std::uint32_t format = 0;
    if (!data || dataSize != sizeof format) return kAudioUnitErr_InvalidPropertyValue;
    std::memcpy(&format, data, sizeof format);
    if (format >= kTonaroTimeFormats) return kAudioUnitErr_InvalidPropertyValue;
    if (changeTimeFormat(format)) mHost.writeTimeFormat(format);
    return noErr;
}

OSStatus PortUnit::GetParameter(AudioUnitParameterID parameter, AudioUnitScope scope, AudioUnitElement element,
                                AudioUnitParameterValue* outValue)
{
    const OSStatus status = mTone.GetParameter(parameter, scope, element, outValue);
    if (status == noErr) *outValue = mPorts[parameter].held;
    return status;
}

OSStatus PortUnit::SetParameter(AudioUnitParameterID parameter, AudioUnitScope scope, AudioUnitElement element,
                                AudioUnitParameterValue value, std::uint32_t)
{
    float held = 0;
    if (const OSStatus status = GetParameter(parameter, scope, element, &held)) return status;
    if (std::isnan(value)) return kAudioUnitErr_InvalidPropertyValue;
    const float written = fitting(parameter, value);
    if (written == held) return noErr;

    const CFAbsoluteTime now = CFAbsoluteTimeGetCurrent();
    Port& port = mPorts[parameter];
    port.held = written;
    port.waiting.reset();
    port.echoes.wrote(written, now); // before the host hears of it: it may report at once
    port.closesAt = now + kPauseSeconds;
    if (!std::exchange(port.isTouched, true)) mHost.touchPort(parameter, true);
    mHost.writePort(parameter, written);
    setTimer();
    return noErr;
}

void PortUnit::ParameterGesture(AudioUnitParameterID parameter, AudioUnitScope, AudioUnitElement, bool begins)
{
    if (!FindToneParameter(parameter)) return;
    Port& port = mPorts[parameter];
    if (begins)
        ++port.gestures;
    else if (port.gestures > 0 && --port.gestures == 0)
        endEdit(parameter);
    setTimer();
}

// --- touches

void PortUnit::endEdit(AudioUnitParameterID parameter)
{
    Port& port = mPorts[parameter];
    if (std::exchange(port.isTouched, false)) mHost.touchPort(parameter, false);
    if (const auto waiting = std::exchange(port.waiting, std::nullopt)) show(parameter, *waiting);
}

/// What is due: touches that a pause ends, and values that turned out to be the host's own.
void PortUnit::settle()
{
    const CFAbsoluteTime now = CFAbsoluteTimeGetCurrent();
    for (const ToneParameterFacts& facts : kToneParameters) {
        Port& port = mPorts[facts.id];
        if (port.isTouched && port.gestures == 0 && port.closesAt <= now) endEdit(facts.id);
        const auto hosts = port.echoes.settle(now);
        if (hosts && port.isEdited())
            port.waiting = fitting(facts.id, *hosts);
        else if (hosts)
            show(facts.id, fitting(facts.id, *hosts));
    }
    setTimer();
}

void PortUnit::setTimer()
{
    CFAbsoluteTime next = kNever;
    for (const Port& port : mPorts) {
        if (port.isTouched && port.gestures == 0) next = std::min(next, port.closesAt);
        next = std::min(next, port.echoes.settlesAt());
    }
    CFRunLoopTimerSetNextFireDate(mTimer, next);
}
