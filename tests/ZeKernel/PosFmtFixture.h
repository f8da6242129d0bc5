#pragma once

#include "PosFmt.h"
#include "ZePrint.h"

#include <string>

#include <gtest/gtest.h>

/// A format object with the parameters that most rows use.
struct Format : ZePosFmt {
    explicit Format(int format, unsigned sampleRate = 48000, double frameRate = 25)
    {
        eFormat = static_cast<_qvposfmt_format>(format);
        dwSampleRate = sampleRate;
        dFrameRate = frameRate;
        dTempo = 120;
        wBeatsPerMeasure = 4;
        wBeatValue = 4;
        cTicksPerBeat = 960;
        ccPercentBase = 48000;
    }
};

inline const ZeString kPoint = L".";
inline const ZeString kComma = L",";
inline const ZeString kNothing;

inline std::string LabelOf(const _smpteval& t)
{
    return std::to_string(t.hours) + ":" + std::to_string(t.minutes) + ":" + std::to_string(t.seconds) + ":" +
           std::to_string(t.frames);
}

/// What a reading says, as "accepted 57600" or "stop 3, unexpected character, 57600".
inline std::string Said(const PosFmtReading& reading, const ZeString& text)
{
    const std::string position = std::to_string(reading.position);
    std::string said = reading.accepted ? "accepted " : "refused ";
    if (reading.reason == PosFmtReason::None) return reading.stop == text.size() ? said + position : "lost its end";
    return said + position + " at " + std::to_string(reading.stop) + ": " + PosFmtReasonText(reading.reason);
}
