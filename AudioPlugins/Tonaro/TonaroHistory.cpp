#include "TonaroHistory.h"

#include "CoreFoundation/CFRunLoop.h"
#include "Foundation/NSString.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr std::size_t kMostEdits = 200;
constexpr double kBareSeconds = 0.3; ///< from a person's event to the value that comes of it
constexpr double kTogetherSeconds = 0.7;
constexpr float kAnswerPart = 1e-5F; ///< what a slider's answer to the unit differs by at most

bool IsChange(float before, float after, bool isBare)
{
    const float size = std::max(std::abs(after), std::abs(before));
    return std::abs(after - before) > (isBare ? kAnswerPart * size : 0); // false for not-a-number
}

} // namespace

TonaroHistory::TonaroHistory(AudioUnit unit)
    : mSender(NSString::string("history")),
      mListener(unit, mSender, TonaroUnitListener::Gestures::yes,
                [this](const AudioUnitEvent& event, float value) { heard(event, value); })
{
    for (AudioUnitParameterID id = 0; id < kParamCount; ++id) mParameters[id].known = mListener.value(id);
}

void TonaroHistory::expectBareEdit(AudioUnitParameterID parameter)
{
    if (parameter < kParamCount) mParameters[parameter].bareUntil = CFAbsoluteTimeGetCurrent() + kBareSeconds;
}

void TonaroHistory::heard(const AudioUnitEvent& event, float value)
{
    const AudioUnitParameterID id = event.mArgument.mParameter.mParameterID;
    if (event.mEventType == kAudioUnitEvent_PropertyChange || id >= kParamCount) return;
    Parameter& parameter = mParameters[id];
    switch (event.mEventType) {
    case kAudioUnitEvent_BeginParameterChangeGesture:
        if (parameter.gestures++ == 0) parameter.beforeGesture = parameter.known;
        break;
    case kAudioUnitEvent_EndParameterChangeGesture:
        if (parameter.gestures == 0 || --parameter.gestures > 0) break;
        record(id, parameter.beforeGesture, false);
        parameter.bareUntil = -1;
        break;
    default:
        const float before = std::exchange(parameter.known, value);
        if (parameter.gestures == 0 && CFAbsoluteTimeGetCurrent() < parameter.bareUntil) record(id, before, true);
        break;
    }
}

void TonaroHistory::record(AudioUnitParameterID parameter, float before, bool isBare)
{
    const float after = mParameters[parameter].known;
    if (!IsChange(before, after, isBare)) return;
    mUndone.clear();
    const double now = CFAbsoluteTimeGetCurrent();
    const bool continues =
        isBare && !mDone.empty() && mDone.back().front().parameter == parameter && now - mLastBare < kTogetherSeconds;
    mLastBare = isBare ? now : -1;
    if (continues) {
        Change& change = mDone.back().front();
        change.after = after;
        if (!IsChange(change.before, after, isBare)) mDone.pop_back(); // up and down again
        return;
    }
    mDone.push_back({{parameter, before, after}});
    if (mDone.size() > kMostEdits) mDone.erase(mDone.begin());
}

void TonaroHistory::set(AudioUnitParameterID parameter, float value)
{
    mListener.begin(parameter);
    mListener.set(parameter, value);
    mListener.end(parameter);
    mParameters[parameter].known = mListener.value(parameter);
}

void TonaroHistory::apply(const std::vector<std::pair<AudioUnitParameterID, float>>& values)
{
    Edit edit;
    for (const auto& [parameter, value] : values) {
        const float before = mListener.value(parameter);
        if (before == value) continue;
        set(parameter, value);
        edit.push_back({parameter, before, mParameters[parameter].known});
    }
    if (edit.empty()) return;
    mUndone.clear();
    mDone.push_back(std::move(edit));
    mLastBare = -1;
}

bool TonaroHistory::undo() { return step(mDone, mUndone, &Change::before); }
bool TonaroHistory::redo() { return step(mUndone, mDone, &Change::after); }

bool TonaroHistory::step(std::vector<Edit>& from, std::vector<Edit>& to, float Change::*value)
{
    const bool isEdited = std::any_of(mParameters.begin(), mParameters.end(),
                                      [](const Parameter& parameter) { return parameter.gestures > 0; });
    if (from.empty() || isEdited) return false;
    const Edit edit = std::move(from.back());
    from.pop_back();
    to.push_back(edit);
    mLastBare = -1;
    for (const Change& change : edit) set(change.parameter, change.*value);
    return true;
}
