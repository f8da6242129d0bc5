#include "PosFmtNumbers.h"
#include "PosFmtText.h"
#include "ZePrint.h"

#include <algorithm>
#include <cmath>
#include <utility>

using namespace PosFmtInner;

namespace {

/// How a kind of timecode counts: its labels, and the frames that really run.
struct SmpteRates {
    unsigned labelRate; // a second; 0 where there are no labels
    double realRate;    // a second
};

constexpr SmpteRates kRates[] = {
    {0, 30.0},   // SMPTETYPE_NONE
    {30, 30.0},  // SMPTETYPE_NONDROP_30
    {30, 29.97}, // SMPTETYPE_DROP
    {25, 25.0},  // SMPTETYPE_EBU
    {24, 24.0},  // SMPTETYPE_FILM
    {30, 29.97}, // SMPTETYPE_NONDROP_29
};

const SmpteRates& RatesOf(unsigned type) { return kRates[type <= SMPTETYPE_NONDROP_29 ? type : SMPTETYPE_NONE]; }

constexpr unsigned kSecondsPerHour = 3600;
constexpr unsigned kSecondsPerDay = 24 * kSecondsPerHour;

// Drop-frame labels run at 30 a second although only 29.97 frames exist: two labels are skipped at the start of every
// minute, except each tenth.
constexpr unsigned kDroppedPerMinute = 2;
constexpr unsigned kDroppedPerHour = 54 * kDroppedPerMinute;
constexpr unsigned kDroppedPerTenMinutes = 9 * kDroppedPerMinute;
constexpr unsigned kFramesPerDropMinute = 30 * 60 - kDroppedPerMinute;
constexpr unsigned kFramesPerTenMinutes = 30 * 600 - kDroppedPerTenMinutes;
constexpr unsigned kDropFramesPerDay = 24 * 6 * kFramesPerTenMinutes;

template <unsigned kPerDay> unsigned WithinDay(long long frames)
{
    return frames < 0 ? 0 : static_cast<unsigned>(frames < kPerDay ? frames : frames % kPerDay);
}

template <unsigned kRate> void SplitLabel(_smpteval* t, unsigned label)
{
    t->hours = label / (kRate * kSecondsPerHour);
    label %= kRate * kSecondsPerHour;
    t->minutes = label / (kRate * 60);
    label %= kRate * 60;
    t->seconds = label / kRate;
    t->frames = label % kRate;
}

/// The label's number, which is never one of those that are skipped.
unsigned LabelOfDropFrame(unsigned frame)
{
    const unsigned tens = frame / kFramesPerTenMinutes;
    const unsigned rest = frame % kFramesPerTenMinutes;
    const unsigned minutes = rest < kDroppedPerMinute ? 0 : (rest - kDroppedPerMinute) / kFramesPerDropMinute;
    return frame + kDroppedPerTenMinutes * tens + kDroppedPerMinute * minutes;
}

/// The first sample of a frame; a frame count of 0 is sample 0.
long long PositionOfFrame(unsigned sampleRate, unsigned frame, double realRate)
{
    return ZeTruncate(static_cast<double>(sampleRate) * frame / realRate + kFirstSample);
}

const PosFmtFacts* SmpteFactsOf(const ZePosFmt& fmt)
{
    const PosFmtFacts* facts = PosFmtFactsOf(fmt.eFormat);
    return facts && facts->kernel == PosFmtKernel::Smpte ? facts : nullptr;
}

/// 75 seconds are 1 minute and 15 seconds, and so on.
void CarryFields(_smpteval* t, unsigned framesPerSecond)
{
    if (framesPerSecond != 0 && t->frames >= framesPerSecond) {
        t->seconds += t->frames / framesPerSecond;
        t->frames %= framesPerSecond;
    }
    t->minutes += t->seconds / 60;
    t->seconds %= 60;
    t->hours += t->minutes / 60;
    t->minutes %= 60;
    t->hours %= 24;
}

bool IsLabelSeparator(wchar_t c) { return c == _cSMPTEWhole || c == _cSMPTEFraction || c == _cSMPTESemi; }

/// A label's text with its separators made equal.
class LabelText {
public:
    explicit LabelText(std::wstring_view text) : mBegin(text.data()), mEnd(mBegin + text.size())
    {
        mIsSeparated = std::any_of(mBegin, mEnd, IsLabelSeparator);
        if (mIsSeparated) return;
        while (mEnd != mBegin && IsBlank(mEnd[-1])) --mEnd;
        mBegin = SkipBlanks(mBegin, mEnd);
    }

    const wchar_t* begin() const { return mBegin; }
    const wchar_t* end() const { return mEnd; }

    /// What a character that is no digit stands for; where there is no separator, all of them separate.
    wchar_t operator()(wchar_t c) const { return !mIsSeparated || IsLabelSeparator(c) ? _cSMPTEWhole : c; }

    const wchar_t* skipBlanks(const wchar_t* at) const
    {
        return mIsSeparated ? SkipBlanks(at, mEnd) : at; // elsewhere a blank separates
    }

private:
    const wchar_t* mBegin;
    const wchar_t* mEnd;
    bool mIsSeparated;
};

Stop ReadFields(const LabelText& text, _smpteval* t, wchar_t group)
{
    unsigned hours = 0, minutes = 0, seconds = 0, frames = 0; // not in `t`, which the compiler would write each time
    const wchar_t* at = text.begin();
    PosFmtReason reason = PosFmtReason::None;
    for (int field = 1;; ++field, ++at) {
        unsigned value = 0;
        at = text.skipBlanks(ReadDigits(text.skipBlanks(at), text.end(), group, text, value));
        hours = std::exchange(minutes, std::exchange(seconds, std::exchange(frames, value)));
        if (at == text.end()) break;
        if (text(*at) != _cSMPTEWhole)
            reason = PosFmtReason::UnexpectedCharacter;
        else if (field == 4)
            reason = PosFmtReason::TooManyFields;
        else
            continue;
        break;
    }
    *t = {t->type, hours, minutes, seconds, frames};
    return {at, reason};
}

} // namespace

Stop PosFmtInner::ReadLabel(std::wstring_view text, _smpteval* t, unsigned framesPerSecond, wchar_t group)
{
    const bool isWritten = text.size() == 11 && IsLabelSeparator(text[8]) && ReadWrittenFields(text, group, t) &&
                           ReadPair(&text[9], t->frames);
    text = isWritten ? text : Seen(text);
    Stop stop{text.data() + text.size(), PosFmtReason::None};
    if (!isWritten) {
        const Stop fields = ReadFields(LabelText(text), t, group);
        if (fields.reason != PosFmtReason::None) stop = fields;
    }
    CarryFields(t, framesPerSecond);
    return stop;
}

void FrameCountToSMPTE(_smpteval* t, long long frames)
{
    switch (t->type) {
    case SMPTETYPE_NONDROP_30:
    case SMPTETYPE_NONDROP_29:
        return SplitLabel<30>(t, WithinDay<30 * kSecondsPerDay>(frames));
    case SMPTETYPE_EBU:
        return SplitLabel<25>(t, WithinDay<25 * kSecondsPerDay>(frames));
    case SMPTETYPE_FILM:
        return SplitLabel<24>(t, WithinDay<24 * kSecondsPerDay>(frames));
    default: // kinds without frames count as drop-frame does
        return SplitLabel<30>(t, LabelOfDropFrame(WithinDay<kDropFramesPerDay>(frames)));
    }
}

void PositionToSMPTE(long long position, unsigned sampleRate, _smpteval* t)
{
    FrameCountToSMPTE(t, NearestFrame(static_cast<double>(position) * RatesOf(t->type).realRate / sampleRate));
}

unsigned SMPTEToFrameCount(const _smpteval* t)
{
    const unsigned rate = RatesOf(t->type).labelRate;
    if (rate == 0) return 0;
    const unsigned seconds = t->hours * kSecondsPerHour + t->minutes * 60 + t->seconds;
    if (t->type != SMPTETYPE_DROP) return seconds * rate + t->frames;
    const bool isSkipped = t->frames < kDroppedPerMinute && t->seconds == 0 && t->minutes % 10 != 0;
    const unsigned inHour = kDroppedPerMinute * t->minutes - kDroppedPerMinute * (t->minutes / 10);
    return seconds * rate + (isSkipped ? kDroppedPerMinute : t->frames) - (t->hours * kDroppedPerHour + inHour);
}

long long SMPTEToPosition(unsigned sampleRate, const _smpteval* t)
{
    return PositionOfFrame(sampleRate, SMPTEToFrameCount(t), RatesOf(t->type).realRate);
}

bool AsciiToSMPTE(const ZeString& text, _smpteval* t, unsigned framesPerSecond, const ZeString& thousandSep)
{
    // Choice: text past 79 characters is refused, so typing never asserts. Test: AsciiToSMPTE.RefusesLongText
    *t = {t->type, 0, 0, 0, 0};
    if (text.size() > kMostCharacters) return false;
    return ReadLabel(text, t, framesPerSecond, FirstOf(thousandSep)).reason == PosFmtReason::None;
}

bool AsciiToSMPTE(const ZeString& text, _smpteval* t, const ZeString& thousandSep)
{
    return AsciiToSMPTE(text, t, RatesOf(t->type).labelRate, thousandSep);
}

void SMPTE_ToString(ZeString& out, long long position, const ZePosFmt& fmt, unsigned)
{
    const PosFmtFacts* facts = SmpteFactsOf(fmt);
    if (!facts) return;
    _smpteval t{facts->smpteType, 0, 0, 0, 0};
    PositionToSMPTE(position, fmt.dwSampleRate, &t);
    constexpr std::size_t kLength = 11;
    if (out.size() != kLength) out.resize(kLength);
    wchar_t* const at = out.data();
    WritePair(at, t.hours);
    at[2] = _cSMPTEWhole;
    WritePair(at + 3, t.minutes);
    at[5] = _cSMPTEWhole;
    WritePair(at + 6, t.seconds);
    at[8] = t.type == SMPTETYPE_DROP ? _cSMPTESemi : _cSMPTEWhole;
    WritePair(at + 9, t.frames);
}

PosFmtReading SMPTE_Read(const ZeString& text, const ZePosFmt& fmt, const ZeString& thousandSep, unsigned)
{
    const PosFmtFacts* facts = SmpteFactsOf(fmt);
    if (!facts) return NoConversion();
    if (text.size() > kMostCharacters) return TooLong();
    _smpteval t{facts->smpteType, 0, 0, 0, 0};
    const Stop stop = ReadLabel(text, &t, RatesOf(t.type).labelRate, FirstOf(thousandSep));
    return ReadingOf(text, stop, SMPTEToPosition(fmt.dwSampleRate, &t));
}

long long SMPTE_ToNumber(const ZeString& text, const ZePosFmt& fmt, const ZeString& thousandSep, unsigned flags)
{
    return PositionOf(SMPTE_Read(text, fmt, thousandSep, flags));
}

void SamplesToSmpte(_smpteval& t, double frameRate, double seconds)
{
    double whole = 0;
    const double fraction = std::modf(seconds, &whole);
    t.hours = Truncated32(whole / 3600) % 24;
    t.minutes = Truncated32(whole / 60) % 60;
    t.seconds = Truncated32(std::fmod(whole, 60));
    t.frames = static_cast<unsigned>(WholeUnit(fraction * frameRate));
}
