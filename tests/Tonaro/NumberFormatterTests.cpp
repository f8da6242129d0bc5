// What people write into the frequency and gain fields, and the names of notes.

#include "TonaroNotes.h"
#include "TonaroNumberFormatters.h"
#include "ZeKernel/ScopedLocale.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

constexpr double kRefused = -1e9;
constexpr double kSilence = -HUGE_VAL;

template <typename Formatter> double read(const Formatter& formatter, const char* text)
{
    RetainPtr<NSObject> value;
    RetainPtr<NSString> why;
    const bool accepted = formatter.getObjectValue(&value, NSString::string(text).get(), &why);
    EXPECT_EQ(accepted, !why) << "each refusal has its reason";
    const auto* number = asKind<NSNumber>(value.get());
    return accepted && number ? number->doubleValue() : kRefused;
}

TEST(TonaroFrequencyFormatter, ReadsWhatPeopleWrite)
{
    const struct {
        const char* locale;
        const char* text;
        double hz;
    } kRows[] = {
        {"C", "1000", 1000},
        {"C", " 1k ", 1000},
        {"C", "1.5 kHz", 1500},
        {"C", "440 Hz", 440},
        {"C", "1,234.5", 1234.5},
        {"de_DE.UTF-8", "1234,5", 1234.5},
        {"de_DE.UTF-8", "1,5k", 1500},
        {"de_DE.UTF-8", "1.5k", 1500},
        {"fr_FR.UTF-8", "1\u202F234,5 Hz", 1234.5},
        {"C", "A4", 440},
        {"C", "C#5+20c", 560.8066760},
        {"C", "C♯5 + 20 ct", 560.8066760},
        {"C", "Bb-1", 14.5676175},
        {"C", "A4 -50 cents", 427.4740541},
        {"C", "B#3", 261.6255653},
        {"C", "Cb4", 246.9416506},
        {"C", "-5", -5}, // the unit answers with its lowest
        {"C", "H4", kRefused},
        {"C", "A4 20", kRefused},
        {"C", "A9999999", kRefused},
        {"C", "A400000", kRefused},
        {"C", "k", kRefused},
        {"C", "1e5", kRefused},
        {"C", "12 34", kRefused},
        {"C", "nan", kRefused},
        {"C", "\U0001D11E", kRefused},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(testing::Message() << row.locale << ' ' << row.text);
        const ScopedLocale locale(row.locale);
        EXPECT_NEAR(read(*make<TonaroFrequencyFormatter>(), row.text), row.hz, std::abs(row.hz) * 1e-6);
    }
    const std::string endless(998, '9');
    EXPECT_EQ(read(*make<TonaroFrequencyFormatter>(), (endless + " k").c_str()), kRefused);
}

TEST(TonaroGainFormatter, ReadsWhatPeopleWrite)
{
    const auto formatter = make<TonaroGainFormatter>();
    formatter->setNegativeInfinitySymbol("-Inf"_ns.get());
    const struct {
        const char* text;
        double decibels;
    } kRows[] = {
        {"-6", -6},       {"-6 dB", -6},     {"-6DB", -6},       {"\u22126 dB", -6},  {"0.5x", -6.0205999},
        {"0.5 ×", -6.02}, {"1X", 0},         {"0x", kSilence},   {"-inf", kSilence},  {"-Inf dB", kSilence},
        {"-∞", kSilence}, {"+3", 3},         {"inf", kRefused},  {"-0.5x", kRefused}, {"x", kRefused},
        {"dB", kRefused}, {"--6", kRefused}, {"loud", kRefused},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.text);
        const double decibels = read(*formatter, row.text);
        if (std::isinf(row.decibels)) {
            EXPECT_EQ(decibels, row.decibels);
        } else {
            EXPECT_NEAR(decibels, row.decibels, 1e-3);
        }
    }
}

TEST(TonaroNumberFormatters, EmptyTextStandsForNoValue)
{
    RetainPtr<NSObject> value = NSNumber::numberWithInt(1);
    EXPECT_TRUE(make<TonaroFrequencyFormatter>()->getObjectValue(&value, "  "_ns.get(), nullptr));
    EXPECT_EQ(value, nullptr);
}

TEST(TonaroNumberFormatters, WhatIsShownReadsBack)
{
    std::mt19937_64 random(1);
    std::uniform_real_distribution<double> exponent(-2, 5);
    for (const char* name : {"C", "de_DE.UTF-8", "fr_FR.UTF-8", "de_CH.UTF-8"}) {
        const ScopedLocale locale(name);
        const auto formatter = make<TonaroFrequencyFormatter>();
        formatter->setMaximumFractionDigits(3);
        for (int i = 0; i < 200; ++i) {
            const double hz = std::pow(10.0, exponent(random));
            const auto shown = formatter->stringFromNumber(NSNumber::numberWithDouble(hz).get());
            EXPECT_NEAR(read(*formatter, shown->utf8().c_str()), hz, 0.00050001) << shown->utf8();
        }
    }
}

TEST(TonaroNotes, NamesTheNearestNote)
{
    const struct {
        double hz;
        const char* name;
    } kRows[] = {{440, "A4"},     {450, "A4 +39 ct"},  {261.6255653, "C4"}, {8.1757989, "C-1"}, {4.2, "C-2 +47 ct"},
                 {466.16, "A♯4"}, {453, "A♯4 −50 ct"}, {0.5, ""},           {NAN, ""},          {HUGE_VAL, ""}};
    for (const auto& row : kRows) EXPECT_EQ(NoteFromHz(row.hz), row.name) << row.hz;

    std::mt19937_64 random(2);
    std::uniform_real_distribution<double> exponent(0.1, 4.3);
    for (int i = 0; i < 500; ++i) {
        const double hz = std::pow(10.0, exponent(random));
        const auto back = HzFromNote(NSString::string(NoteFromHz(hz))->units());
        ASSERT_TRUE(back) << NoteFromHz(hz);
        EXPECT_LE(std::abs(1200 * std::log2(*back / hz)), 0.5001) << NoteFromHz(hz);
    }
}

} // namespace
