#include "PosFmtFixture.h"

#include <cmath>
#include <random>

// What holds for many values, where a table only has those that somebody thought of.

namespace {

constexpr int kTextFormats[] = {
    QVPOSFMT_TIME,      QVPOSFMT_TIME_METRIC,      QVPOSFMT_FRAMES,           QVPOSFMT_FRAMES_METRIC,
    QVPOSFMT_MEASURES,  QVPOSFMT_SMPTE_NONDROP_29, QVPOSFMT_SMPTE_NONDROP_30, QVPOSFMT_SMPTE_DROP,
    QVPOSFMT_SMPTE_EBU, QVPOSFMT_SMPTE_FILM,       QVPOSFMT_TIME_CD,          QVPOSFMT_PERCENT};

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
