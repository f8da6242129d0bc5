#pragma once

/// Conversions between positions and text.
///
/// A position is a signed 64-bit count of samples. Everything here is a plain function over plain data: no platform, no
/// locale, no lock; safe on any thread as long as the arguments are not shared. Text goes to the first parameter and
/// overwrites it; a string that is kept between calls costs no heap request once it has room.
///
/// Separators are passed as strings of which only the first character counts; an empty one stands for none.
///
/// Failure: nothing is reported. Text that is not accepted is position 0; a function that doesn't handle the object's
/// format leaves its output alone, or answers 0. The `..._Read` functions tell refused text from a real 0. Absurd
/// parameters (zero rates and the like) give some text or number, never undefined behaviour, "nan" or "inf".

#include "ZeString.h"

#include <cstddef>

struct ZePosFmt;

/// What a position is shown as. An object may hold any other value too; such a format has no text.
enum _qvposfmt_format : int {
    QVPOSFMT_SAMPLES,          ///< 1,800,000
    QVPOSFMT_TIME,             ///< 00:00:40.816
    QVPOSFMT_TIME_METRIC,      ///< seconds: 40.816327
    QVPOSFMT_FRAMES,           ///< 00:00:40.20, frames at the object's own rate
    QVPOSFMT_FRAMES_METRIC,    ///< frames: 1,020.408
    QVPOSFMT_MEASURES,         ///< measure, beat and ticks: 21:2.607
    QVPOSFMT_SMPTE_NONDROP_29, ///< 00:00:40:23
    QVPOSFMT_SMPTE_NONDROP_30, ///< 00:00:40:24
    QVPOSFMT_SMPTE_DROP,       ///< 00:00:40;23
    QVPOSFMT_SMPTE_EBU,        ///< 00:00:40:20
    QVPOSFMT_SMPTE_FILM,       ///< 00:00:40:20
    QVPOSFMT_RESERVED_11,
    QVPOSFMT_RESERVED_12,
    QVPOSFMT_RESERVED_13,
    QVPOSFMT_RESERVED_14,
    QVPOSFMT_RESERVED_15,
    QVPOSFMT_RESERVED_16,
    QVPOSFMT_TIME_CD, ///< 00:00:40:61
    QVPOSFMT_SMPTE_NONDROP_23,
    QVPOSFMT_RESERVED_19,
    QVPOSFMT_PERCENT, ///< 50.00 %
};

/// Bits of the flag word that every conversion takes; those without a use in a conversion are ignored there.
enum : unsigned {
    kPosFmtLength = 1,     ///< a duration: the offset doesn't apply, measures and beats count from 0
    kPosFmtWholeUnits = 2, ///< whole units only
    kPosFmtShort = 4,      ///< metric time with three decimals; wins over whole units
};

/// The functions that convert a format.
enum class PosFmtKernel : unsigned char { None, Samples, SmpteLike, Metric, MusicTime, Smpte };

/// Kinds of timecode; kinds 2 and 5 run at 29.97 frames a second but count 30 in their labels.
enum _smptetype : unsigned {
    SMPTETYPE_NONE,
    SMPTETYPE_NONDROP_30,
    SMPTETYPE_DROP,
    SMPTETYPE_EBU,
    SMPTETYPE_FILM,
    SMPTETYPE_NONDROP_29,
};

/// What is known of one format.
struct PosFmtFacts {
    static constexpr double kFrameRate = -1; ///< in `rate`: the object's own frame rate
    static constexpr double kTickRate = -2;  ///< in `rate`: ticks a second, from the object's tempo

    _qvposfmt_format format;
    PosFmtKernel kernel;
    bool isHMSF;          ///< hours, minutes, seconds and a sub-second field
    double typeFrameRate; ///< the frame rate that comes with the type, in frames per second; 0 for none
    double rate;          ///< units per second of a ruler's ticks
    unsigned smpteType;   ///< kind of timecode; SMPTETYPE_NONE for other formats
};

/// The row of `format`, null for a value outside the enumeration.
const PosFmtFacts* PosFmtFactsOf(int format);

/// A timecode label, or a time split the same way.
struct _smpteval {
    unsigned type;    ///< SMPTETYPE_...; only the timecode functions read it
    unsigned hours;   ///< 0..23 in timecode
    unsigned minutes; ///< 0..59
    unsigned seconds; ///< 0..59
    unsigned frames;  ///< frames; milliseconds or other sub-second units where the function says so
};

/// A musical time.
struct _measureval {
    __extension__ union {
        unsigned timeSignature;
        struct {
            unsigned short wBeatValue; ///< not used
            unsigned short wBeatsPerMeasure;
        };
    };
    unsigned measures; ///< whole measures
    double tempo;      ///< beats per minute
    double beats;      ///< beats within the measure, with fraction
};

/// Why reading stopped where it did.
enum class PosFmtReason : unsigned char {
    None,                ///< the whole text was read
    UnexpectedCharacter, ///< no part of a number or separator of this format
    TooManyFields,       ///< a separator, or text, after the last field
    FieldAfterFraction,  ///< a colon after the decimal separator
    SecondSeparator,     ///< a second decimal separator
    SeparatorNotRead,    ///< the user's decimal separator, which frames text can't be read with
    MeasureZero,         ///< measures count from 1
    TextTooLong,         ///< 80 characters or more
    NotANumber,          ///< refused as a whole by the platform's number formatter
    NoConversion,        ///< the format has no text
};

/// The reason in a few English words, without a full stop; empty for None. Never null.
const char* PosFmtReasonText(PosFmtReason reason);

/// What a parser made of a text. "1:2x" as measures is accepted, stops at 3, and says UnexpectedCharacter.
struct PosFmtReading {
    bool accepted;       ///< false: the plain calls answer 0
    PosFmtReason reason; ///< None when all was read; accepted text may have another reason
    std::size_t stop;    ///< index of the first character not read; that of the end, or of a NUL, when all was read
    long long position;  ///< what was understood up to there, of refused text too
};

/// The separators between timecode fields.
inline constexpr wchar_t _cSMPTEWhole = L':';
inline constexpr wchar_t _cSMPTEFraction = L'.';
inline constexpr wchar_t _cSMPTESemi = L';';

// Timecode. Frames are those that really run (29.97 a second for kinds 2 and 5), labels what is shown.

/// Fills the label of a frame by `t->type`; counts wrap after 24 hours, a negative one is 0.
/// Frame 1800 is 00:01:00;02 in SMPTETYPE_DROP.
void FrameCountToSMPTE(_smpteval* t, long long frames);

/// Fills the label of the frame that is nearest to the position; an exact half goes up.
void PositionToSMPTE(long long position, unsigned sampleRate, _smpteval* t);

/// The frame of a label; 0 for a kind without frames. A label that drop-frame skips counts as the next one that exists:
/// 00:01:00;00 is 1800.
unsigned SMPTEToFrameCount(const _smpteval* t);

/// First whole sample of a label: one frame at 30 frames and 48000 samples per second is 1600. 0 for a kind without
/// frames.
long long SMPTEToPosition(unsigned sampleRate, const _smpteval* t);

/// Reads up to four fields, separated by ':', '.' or ';' (or, where there is none of these, by anything but digits),
/// and carries: frames into seconds unless `framesPerSecond` is 0, seconds, minutes, hours modulo 24. The last field is
/// the frames: "12:05" is 12 seconds 5 frames. `t->type` stays.
///
/// @return true when the whole text was read; false leaves the fields that were read. 80 characters are too many:
/// false, and the fields are 0
bool AsciiToSMPTE(const ZeString& text, _smpteval* t, unsigned framesPerSecond, const ZeString& thousandSep);

/// The same with the frames per second of `t->type`'s labels, 0 for other kinds.
bool AsciiToSMPTE(const ZeString& text, _smpteval* t, const ZeString& thousandSep);

/// Formats 6 to 10. At 44100 samples per second position 1800000 is "00:00:40;23" in drop-frame.
void SMPTE_ToString(ZeString& out, long long position, const ZePosFmt& fmt, unsigned flags);
long long SMPTE_ToNumber(const ZeString& text, const ZePosFmt& fmt, const ZeString& thousandSep, unsigned flags);
PosFmtReading SMPTE_Read(const ZeString& text, const ZePosFmt& fmt, const ZeString& thousandSep, unsigned flags);

/// Splits a time in seconds (the name notwithstanding) into hours modulo 24 to frames, the frames truncated.
void SamplesToSmpte(_smpteval& t, double frameRate, double seconds);

// Time, CD time and frames: hours, minutes, seconds and a sub-second field.

/// Formats 1, 3 and 17. At 48000 samples per second position 4344000 as time is "00:01:30.500", with whole units
/// "00:01:30" (frames are always written). Hours don't wrap; a negative position has a leading minus.
void SMPTELike_ToString(ZeString& out, const ZePosFmt& fmt, long long position, const ZeString& decimalSep,
                        unsigned flags);
void FormatSmpteLikePosition(ZeString& out, const ZePosFmt& fmt, long long position, const ZeString& decimalSep,
                             unsigned wholeUnits);

/// A leading minus is taken off and the result negated. Time at 48000: "1:30.5" is 4344000.
long long SMPTELike_ToNumber(const ZeString& text, const ZePosFmt& fmt, const ZeString& decimalSep,
                             const ZeString& thousandSep, unsigned flags);
PosFmtReading SMPTELike_Read(const ZeString& text, const ZePosFmt& fmt, const ZeString& decimalSep,
                             const ZeString& thousandSep, unsigned flags);

/// First whole sample of the fields, `t->frames` counting `unitsPerSecond` a second.
long long SmpteLikeToPosition(unsigned sampleRate, double unitsPerSecond, const _smpteval* t);

/// Reads hours:minutes:seconds with a decimal fraction; `t->frames` receives the milliseconds. Nothing carries: "90" is
/// 90 seconds. @return true when the whole text was read; 80 characters are too many
bool AsciiToTime(const ZeString& text, _smpteval* t, const ZeString& decimalSep, const ZeString& thousandSep);

// Decimal numbers.

/// Reads a number with optional minus, grouping, blanks and percent signs around it; cuts the latter off `text`.
/// Adds 0.000000000005 to the magnitude, so that 1.001 truncates to 1 thousandth and not to 0. Null reads as empty.
///
/// @return the character at which reading stopped, 0 at the end. "12:30" gives 12 and answers ':'
wchar_t myatof(wchar_t* text, double* value, wchar_t decimalChar, wchar_t groupChar);

/// Formats 2, 4 and 20, rounded, without a sign: at 48000 positions 72000 and -72000 as seconds are "1.500000".
void Metric_ToString(ZeString& out, const ZePosFmt& fmt, long long position, const ZeString& decimalSep,
                     const ZeString& thousandSep, unsigned flags);

/// Truncates to whole samples; "-1.5" seconds at 48000 is -72000.
long long Metric_ToNumber(const ZeString& text, const ZePosFmt& fmt, const ZeString& decimalSep,
                          const ZeString& thousandSep, unsigned flags);
PosFmtReading Metric_Read(const ZeString& text, const ZePosFmt& fmt, const ZeString& decimalSep,
                          const ZeString& thousandSep, unsigned flags);

/// Groups the digits of a number text in place: "-1234567.25" becomes "-1,234,567.25", empty text "0". Trailing blanks
/// go; leading blanks and zeros stay and are not counted. An empty `thousandSep` groups nothing; what passes 79
/// characters is cut. @return the new length
int PrettyNumber(ZeString& number, const ZeString& decimalSep, const ZeString& thousandSep);

/// Writes the magnitude of `value` with as many decimals as characters follow the first '.' of `pattern` (at most 9):
/// 1234.5 with "#.###" is "1,234.500", grouped only if `group`. Halves go up, but the half is that of a 32-bit float:
/// 0.125 with "###.##" is "0.12". An empty `decimalSep` writes no decimals.
void FormatFloatPretty(ZeString& out, double value, const ZeString& pattern, const ZeString& decimalSep,
                       const ZeString& thousandSep, bool group);

// Musical time. Measures and beats of text count from 1, those of a length and of _measureval from 0.

/// Fills measures and beats by the tempo and the time signature of `m`. Always true.
bool PositionToMeasures(long long position, unsigned sampleRate, _measureval* m);
long long MeasuresToPosition(unsigned sampleRate, const _measureval* m);

/// Reads "measures:beats". The first digit of the beats' fraction counts quarter beats: "1:2.2" is 2.5 beats. What
/// follows the beats is ignored; 80 characters of them read as 0.
/// @return false only where something else than a colon follows the measures
bool AsciiToMeasures(const ZeString& text, _measureval* m, wchar_t decimalChar, wchar_t groupChar);

/// Format 5 (the format of `fmt` is not looked at): measure, colon, beat, separator, ticks. At 120 beats a minute, four
/// in a measure, 960 ticks and 48000 samples per second position 36000 is "1:2.480", as a length "0:1.480". No sign.
void MusicTime_ToString(ZeString& out, const ZePosFmt& fmt, long long position, const ZeString& decimalSep,
                        unsigned flags);
long long MusicTime_ToNumber(const ZeString& text, const ZePosFmt& fmt, const ZeString& decimalSep,
                             const ZeString& thousandSep, unsigned flags);
PosFmtReading MusicTime_Read(const ZeString& text, const ZePosFmt& fmt, const ZeString& decimalSep,
                             const ZeString& thousandSep, unsigned flags);

// Rulers.

/// Units per second of the object's format, as a ruler counts them; 1 for a value outside the enumeration.
double RateFromPosFmt(const ZePosFmt& fmt);

/// A tidy step near `span`, in samples: whole hours to frames, 1-2-5 decades, or powers of two of measures.
///
/// @param coarse     receives whether the step is larger than one main unit (second, frame, beat)
/// @param stepCount  receives a small count that describes the step; 0 for formats without ticks, whose step is `span`
///
/// Timecode at 30 frames and 48000 samples per second: 7 seconds give 480000 (10 seconds), true and 10.
double NiceTick(double span, const ZePosFmt& fmt, bool* coarse, unsigned* stepCount);
