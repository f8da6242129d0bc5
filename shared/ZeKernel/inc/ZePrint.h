#pragma once

/// How a position is shown: the format object, the formatter behind it, and zoom ratios.
///
/// A position is a signed 64-bit count of samples. A `ZePosFmt` says in which of the formats of `PosFmt.h` it is shown
/// and with which rates; a formatter, made at the first conversion, brings the separators of the user's locale.
///
/// Failure: nothing is reported. A format without a conversion gives the text "!" and the number 0, refused text 0;
/// `readValue` tells why. Where no formatter can be made, texts stay as they are and numbers are 0. Absurd rates and
/// positions give some text or number, never undefined behaviour. The formatter belongs to the thread of the user
/// interface.

#include "PosFmt.h"

#include <type_traits>

class ZePropertyMap;

/// What the platform adds to the conversions: separators, and plain sample counts.
class ZeFormatterPlatform {
public:
    virtual ~ZeFormatterPlatform();

    /// The text of a position of which the offset is already off. "!" for a format without a conversion.
    virtual void stringValue(ZeString& out, long long position, ZePosFmt& fmt, unsigned flags) = 0;
    /// The position of a text, to which the offset is still to be added; 0 for refused text.
    virtual long long numberValue(const ZeString& text, ZePosFmt& fmt, unsigned flags) = 0;
    virtual double formatTicks(double span, ZePosFmt& fmt, bool* coarse, unsigned* stepCount) = 0;
    /// The same reading as `numberValue`, with its reason.
    virtual PosFmtReading readValue(const ZeString& text, ZePosFmt& fmt, unsigned flags) = 0;

    /// A plain number with the user's separators and as many decimals as characters follow the first '.' of `pattern`:
    /// 1234.5 with L"#.###" is "1,234.500", -0.004 with L"###.##" is "-0.00".
    static void stringFromDouble(ZeString& out, double value, const wchar_t* pattern);
};

/// A display format with its parameters.
///
/// The fields are plain data in a fixed order: their bytes may travel in a box, never the object itself. Whoever takes
/// such bytes out clears `pFormatter` before the copy dies, since the formatter belongs to the object it was made by.
struct ZePosFmt {
    ZeFormatterPlatform* pFormatter = nullptr; ///< owned; null until it is needed
    _qvposfmt_format eFormat = QVPOSFMT_TIME;  ///< any value is kept, also one that is no format
    unsigned dwSampleRate = 0;                 ///< samples per second
    double dFrameRate = 0;                     ///< frames per second, of the formats that count frames
    double dTempo = 0;                         ///< beats per minute
    long long ntOffset = 0;                    ///< the position, in samples, that is shown as zero
    long long ccPercentBase = 0;               ///< samples that are shown as 100 %
    __extension__ union {
        unsigned dwTimeSignature = 0;
        struct {
            unsigned short wBeatValue; ///< the low half
            unsigned short wBeatsPerMeasure;
        };
        struct {
            unsigned short cBeatValue;
            unsigned short cBeatsPerMeasure;
        };
    };
    unsigned cTicksPerBeat = 0;

    ZePosFmt() = default;
    ~ZePosFmt() { Cleanup(); }
    ZePosFmt(const ZePosFmt&) = delete;
    ZePosFmt& operator=(const ZePosFmt&) = delete;

    /// Stores the format; timecode and CD time bring their frame rate along, every other format leaves it alone.
    void setType(_qvposfmt_format type);
    /// Whether the format shows hours, minutes, seconds and a sub-second field.
    bool isHMSF() const;

    /// Writes a position. @param flags  bits of `PosFmt.h`; a length (bit 0) ignores the offset
    ///
    /// At 44100 samples per second position 1800000 is "00:00:40;23" in drop-frame timecode.
    void stringValue(ZeString& out, long long position, unsigned flags);
    /// Reads a position; the offset is added, to the 0 of refused text too, unless it is a length.
    long long numberValue(const ZeString& text, unsigned flags);
    /// The same reading, told in full; the offset is in its position.
    ///
    /// "1:2x" as measures is accepted, stops at 3 and says UnexpectedCharacter; as timecode it is refused there.
    PosFmtReading readValue(const ZeString& text, unsigned flags);

    /// A tidy step of a ruler near `span`, both in samples; `NiceTick` tells what the outputs receive. Without a
    /// formatter the span itself, and the outputs stay.
    double formatTicks(double span, bool* coarse, unsigned* stepCount);
    /// Samples in one step of the format, rounded up: a tenth of a second, a frame, a beat, one percent, or one sample.
    /// 1 where the rate that it divides by is 0. One frame of drop-frame timecode at 44100 is 1472.
    long long getIncrement() const;

    /// Makes the formatter unless there is one. @return whether there is one now
    bool initFormatter();
    /// Destroys the formatter; the next conversion makes another.
    void Cleanup();

    /// Adds the eight fields to the map under their names; entries that are there already stay.
    void persist(ZePropertyMap& map) const;
    /// Takes the eight fields from the map. A field whose entry is missing or of another type becomes 0, and a missing
    /// entry becomes an empty one. The formatter stays.
    void restore(ZePropertyMap& map);
};

static_assert(sizeof(ZePosFmt) == 56 && std::is_standard_layout_v<ZePosFmt> && !std::is_copy_constructible_v<ZePosFmt>);

/// Horizontal zoom. A ratio is the number of positions that one pixel covers; below 1 one position takes several
/// pixels. Steps run 1, 2, 3, 4, 6, 8, 12 ... outward up to 2^50, and 1/2, 1/3, 1/4, 1/6 ... inward down to 1/24.
class ZoomRatioUtils {
public:
    /// Step 0 is 1, step 3 is 4, step -2 is 1/3.
    static double ZoomRatioFromHMagnify(int step);
    static void ZoomRatioTextFromHMagnify(int step, ZeString& out);

    /// Pixels, colon, positions: 2.5 is "1:3", 0.25 is "4:1". Ratios are greater than 0.
    static void ZoomRatioTextFromZoomRatio(double ratio, ZeString& out);
    /// The same two counts; null for one that isn't wanted.
    static void PixelDensityFromZoomRatio(double ratio, long long* positions, long* pixels);
};
