#pragma once

/// The inputs: positions and what they are as labels and numbers, so that a converter which is compared only prints or
/// reads, and the kernel, which has to compute all that too, is never favoured.

#include "Measure.h"
#include "ZePrint.h"

constexpr unsigned kSampleRate = 48000;

struct BenchFormat {
    const char* name;
    _qvposfmt_format format;
};

/// The formats with a kernel function.
constexpr BenchFormat kTimecodes[] = {
    {"smpte-nondrop-29", QVPOSFMT_SMPTE_NONDROP_29},
    {"smpte-nondrop-30", QVPOSFMT_SMPTE_NONDROP_30},
    {"smpte-drop", QVPOSFMT_SMPTE_DROP},
    {"smpte-ebu", QVPOSFMT_SMPTE_EBU},
    {"smpte-film", QVPOSFMT_SMPTE_FILM},
};
constexpr BenchFormat kTimes[] = {{"time", QVPOSFMT_TIME}, {"frames", QVPOSFMT_FRAMES}, {"time-cd", QVPOSFMT_TIME_CD}};
constexpr BenchFormat kMetrics[] = {
    {"time-metric", QVPOSFMT_TIME_METRIC}, {"frames-metric", QVPOSFMT_FRAMES_METRIC}, {"percent", QVPOSFMT_PERCENT}};
constexpr BenchFormat kMeasures = {"measures", QVPOSFMT_MEASURES};
constexpr BenchFormat kSamples = {"samples", QVPOSFMT_SAMPLES};

inline const ZeString kDecimal = L".", kThousands = L",";

/// 48000 samples, 25 frames per second, 120 beats per minute, 4/4, 960 ticks; 100 % are 24 hours.
void setUp(ZePosFmt& fmt, _qvposfmt_format format);

/// Positions of 24 hours, the same in each run.
extern const Inputs<long long> kPositions;
/// The text of each position, by the format object.
Inputs<ZeString> textsOf(_qvposfmt_format format);

/// The kernel's functions for the formats of each list, all called the same way.
inline constexpr auto writeTimecode = [](ZeString& out, const ZePosFmt& fmt, long long position) {
    SMPTE_ToString(out, position, fmt, 0);
};
inline constexpr auto writeTime = [](ZeString& out, const ZePosFmt& fmt, long long position) {
    SMPTELike_ToString(out, fmt, position, kDecimal, 0);
};
inline constexpr auto writeMetric = [](ZeString& out, const ZePosFmt& fmt, long long position) {
    Metric_ToString(out, fmt, position, kDecimal, kThousands, 0);
};
inline constexpr auto writeMeasures = [](ZeString& out, const ZePosFmt& fmt, long long position) {
    MusicTime_ToString(out, fmt, position, kDecimal, 0);
};
inline constexpr auto readTimecode = [](const ZeString& text, const ZePosFmt& fmt) {
    return SMPTE_ToNumber(text, fmt, kThousands, 0);
};
inline constexpr auto readTime = [](const ZeString& text, const ZePosFmt& fmt) {
    return SMPTELike_ToNumber(text, fmt, kDecimal, kThousands, 0);
};
inline constexpr auto readMetric = [](const ZeString& text, const ZePosFmt& fmt) {
    return Metric_ToNumber(text, fmt, kDecimal, kThousands, 0);
};
inline constexpr auto readMeasures = [](const ZeString& text, const ZePosFmt& fmt) {
    return MusicTime_ToNumber(text, fmt, kDecimal, kThousands, 0);
};

/// The numbers in each text: "01:02:03;04" gives 1, 2, 3, 4; "86,400.25" gives 86, 400, 25.
struct Numbers {
    unsigned count = 0;
    unsigned at[4] = {};
    bool operator==(const Numbers&) const = default;
};
Numbers numbersOf(const ZeString& text);
