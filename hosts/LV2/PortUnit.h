#pragma once

/// The plug-in's ports as an audio unit: what an editor in a plug-in host is bound to.
///
/// Edits become writes of the ports, gestures become touches, and what the host reports of a port becomes an event of
/// the unit.
///
/// - A set that changes nothing writes nothing and touches nothing, so that controls may answer events with their
/// value.
/// - Every write lies inside a touch of its port. A touch begins with the first write of a gesture and ends with the
///   gesture; sets outside a gesture share one that ends `kPauseSeconds` after the last of them. So none is empty.
///   `close` ends those that are open.
/// - A report that echoes a write of ours is told to nobody. Hosts that echo and those that don't work alike.
/// - What the host reports of a port while it is edited waits until that ends, and is dropped where a later write took
///   its place.
///
/// Values are held as `HeldValue` makes them fit, and no frequency above `kTonaroHighestPortHz`. Not-a-number from
/// either side is refused or ignored.
///
/// Example: the key Up on a slider at 440 gives touch 1 on, write 1 450, and after the pause touch 1 off.

#include "LV2/PortEchoes.h"
#include "LV2/TonaroPorts.h"
#include "ToneUnit/ToneUnit.h"

/// The host's side, called on the thread of the user interface. May report back from within.
struct PortHost {
    virtual void writePort(AudioUnitParameterID port, float value) = 0;
    virtual void touchPort(AudioUnitParameterID port, bool isHeld) = 0;
    virtual void writeTimeFormat(std::uint32_t format) = 0;

protected:
    ~PortHost() = default;
};

class PortUnit final : public ComponentInstanceRecord {
public:
    static constexpr CFTimeInterval kPauseSeconds = 0.4;

    /// @param host          outlives the unit
    /// @param sampleRateHz  0 for not known
    PortUnit(PortHost& host, double sampleRateHz);
    ~PortUnit() override; ///< closes

    /// The host says what a port holds; other ports than the parameters' are ignored.
    void portChanged(AudioUnitParameterID port, float value);
    void timeFormatChanged(std::uint32_t format); ///< the host says; ignored above 20
    /// No edit can come any more.
    void close();

    OSStatus GetProperty(AudioUnitPropertyID property, AudioUnitScope scope, AudioUnitElement element, void* outData,
                         std::uint32_t* ioDataSize) override;
    /// Only the time format.
    OSStatus SetProperty(AudioUnitPropertyID property, AudioUnitScope scope, AudioUnitElement element, const void* data,
                         std::uint32_t dataSize) override;
    OSStatus GetParameter(AudioUnitParameterID parameter, AudioUnitScope scope, AudioUnitElement element,
                          AudioUnitParameterValue* outValue) override;
    OSStatus SetParameter(AudioUnitParameterID parameter, AudioUnitScope scope, AudioUnitElement element,
                          AudioUnitParameterValue value, std::uint32_t bufferOffset) override;
    void ParameterGesture(AudioUnitParameterID parameter, AudioUnitScope scope, AudioUnitElement element,
                          bool begins) override;

private:
    struct Port {
        float held = 0;
        PortEchoes echoes;
        int gestures = 0;             ///< begun and not ended
        bool isTouched = false;       ///< the host was told so
        CFAbsoluteTime closesAt = 0;  ///< end of the touch where no gesture holds it
        std::optional<float> waiting; ///< the host's value, until the edit ends
        bool isEdited() const { return isTouched || gestures > 0; }
    };

    float fitting(AudioUnitParameterID parameter, float value) const;
    void show(AudioUnitParameterID parameter, float value);
    void endEdit(AudioUnitParameterID parameter);
    void settle();
    void setTimer();
    bool changeTimeFormat(std::uint32_t format);

    PortHost& mHost;
    ToneUnit mTone; ///< the facts and the properties
    std::array<Port, kParamCount> mPorts;
    RetainPtr<CFRunLoopTimer> mTimer;
};
