#include "ZeTimeTextFormatter.h"

#include "Foundation/NSLog.h"
#include "PosFmtFixture.h"
#include "ScopedLocale.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr const char* kPosFmtEncoding = "{ZePosFmt=^{ZeFormatterPlatform}iIddqq(?=I{?=SS}{?=SS})I}";

/// Time at 48000 samples per second, in English.
class ZeTimeTextFormatterTest : public testing::Test {
protected:
    ZeTimeTextFormatterTest()
    {
        formatter->setSampleRate(48000);
        NSLogSetSink([this](std::string_view text) { log += text; });
    }
    ~ZeTimeTextFormatterTest() override { NSLogSetSink({}); }

    std::string shown(long long position) const
    {
        return formatter->stringForObjectValue(NSNumber::numberWithLongLong(position).get())->utf8();
    }
    long long read(const std::string& text) const
    {
        RetainPtr<NSObject> object;
        EXPECT_TRUE(formatter->getObjectValue(&object, NSString::string(text).get(), nullptr)) << text;
        const auto* number = asKind<NSNumber>(object.get());
        return number ? number->longLongValue() : -1;
    }
    /// The parameters as another formatter would get them.
    void unbox(ZePosFmt& fmt) const
    {
        formatter->posFormatter()->getValue(&fmt);
        fmt.pFormatter = nullptr;
    }

    ScopedLocale english{"en_US.UTF-8"};
    RetainPtr<ZeTimeTextFormatter> formatter = make<ZeTimeTextFormatter>();
    std::string log;
};

TEST_F(ZeTimeTextFormatterTest, ReadsLegalTextWhateverItSays)
{
    const auto position = [this](int format, const std::string& text) {
        formatter->setFormat(format);
        return read(text);
    };
    EXPECT_EQ(position(QVPOSFMT_TIME, "12:34"), 754 * 48000);
    EXPECT_EQ(position(QVPOSFMT_TIME, ""), 0);
    EXPECT_EQ(position(QVPOSFMT_TIME, ":::::::"), 0);
    EXPECT_EQ(position(QVPOSFMT_SAMPLES, "120,000"), 120000);
    EXPECT_EQ(position(QVPOSFMT_SAMPLES, "1:2"), 0);
    EXPECT_EQ(position(QVPOSFMT_RESERVED_11, "12"), 0);
    for (int format = -1; format <= 21; ++format) position(format, std::string(200, '9'));
    EXPECT_EQ(log, "");
}

TEST_F(ZeTimeTextFormatterTest, RefusesIllegalCharactersWithReasonAndLogLine)
{
    static const char* const kTexts[] = {"1;2", "-1", "12s", "1\t2", "1\n", "1\u202F000", "1\u2019000", "\U0001F600"};
    for (const char* text : kTexts) {
        const RetainPtr<NSObject> before = "before"_ns;
        RetainPtr<NSObject> object = before;
        RetainPtr<NSString> why;
        EXPECT_FALSE(formatter->getObjectValue(&object, NSString::string(text).get(), &why)) << text;
        EXPECT_EQ(object, before);
        ASSERT_NE(why, nullptr);
        EXPECT_EQ(why->utf8(), "This string contains illegal characterst") << "the key, where no table has it";
        std::string line = std::string("This string contains illegal characters: ") + text;
        std::replace(line.begin(), line.end(), '\n', ' '); // the log writes one line
        EXPECT_EQ(std::exchange(log, {}), line);
        EXPECT_FALSE(formatter->getObjectValue(nullptr, NSString::string(text).get(), nullptr)) << text;
        EXPECT_NE(std::exchange(log, {}), "");
    }
    EXPECT_TRUE(formatter->isPartialStringValid("12s"_ns.get(), nullptr, nullptr)) << "refused when committed";
    for (const char* const text : {"1\n2", "1\n", "\t1"})
        EXPECT_FALSE(formatter->isPartialStringValid(NSString::string(text).get(), nullptr, nullptr));
}

TEST_F(ZeTimeTextFormatterTest, UnchangedTextIsTheVeryObject)
{
    const RetainPtr<NSObject> value = NSNumber::numberWithFloat(120000.5F);
    formatter->setObjectValue(value);
    formatter->setObjectValue(value);
    const auto result = [this](const char* text) {
        RetainPtr<NSObject> object;
        formatter->getObjectValue(&object, NSString::string(text).get(), nullptr);
        return object;
    };
    EXPECT_EQ(result("00:00:02.500"), value);
    EXPECT_NE(result("0:0:2.5"), value);
    formatter->setFormat(QVPOSFMT_SAMPLES);
    EXPECT_NE(result("00:00:02.500"), value) << "not the text in this format";
    EXPECT_EQ(result("120,000"), value);
    formatter->cleanup();
    formatter->cleanup();
    EXPECT_NE(result("120,000"), value);
    EXPECT_EQ(read("120,000"), 120000) << "conversions come back after the clean-up";
    formatter->setObjectValue("text"_ns.get());
    EXPECT_EQ(formatter->stringForObjectValue("120000"_ns.get()), nullptr);
    EXPECT_EQ(formatter->stringForObjectValue(nullptr), nullptr);
    EXPECT_EQ(read("7"), 7);
}

TEST_F(ZeTimeTextFormatterTest, ALengthIgnoresTheOffset)
{
    ZePosFmt fmt;
    fmt.eFormat = QVPOSFMT_SAMPLES;
    fmt.ntOffset = 1000;
    formatter->setPosFormatter(NSValue::value(&fmt, kPosFmtEncoding).get());
    EXPECT_EQ(shown(1000), "0");
    EXPECT_EQ(read("5"), 1005);
    formatter->setIsLength(true);
    EXPECT_EQ(shown(1000), "1,000");
    EXPECT_EQ(read("5"), 5);
}

TEST_F(ZeTimeTextFormatterTest, HandsItsFormatOver)
{
    auto source = make<ZeTimeTextFormatter>();
    source->setFormat(QVPOSFMT_PERCENT);
    source->setSampleRate(44100.9);
    source->setFrameRate(12.5);
    source->setTempo(90);
    source->setTimeSignature(0x30004);
    source->setTicksPerBeat(480);
    source->setPercentBase(1000);
    const RetainPtr<NSNumber> half = NSNumber::numberWithLongLong(500);
    EXPECT_EQ(source->stringForObjectValue(half)->utf8(), "50.00 %"); // its platform part exists from here on
    const RetainPtr<NSValue> boxed = source->posFormatter();
    formatter->setPercentBase(2000.7);
    EXPECT_EQ(shown(48000), "00:00:01.000");

    formatter->setPosFormatter(boxed);
    source.reset(); // the box owns nothing of it, nor does who took it over
    EXPECT_EQ(shown(500), "25.00 %") << "the percent base stays";
    ZePosFmt fmt;
    unbox(fmt);
    EXPECT_EQ(StoredText(fmt), L"cTicksPerBeat=480 ccPercentBase=2000 dFrameRate=12.5 dTempo=90 dwSampleRate=44100 "
                               L"dwTimeSignature=196612 eFormat=20 ntOffset=0 ");

    formatter->setPosFormatter(nullptr);
    formatter->setPosFormatter(NSNumber::numberWithDouble(1).get());
    EXPECT_EQ(shown(500), "25.00 %");
}

TEST_F(ZeTimeTextFormatterTest, SampleRatesKeepTheirLowBits)
{
    const auto kept = [this](double rate) {
        ZePosFmt fmt;
        formatter->setSampleRate(rate);
        unbox(fmt);
        return fmt.dwSampleRate;
    };
    EXPECT_EQ(kept(44099.99), 44099u);
    EXPECT_EQ(kept(4294967296.0 + 8000), 8000u);
    EXPECT_EQ(kept(-1), 0xFFFFFFFF);
    EXPECT_EQ(kept(std::nan("")), 0u);
}

} // namespace
