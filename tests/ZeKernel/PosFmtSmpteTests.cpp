#include "PosFmtFixture.h"

#include <cstring>

namespace {

constexpr int kSmpteFormats[] = {QVPOSFMT_SMPTE_NONDROP_29, QVPOSFMT_SMPTE_NONDROP_30, QVPOSFMT_SMPTE_DROP,
                                 QVPOSFMT_SMPTE_EBU, QVPOSFMT_SMPTE_FILM};
constexpr unsigned kSampleRates[] = {8000, 11025, 22050, 32000, 44100, 48000, 88200, 96000, 176400, 192000, 384000};

constexpr unsigned kFramesPerDay[] = {0, 2592000, 2589408, 2160000, 2073600, 2592000}; // by kind

// Every frame where the build is fast enough; elsewhere a step that meets all of a label's digits.
#ifdef NDEBUG
constexpr unsigned kStep = 1;
#else
constexpr unsigned kStep = 97;
#endif

std::string LabelOfFrame(unsigned type, long long frame)
{
    _smpteval t{type, 99, 99, 99, 99};
    FrameCountToSMPTE(&t, frame);
    return LabelOf(t);
}

/// Steps through the labels of a day as a clock does, skipping those that don't exist.
class LabelClock {
public:
    LabelClock(unsigned rate, unsigned type) : t{type, 0, 0, 0, 0}, mRate(rate) {}
    void tick()
    {
        if (++t.frames < mRate) return;
        t.frames = 0;
        if (++t.seconds < 60) return;
        t.seconds = 0;
        if (++t.minutes == 60) {
            t.minutes = 0;
            ++t.hours;
        }
        if (t.type == SMPTETYPE_DROP && t.minutes % 10 != 0) t.frames = 2;
    }
    _smpteval t;

private:
    unsigned mRate;
};

} // namespace

TEST(FrameCountToSMPTE, TurnsFramesIntoLabels)
{
    EXPECT_EQ(LabelOfFrame(SMPTETYPE_DROP, 1800), "0:1:0:2") << "minute 1 starts at label 2";
    EXPECT_EQ(LabelOfFrame(SMPTETYPE_DROP, 2589408), "0:0:0:0") << "wraps after 24 hours";
    EXPECT_EQ(LabelOfFrame(SMPTETYPE_DROP, -1), "0:0:0:0") << "a negative count is 0";
    EXPECT_EQ(LabelOfFrame(SMPTETYPE_NONDROP_29, 2592000), "0:0:0:0") << "and wraps later";
    EXPECT_EQ(LabelOfFrame(SMPTETYPE_FILM, 9223372036854775807), "20:38:45:7") << "the largest count";
    EXPECT_EQ(LabelOfFrame(SMPTETYPE_NONE, 1800), "0:1:0:2") << "a kind without frames counts as drop-frame";
    EXPECT_EQ(LabelOfFrame(77, 2589408 + 1800), "0:1:0:2") << "an unknown kind too";
}

TEST(SMPTEToFrameCount, TurnsLabelsIntoFrames)
{
    const auto frame = [](const _smpteval& label) { return SMPTEToFrameCount(&label); };
    EXPECT_EQ(frame({SMPTETYPE_DROP, 0, 1, 0, 0}), 1800u) << "skipped: the next label that exists";
    EXPECT_EQ(frame({SMPTETYPE_DROP, 0, 1, 0, 1}), 1800u);
    EXPECT_EQ(frame({SMPTETYPE_FILM, 0, 75, 0, 99}), 108099u);
    EXPECT_EQ(frame({SMPTETYPE_NONE, 1, 2, 3, 4}), 0u);
    EXPECT_EQ(frame({6, 1, 2, 3, 4}), 0u);
    EXPECT_EQ(frame({SMPTETYPE_EBU, 4294967295, 0, 0, 0}), 4294877296u) << "wraps at 32 bits";
}

TEST(SMPTEToPosition, GivesTheFirstWholeSample)
{
    const _smpteval one{SMPTETYPE_NONDROP_30, 0, 0, 0, 1}, none{9, 1, 1, 1, 1};
    EXPECT_EQ(SMPTEToPosition(48000, &one), 1600);
    EXPECT_EQ(SMPTEToPosition(44100, &none), 0);
    const _smpteval ntsc{SMPTETYPE_NONDROP_29, 0, 0, 0, 1}; // 1601.6 samples
    EXPECT_EQ(SMPTEToPosition(48000, &ntsc), 1602);
}

TEST(SMPTE, FollowsEveryLabelOfADay)
{
    for (const int format : kSmpteFormats) {
        const unsigned type = PosFmtFactsOf(format)->smpteType;
        const unsigned rate = format == QVPOSFMT_SMPTE_EBU ? 25 : format == QVPOSFMT_SMPTE_FILM ? 24 : 30;
        LabelClock clock(rate, type);
        _smpteval t{type, 0, 0, 0, 0};
        unsigned wrong = 0, frame = 0;
        for (; clock.t.hours < 24; clock.tick(), ++frame) {
            FrameCountToSMPTE(&t, frame);
            wrong += std::memcmp(&t, &clock.t, sizeof t) != 0 || SMPTEToFrameCount(&t) != frame;
        }
        EXPECT_EQ(wrong, 0u) << format;
        EXPECT_EQ(frame, type == SMPTETYPE_DROP ? 2589408u : rate * 86400);
    }
}

TEST(SMPTE, FramesSurviveTheWayThroughPositions)
{
    for (const int format : kSmpteFormats)
        for (const unsigned sampleRate : kSampleRates) {
            const unsigned type = PosFmtFactsOf(format)->smpteType;
            unsigned wrong = 0, frame = 0;
            for (_smpteval t{type, 0, 0, 0, 0}, back = t; frame < kFramesPerDay[type]; frame += kStep) {
                FrameCountToSMPTE(&t, frame);
                PositionToSMPTE(SMPTEToPosition(sampleRate, &t), sampleRate, &back);
                wrong += SMPTEToFrameCount(&back) != frame;
            }
            EXPECT_EQ(wrong, 0u) << format << " at " << sampleRate;
        }
}

TEST(AsciiToSMPTE, ReadsFields)
{
    const auto fields = [](const wchar_t* text, const wchar_t* group = L",") {
        _smpteval t{42, 9, 9, 9, 9};
        const bool whole = AsciiToSMPTE(text, &t, 25, group);
        EXPECT_EQ(t.type, 42u);
        return (whole ? "" : "refused ") + LabelOf(t);
    };
    EXPECT_EQ(fields(L"5"), "0:0:0:5") << "the last field is the frames";
    EXPECT_EQ(fields(L"12:05"), "0:0:12:5") << "fields are aligned to the right";
    EXPECT_EQ(fields(L"1:00:00:00"), "1:0:0:0") << "every field";
    EXPECT_EQ(fields(L"01:02.03;04"), "1:2:3:4") << "every separator";
    EXPECT_EQ(fields(L"1:2:3:30"), "1:2:4:5") << "frames carry at 25";
    EXPECT_EQ(fields(L"0:59:59:25"), "1:0:0:0") << "so do the other fields";
    EXPECT_EQ(fields(L"99:00:00:00"), "3:0:0:0") << "hours wrap";
    EXPECT_EQ(fields(L"1:2x"), "refused 0:0:1:2") << "a foreign character ends it";
    EXPECT_EQ(fields(L"12a"), "0:0:12:0") << "without separators it is one";
    EXPECT_EQ(fields(L"1 2 3 4"), "1:2:3:4") << "even a blank";
    EXPECT_EQ(fields(L" \t7 "), "0:0:0:7") << "but not blanks around";
    EXPECT_EQ(fields(L" 1 : 2 :3: 4 "), "1:2:3:4") << "blanks around fields";
    EXPECT_EQ(fields(L"12:"), "0:0:12:0") << "an empty field is 0";
    EXPECT_EQ(fields(L"1:2:3:4:5"), "refused 1:2:3:4") << "a fifth field";
    EXPECT_EQ(fields(L"1,000"), "0:0:1:0") << "grouping separates where nothing else does";
    EXPECT_EQ(fields(L"00:1,000"), "0:0:40:0") << "grouping is skipped elsewhere";
    EXPECT_EQ(fields(L"01:02:03:14", L"1"), "0:2:3:4") << "a grouping digit";
    EXPECT_EQ(fields(L"0:1\u202f000", L"\u202f"), "0:0:40:0") << "grouping outside ASCII";
    EXPECT_EQ(fields(L""), "0:0:0:0") << "nothing";
    EXPECT_EQ(fields(L":4294967297"), "0:0:0:1") << "digits wrap at 32 bits";
}

TEST(AsciiToSMPTE, TakesTheRateOfTheKind)
{
    static const char* const kLabels[] = {"0:0:0:60", "0:0:2:0", "0:0:2:0", "0:0:2:10",
                                          "0:0:2:12", "0:0:2:0", "0:0:0:60"};
    for (unsigned type = 0; type < 7; ++type) {
        _smpteval t{type, 0, 0, 0, 0};
        EXPECT_TRUE(AsciiToSMPTE(L"60", &t, kComma));
        EXPECT_EQ(LabelOf(t), kLabels[type]) << type;
    }
}

TEST(AsciiToSMPTE, RefusesLongText)
{
    _smpteval t{SMPTETYPE_EBU, 9, 9, 9, 9};
    EXPECT_TRUE(AsciiToSMPTE(ZeString(78, L'0') + L"1", &t, kComma));
    EXPECT_EQ(LabelOf(t), "0:0:0:1");
    EXPECT_FALSE(AsciiToSMPTE(ZeString(79, L'0') + L"1", &t, kComma));
    EXPECT_EQ(LabelOf(t), "0:0:0:0");
}

TEST(SamplesToSmpte, SplitsSeconds)
{
    const auto label = [](double frameRate, double seconds) {
        _smpteval t{};
        SamplesToSmpte(t, frameRate, seconds);
        return LabelOf(t);
    };
    EXPECT_EQ(label(25, 3661.04), "1:1:1:1");
    EXPECT_EQ(label(25, 3661.0399999999), "1:1:1:1") << "within the tolerance of a frame";
    EXPECT_EQ(label(25, 3661.0399), "1:1:1:0");
    EXPECT_EQ(label(30, 90000), "1:0:0:0");
    EXPECT_EQ(label(30, 0.999), "0:0:0:29");
    EXPECT_EQ(label(30, 1e300), "15:15:0:0") << "hours and minutes of the largest count";
}
