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
    const auto check = [](const char* text, double hz, const char* users = "C") {
        const ScopedLocale locale(users);
        EXPECT_NEAR(read(*make<TonaroFrequencyFormatter>(), text), hz, std::abs(hz) * 1e-6) << users << ' ' << text;
    };
    check("1000", 1000);
    check(" 1k ", 1000);
    check("1.5 kHz", 1500);
    check("440 Hz", 440);
    check("1,234.5", 1234.5);
    check("1234,5", 1234.5, "de_DE.UTF-8");
    check("1,5k", 1500, "de_DE.UTF-8");
    check("1.5k", 1500, "de_DE.UTF-8");
    check("1\u202F234,5 Hz", 1234.5, "fr_FR.UTF-8");
    check("A4", 440);
    check("C#5+20c", 560.8066760);
    check("C♯5 + 20 ct", 560.8066760);
    check("Bb-1", 14.5676175);
    check("A4 -50 cents", 427.4740541);
    check("B#3", 261.6255653);
    check("Cb4", 246.9416506);
    check("-5", -5); // the unit answers with its lowest
    const std::string endless = std::string(998, '9') + " k";
    for (const char* text :
         {"H4", "A4 20", "A9999999", "A400000", "k", "1e5", "12 34", "nan", "\U0001D11E", endless.c_str()})
        check(text, kRefused);
}

TEST(TonaroGainFormatter, ReadsWhatPeopleWrite)
{
    const auto formatter = make<TonaroGainFormatter>();
    formatter->setNegativeInfinitySymbol("-Inf"_ns.get());
    for (const char* text : {"-6", "-6 dB", "-6DB", "\u22126 dB"}) EXPECT_EQ(read(*formatter, text), -6) << text;
    for (const char* text : {"0.5x", "0.5 ×"}) EXPECT_NEAR(read(*formatter, text), -6.0205999, 1e-6) << text;
    EXPECT_EQ(read(*formatter, "1X"), 0);
    EXPECT_EQ(read(*formatter, "+3"), 3);
    for (const char* text : {"0x", "-inf", "-Inf dB", "-∞"}) EXPECT_EQ(read(*formatter, text), kSilence) << text;
    for (const char* text : {"inf", "-0.5x", "x", "dB", "--6", "loud"})
        EXPECT_EQ(read(*formatter, text), kRefused) << text;
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
