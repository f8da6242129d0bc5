#pragma once

/// The edits of a unit, to be taken back and made again.
///
/// An edit is a whole gesture, whoever made it, or what a slider sends without one, by a key, the wheel or a double
/// click: those of one parameter that follow each other within 0.7 s are one edit. Automation is none. Taking back is a
/// gesture of its own, which the editor hears of.
///
/// Sequence: 440 -> drag to 1000 -> type 2000; undo: 1000, undo: 440, redo: 1000.

#include "TonaroUnitListener.h"

#include <array>
#include <vector>

class TonaroHistory {
public:
    struct Change {
        AudioUnitParameterID parameter;
        float before, after;
    };
    using Edit = std::vector<Change>;

    explicit TonaroHistory(AudioUnit unit);

    /// The person's event that is being delivered sets a parameter, maybe without a gesture.
    void expectBareEdit(AudioUnitParameterID parameter);
    /// Sets all of these as one edit, each in a gesture. What the unit holds already isn't set.
    void apply(const std::vector<std::pair<AudioUnitParameterID, float>>& values);

    bool undo(); ///< @return false where there is nothing to take back
    bool redo();

private:
    struct Parameter {
        float known = 0; ///< as last heard of
        float beforeGesture = 0;
        int gestures = 0;      ///< that are open
        double bareUntil = -1; ///< bare values count as a person's until then, seconds
    };

    void heard(const AudioUnitEvent& event, float value);
    void record(AudioUnitParameterID parameter, float before, bool isBare);
    bool step(std::vector<Edit>& from, std::vector<Edit>& to, float Change::*value);
    void set(AudioUnitParameterID parameter, float value);

    RetainPtr<NSObject> mSender; // nobody that listens
    TonaroUnitListener mListener;
    std::array<Parameter, kParamCount> mParameters;
    std::vector<Edit> mDone, mUndone;
    double mLastBare = -1; ///< when the newest edit, a bare one, last grew; seconds
};
