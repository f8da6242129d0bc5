#include "PosFmtFixture.h"

#include <cmath>
#include <limits>
#include <random>

// What holds for many values, where a table only has those that somebody thought of.

namespace {

constexpr int kTextFormats[] = {
    QVPOSFMT_TIME,      QVPOSFMT_TIME_METRIC,      QVPOSFMT_FRAMES,           QVPOSFMT_FRAMES_METRIC,
    QVPOSFMT_MEASURES,  QVPOSFMT_SMPTE_NONDROP_29, QVPOSFMT_SMPTE_NONDROP_30, QVPOSFMT_SMPTE_DROP,
    QVPOSFMT_SMPTE_EBU, QVPOSFMT_SMPTE_FILM,       QVPOSFMT_TIME_CD,          QVPOSFMT_PERCENT};

ZeString Write(const ZePosFmt& fmt, long long position, const ZeString& decimal, const ZeString& group, unsigned flags)
{
    ZeString out;
    SMPTE_ToString(out, position, fmt, flags);
    SMPTELike_ToString(out, fmt, position, decimal, flags);
    Metric_ToString(out, fmt, position, decimal, group, flags);
    if (fmt.eFormat == QVPOSFMT_MEASURES) MusicTime_ToString(out, fmt, position, decimal, flags);
    return out;
}

PosFmtReading Read(const ZePosFmt& fmt, const ZeString& text, const ZeString& decimal, const ZeString& group,
                   unsigned flags)
{
    switch (PosFmtFactsOf(fmt.eFormat)->kernel) {
    case PosFmtKernel::Smpte:
        return SMPTE_Read(text, fmt, group, flags);
    case PosFmtKernel::SmpteLike:
        return SMPTELike_Read(text, fmt, decimal, group, flags);
    case PosFmtKernel::Metric:
        return Metric_Read(text, fmt, decimal, group, flags);
    default:
        return MusicTime_Read(text, fmt, decimal, group, flags);
    }
}

long long Position(int format, const ZeString& text)
{
    const PosFmtReading reading = Read(Format(format), text, kPoint, kComma, kPosFmtLength);
    EXPECT_TRUE(reading.accepted) << format << " " << text;
    return reading.position;
}

using Random = std::mt19937_64;

} // namespace

TEST(PosFmtLaws, WrittenTextReadsBackAndWritesItselfAgain)
{
    Random random(1);
    const ZeString separators[] = {L".", L",", L"\u066b"};
    const ZeString groups[] = {L",", L".", L"\u202f", L"\u2019", L"\u00a0"};
    for (int i = 0; i < 40000; ++i) {
        const int format = kTextFormats[random() % std::size(kTextFormats)];
        Format fmt(format, static_cast<unsigned>(8000 + random() % 400000), 24 + static_cast<double>(random() % 40));
        fmt.cTicksPerBeat = 4;
        fmt.ccPercentBase = 1 + static_cast<long long>(random() % 100000000);
        const bool isFrames = format == QVPOSFMT_FRAMES; // reads only its own separator
        const std::size_t locale = isFrames ? 0 : random() % std::size(separators);
        const ZeString& decimal = separators[locale];
        const ZeString& group = locale == 1 ? groups[1 + random() % 4] : groups[random() % 2 * 2];
        const bool isSigned = PosFmtFactsOf(format)->kernel == PosFmtKernel::SmpteLike;
        const long long range = fmt.dwSampleRate * 86399LL;
        long long position = static_cast<long long>(random() % static_cast<unsigned long long>(range));
        if (isSigned && random() % 2) position = -position;

        const ZeString text = Write(fmt, position, decimal, group, 0);
        const PosFmtReading reading = Read(fmt, text, decimal, group, 0);
        ASSERT_EQ(Said(reading, text), "accepted " + std::to_string(reading.position)) << format << " " << text;
        if (PosFmtFactsOf(format)->kernel == PosFmtKernel::Metric) {
            const double samplesPerUnit = format == QVPOSFMT_TIME_METRIC ? fmt.dwSampleRate
                                          : format == QVPOSFMT_FRAMES_METRIC
                                              ? fmt.dwSampleRate / fmt.dFrameRate
                                              : static_cast<double>(fmt.ccPercentBase) / 100;
            const double lastDecimal = format == QVPOSFMT_TIME_METRIC ? 1e-6 : format == QVPOSFMT_PERCENT ? 1e-2 : 1e-3;
            ASSERT_LE(std::abs(static_cast<double>(reading.position - position)), lastDecimal / 2 * samplesPerUnit + 1)
                << text;
        } else {
            ASSERT_EQ(Write(fmt, reading.position, decimal, group, 0), text) << format << " " << position;
        }
    }
}

TEST(PosFmtLaws, TheShortWayReadsAsTheLongOne)
{
    Random random(2);
    for (int i = 0; i < 20000; ++i) {
        const Format fmt(kTextFormats[random() % std::size(kTextFormats)]);
        const auto flags = static_cast<unsigned>(random() % 8);
        const ZeString text =
            Write(fmt, static_cast<long long>(random() >> (20 + random() % 40)), kPoint, kComma, flags);
        const PosFmtReading written = Read(fmt, text, kPoint, kComma, flags);
        const PosFmtReading behindBlank = Read(fmt, L" " + text, kPoint, kComma, flags);
        EXPECT_EQ(written.position, behindBlank.position) << fmt.eFormat << " " << text;
        EXPECT_EQ(written.stop + 1, behindBlank.stop) << fmt.eFormat << " " << text;
    }
}

TEST(PosFmtLaws, ParsersAgreeWithThemselves)
{
    Random random(2);
    for (int i = 0; i < 4000; ++i) {
        const int format = kTextFormats[random() % std::size(kTextFormats)];
        const bool hasFields = PosFmtFactsOf(format)->isHMSF;
        const auto number = [&] { return std::to_wstring(random() % 3000); };
        const std::wstring last = number(), seconds = number(), one = number();
        const std::wstring separator = format == QVPOSFMT_TIME ? L"." : L":";
        const std::wstring text = hasFields ? seconds + separator + last : one;
        EXPECT_EQ(Position(format, L" \t " + text), Position(format, text)) << "leading blanks";
        if (!hasFields) continue;
        EXPECT_EQ(Position(format, L"0:" + text), Position(format, text)) << "a missing field is 0";
        EXPECT_EQ(Position(format, L":" + text), Position(format, text)) << "an empty one too";
        EXPECT_EQ(Position(format, L"1:00" + separator + last), Position(format, L"60" + separator + last)) << text;
        if (format != QVPOSFMT_TIME) {
            const std::wstring more = std::to_wstring(std::stoi(last) + 1);
            EXPECT_LE(Position(format, text), Position(format, seconds + separator + more)) << text;
        }
    }
    for (const int format : {QVPOSFMT_TIME_METRIC, QVPOSFMT_FRAMES_METRIC, QVPOSFMT_PERCENT, QVPOSFMT_TIME})
        EXPECT_LE(Position(format, L"1.24"), Position(format, L"1.25"));
}

TEST(PosFmtLaws, AnyTextIsReadToAPlaceInside)
{
    Random random(3);
    const std::wstring alphabet = L"0123456789::..,;; \t%-x\u066b\u202f" + std::wstring(1, L'\0');
    const ZeString separators[] = {L".", L",", L":", L" ", L"-", L"%", L"", L"5", L"\u066b", L"\u202f"};
    for (int i = 0; i < 60000; ++i) {
        ZeString text;
        for (std::size_t size = random() % (i % 8 ? 16 : 100); text.size() < size;)
            text += alphabet[random() % alphabet.size()];
        text.shrink_to_fit(); // so that a checked build sees reads past the end
        const ZeString& decimal = separators[random() % std::size(separators)];
        const ZeString& group = separators[random() % std::size(separators)];
        const Format fmt(kTextFormats[random() % std::size(kTextFormats)], 1 + static_cast<unsigned>(random() % 48000));
        const PosFmtReading reading = Read(fmt, text, decimal, group, static_cast<unsigned>(random() % 8));
        ASSERT_LE(reading.stop, text.size());
        ASSERT_TRUE(reading.accepted || reading.reason != PosFmtReason::None) << text;
    }
}

TEST(PosFmtLaws, AbsurdParametersStillGiveNumbers)
{
    constexpr double kInf = std::numeric_limits<double>::infinity();
    constexpr long long kLowest = std::numeric_limits<long long>::min(),
                        kHighest = std::numeric_limits<long long>::max();
    const double rates[] = {0, -0.0, -25, 1e-300, 1e300, kInf, -kInf, std::nan(""), 0x1p32, 29.97};
    const long long positions[] = {0, 1, -1, kLowest, kHighest, 1LL << 53};
    const std::wstring digits = L"0123456789:;.,- %";
    for (int format = -1; format <= QVPOSFMT_PERCENT + 1; ++format)
        for (const double rate : rates)
            for (const unsigned sampleRate : {0u, 1u, 48000u, 4294967295u})
                for (const long long position : positions) {
                    Format fmt(format, sampleRate, rate);
                    fmt.dTempo = rate;
                    fmt.ccPercentBase = position;
                    fmt.cTicksPerBeat = fmt.wBeatsPerMeasure = static_cast<unsigned short>(position);
                    const ZeString text = Write(fmt, position, kPoint, kComma, 0);
                    ASSERT_EQ(text.find_first_not_of(digits), ZeString::npos) << text;
                    ASSERT_LE(text.size(), 79u);
                    if (!text.empty()) Read(fmt, text, kPoint, kComma, 0);
                    bool coarse = false;
                    unsigned stepCount = 0;
                    for (const double span : {0.0, -5.0, 1e300, kInf, std::nan(""), static_cast<double>(position)})
                        NiceTick(span, fmt, &coarse, &stepCount);
                    _measureval measures{};
                    measures.tempo = rate;
                    PositionToMeasures(position, sampleRate, &measures);
                    MeasuresToPosition(sampleRate, &measures);
                    _smpteval label{};
                    SamplesToSmpte(label, rate, static_cast<double>(position));
                }
}
