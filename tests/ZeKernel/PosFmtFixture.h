#pragma once

#include "PosFmt.h"
#include "ZePrint.h"
#include "ZePropertyMap.h"

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

    /// By the user's separators.
    ZeString text(long long position, unsigned flags = 0)
    {
        ZeString out(L"before");
        stringValue(out, position, flags);
        return out;
    }
};

inline const ZeString kPoint = L".";
inline const ZeString kComma = L",";
inline const ZeString kNothing;

inline PosFmtKernel KernelOf(const ZePosFmt& fmt)
{
    const PosFmtFacts* facts = PosFmtFactsOf(fmt.eFormat);
    return facts ? facts->kernel : PosFmtKernel::None;
}

/// By the format's own functions.
inline ZeString Write(const ZePosFmt& fmt, long long position, const ZeString& decimal, const ZeString& group,
                      unsigned flags)
{
    ZeString out = L"something longer than any of the results can be";
    if (KernelOf(fmt) == PosFmtKernel::Smpte) SMPTE_ToString(out, position, fmt, flags);
    if (KernelOf(fmt) == PosFmtKernel::SmpteLike) SMPTELike_ToString(out, fmt, position, decimal, flags);
    if (KernelOf(fmt) == PosFmtKernel::Metric) Metric_ToString(out, fmt, position, decimal, group, flags);
    if (KernelOf(fmt) == PosFmtKernel::MusicTime) MusicTime_ToString(out, fmt, position, decimal, flags);
    return out;
}

/// The same; the plain call is to say the same of the text.
inline PosFmtReading Read(const ZePosFmt& fmt, const ZeString& text, const ZeString& decimal, const ZeString& group,
                          unsigned flags)
{
    PosFmtReading reading{};
    long long plain = 0;
    switch (KernelOf(fmt)) {
    case PosFmtKernel::Smpte:
        plain = SMPTE_ToNumber(text, fmt, group, flags);
        reading = SMPTE_Read(text, fmt, group, flags);
        break;
    case PosFmtKernel::SmpteLike:
        plain = SMPTELike_ToNumber(text, fmt, decimal, group, flags);
        reading = SMPTELike_Read(text, fmt, decimal, group, flags);
        break;
    case PosFmtKernel::Metric:
        plain = Metric_ToNumber(text, fmt, decimal, group, flags);
        reading = Metric_Read(text, fmt, decimal, group, flags);
        break;
    default:
        plain = MusicTime_ToNumber(text, fmt, decimal, group, flags);
        reading = MusicTime_Read(text, fmt, decimal, group, flags);
    }
    EXPECT_EQ(plain, reading.accepted ? reading.position : 0) << text;
    return reading;
}

inline std::string LabelOf(const _smpteval& t)
{
    return std::to_string(t.hours) + ":" + std::to_string(t.minutes) + ":" + std::to_string(t.seconds) + ":" +
           std::to_string(t.frames);
}

/// All fields that are stored.
inline std::wstring StoredText(const ZePosFmt& fmt)
{
    ZePropertyMap map;
    fmt.persist(map);
    std::wstring text;
    for (const auto& [key, property] : map) text += key + L'=' + property.content->to_string() + L' ';
    return text;
}

/// What a reading says, as "accepted 57600" or "stop 3, unexpected character, 57600".
inline std::string Said(const PosFmtReading& reading, const ZeString& text)
{
    const std::string position = std::to_string(reading.position);
    std::string said = reading.accepted ? "accepted " : "refused ";
    if (reading.reason == PosFmtReason::None) return reading.stop == text.size() ? said + position : "lost its end";
    return said + position + " at " + std::to_string(reading.stop) + ": " + PosFmtReasonText(reading.reason);
}
