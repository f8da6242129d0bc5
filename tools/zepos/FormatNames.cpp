#include "zepos/FormatNames.h"

namespace {

constexpr FormatName kNames[] = {
    {"samples", QVPOSFMT_SAMPLES, "samples"},
    {"time", QVPOSFMT_TIME, "hours, minutes, seconds, milliseconds"},
    {"time-metric", QVPOSFMT_TIME_METRIC, "seconds"},
    {"frames", QVPOSFMT_FRAMES, "hours, minutes, seconds, frames of --frame-rate"},
    {"frames-metric", QVPOSFMT_FRAMES_METRIC, "frames of --frame-rate"},
    {"measures", QVPOSFMT_MEASURES, "measure, beat, ticks"},
    {"smpte-nondrop-29", QVPOSFMT_SMPTE_NONDROP_29, "timecode at 29.97 frames per second"},
    {"smpte-nondrop-30", QVPOSFMT_SMPTE_NONDROP_30, "timecode at 30 frames per second"},
    {"smpte-drop", QVPOSFMT_SMPTE_DROP, "timecode at 29.97 frames per second, drop-frame"},
    {"smpte-ebu", QVPOSFMT_SMPTE_EBU, "timecode at 25 frames per second"},
    {"smpte-film", QVPOSFMT_SMPTE_FILM, "timecode at 24 frames per second"},
    {"time-cd", QVPOSFMT_TIME_CD, "time with 75 CD frames per second"},
    {"percent", QVPOSFMT_PERCENT, "percent of --percent-base"},
};

} // namespace

std::span<const FormatName> formatNames() { return kNames; }

std::optional<_qvposfmt_format> formatNamed(std::string_view name)
{
    for (const FormatName& row : kNames)
        if (row.name == name) return row.format;
    return std::nullopt;
}
