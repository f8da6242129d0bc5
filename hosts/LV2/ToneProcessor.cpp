#include "LV2/ToneProcessor.h"

#include "LV2/Atoms.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include <lv2/core/lv2_util.h>
#include <lv2/patch/patch.h>
#include <lv2/time/time.h>

ToneProcessor::Names::Names(LV2_URID_Map& map)
{
    const struct {
        LV2_URID& id;
        const char* uri;
    } kRows[] = {
        {atomInt, LV2_ATOM__Int},           {atomLong, LV2_ATOM__Long},           {atomFloat, LV2_ATOM__Float},
        {atomDouble, LV2_ATOM__Double},     {atomURID, LV2_ATOM__URID},           {patchGet, LV2_PATCH__Get},
        {patchSet, LV2_PATCH__Set},         {patchProperty, LV2_PATCH__property}, {patchValue, LV2_PATCH__value},
        {timePosition, LV2_TIME__Position}, {timeSpeed, LV2_TIME__speed},         {timeFormat, kTonaroTimeFormatURI},
    };
    for (const auto& row : kRows) row.id = map.map(map.handle, row.uri);
}

std::unique_ptr<ToneProcessor> ToneProcessor::create(double sampleRateHz, const LV2_Feature* const* features)
{
    auto* const map = static_cast<LV2_URID_Map*>(lv2_features_data(features, LV2_URID__map));
    if (!map || !IsToneSampleRate(sampleRateHz)) return nullptr;
    return std::unique_ptr<ToneProcessor>(new ToneProcessor(sampleRateHz, *map));
}

ToneProcessor::ToneProcessor(double sampleRateHz, LV2_URID_Map& map) : mSampleRate(sampleRateHz), mNames(map)
{
    lv2_atom_forge_init(&mForge, &map);
}

void ToneProcessor::connect(std::uint32_t port, void* data)
{
    if (port < kParamCount)
        mControls[port] = static_cast<const float*>(data);
    else if (port == kPortControl)
        mMessages = static_cast<const LV2_Atom_Sequence*>(data);
    else if (port == kPortNotify)
        mNotifications = static_cast<LV2_Atom_Sequence*>(data);
    else if (port < kPortCount)
        mOutputs[port - kPortLeft] = static_cast<float*>(data);
}

void ToneProcessor::run(std::uint32_t frames)
{
    readMessages();
    writeNotifications();
    float* const first = mOutputs[0] ? mOutputs[0] : mOutputs[1];
    if (!first) return;
    mRenderer.render(settings(), {first, frames});
    if (mOutputs[1] && mOutputs[1] != first) std::copy_n(first, frames, mOutputs[1]);
}

ToneSettings ToneProcessor::settings() const
{
    std::array<float, kParamCount> held{};
    for (const ToneParameterFacts& facts : kToneParameters) {
        const float asked = mControls[facts.id] ? *mControls[facts.id] : facts.defaultValue;
        held[facts.id] = HeldValue(facts, std::isnan(asked) ? facts.defaultValue : asked, mSampleRate);
    }
    ToneSettings settings = ToneSettingsOf(held, mSampleRate);
    settings.repeats = true;
    return settings;
}

// --- messages

void ToneProcessor::readMessages()
{
    if (!mMessages) return;
    ForEachEvent(*mMessages, [this](const LV2_Atom& event) {
        if (lv2_atom_forge_is_object_type(&mForge, event.type) && HoldsObject(event))
            readMessage(*reinterpret_cast<const LV2_Atom_Object*>(&event));
    });
}

void ToneProcessor::readMessage(const LV2_Atom_Object& message)
{
    if (message.body.otype == mNames.timePosition) return followTransport(message);
    const bool isGet = message.body.otype == mNames.patchGet;
    if (!isGet && message.body.otype != mNames.patchSet) return;
    const LV2_Atom* const property = PropertyOf(message, mNames.patchProperty);
    const LV2_Atom* const value = PropertyOf(message, mNames.patchValue);
    const bool isOurs = property && AtomContent<LV2_URID>(*property, mNames.atomURID) == mNames.timeFormat;
    if (isGet && (isOurs || !property)) mTellsTimeFormat = true; // without a property it asks for everything
    if (!isGet && isOurs && value) setTimeFormat(*value);
}

std::optional<double> ToneProcessor::number(const LV2_Atom* atom) const
{
    if (!atom) return std::nullopt;
    if (const auto whole = AtomContent<std::int32_t>(*atom, mNames.atomInt)) return *whole;
    if (const auto whole = AtomContent<std::int64_t>(*atom, mNames.atomLong)) return static_cast<double>(*whole);
    if (const auto real = AtomContent<float>(*atom, mNames.atomFloat)) return double{*real};
    return AtomContent<double>(*atom, mNames.atomDouble);
}

void ToneProcessor::setTimeFormat(const LV2_Atom& format)
{
    const std::optional<double> asked = number(&format);
    if (!asked || !(*asked >= 0.0 && *asked < kTonaroTimeFormats)) return;
    mTimeFormat = static_cast<std::uint32_t>(*asked);
    mTellsTimeFormat = true;
}

void ToneProcessor::followTransport(const LV2_Atom_Object& position)
{
    const std::optional<double> asked = number(PropertyOf(position, mNames.timeSpeed));
    if (!asked) return;
    const bool rolls = *asked != 0.0;
    if (rolls && !mRolls) mRenderer.startOver();
    mRolls = rolls;
}

/// The sequence is the host's buffer: its size says on entry how much fits.
void ToneProcessor::writeNotifications()
{
    if (!mNotifications) return;
    const std::uint32_t room = mNotifications->atom.size;
    lv2_atom_forge_set_buffer(&mForge, reinterpret_cast<std::uint8_t*>(mNotifications), room);
    LV2_Atom_Forge_Frame sequence;
    if (!lv2_atom_forge_sequence_head(&mForge, &sequence, 0)) return;
    constexpr std::uint32_t kMessageBytes = 128; // more than the one message takes
    if (room >= sizeof(LV2_Atom_Sequence) + kMessageBytes && mTellsTimeFormat.exchange(false)) {
        LV2_Atom_Forge_Frame object;
        lv2_atom_forge_frame_time(&mForge, 0);
        lv2_atom_forge_object(&mForge, &object, 0, mNames.patchSet);
        lv2_atom_forge_key(&mForge, mNames.patchProperty);
        lv2_atom_forge_urid(&mForge, mNames.timeFormat);
        lv2_atom_forge_key(&mForge, mNames.patchValue);
        lv2_atom_forge_int(&mForge, static_cast<std::int32_t>(mTimeFormat.load()));
        lv2_atom_forge_pop(&mForge, &object);
    }
    lv2_atom_forge_pop(&mForge, &sequence);
}

// --- state

LV2_State_Status ToneProcessor::save(LV2_State_Store_Function store, LV2_State_Handle handle) const
{
    const auto format = static_cast<std::int32_t>(mTimeFormat.load());
    return store(handle, mNames.timeFormat, &format, sizeof format, mNames.atomInt,
                 LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE);
}

LV2_State_Status ToneProcessor::restore(LV2_State_Retrieve_Function retrieve, LV2_State_Handle handle)
{
    std::size_t size = 0;
    std::uint32_t type = 0, flags = 0;
    const void* const data = retrieve(handle, mNames.timeFormat, &size, &type, &flags);
    std::int32_t format = std::int32_t{kTonaroDefaultFormat}; // also of a state from before there were formats
    if (data && (type != mNames.atomInt || size != sizeof format)) return LV2_STATE_ERR_BAD_TYPE;
    if (data) std::memcpy(&format, data, sizeof format);
    if (format < 0 || format >= std::int32_t{kTonaroTimeFormats}) return LV2_STATE_ERR_UNKNOWN;
    mTimeFormat = static_cast<std::uint32_t>(format);
    mTellsTimeFormat = true;
    return LV2_STATE_SUCCESS;
}
