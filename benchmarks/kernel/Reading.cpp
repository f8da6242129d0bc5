// Text to positions: the kernel's functions, the format object, and what else reads the same text.

#include "Samples.h"

#include <cwchar>
#include <memory>
#include <unicode/decimfmt.h>

extern "C" {
#include <libavutil/timecode.h>
}

namespace {

using Texts = Inputs<ZeString>;

/// Text without grouping, which the C library can't read.
std::shared_ptr<const Texts> plainTextsOf(_qvposfmt_format format)
{
    Texts texts = textsOf(format);
    if (format != QVPOSFMT_SAMPLES)
        for (ZeString& text : texts) std::erase(text, L',');
    return std::make_shared<const Texts>(std::move(texts));
}

template <typename Read>
void measureKernel(const BenchFormat& row, const char* converter, const std::shared_ptr<const Texts>& texts, Read read)
{
    const auto fmt = std::make_shared<ZePosFmt>();
    setUp(*fmt, row.format);
    Inputs<long long> expected;
    for (std::size_t i = 0; i < kInputs; ++i) expected[i] = fmt->numberValue((*texts)[i], 0);
    measure(std::string("read/") + row.name + '/' + converter, expected,
            [kept = fmt, fmt = fmt.get(), alsoKept = texts, texts = texts->data(), read](std::size_t i) {
                return read(texts[i], *fmt);
            });
}

void measureObject(const BenchFormat& row, const std::shared_ptr<const Texts>& texts)
{
    measureKernel(row, "object", texts, [](const ZeString& text, ZePosFmt& fmt) { return fmt.numberValue(text, 0); });
}

Inputs<Numbers> numbersOf(const Texts& texts)
{
    Inputs<Numbers> numbers;
    for (std::size_t i = 0; i < kInputs; ++i) numbers[i] = numbersOf(texts[i]);
    return numbers;
}

/// The C library reads the fields only; the kernel makes a position of them too.
void measureScanned(const BenchFormat& row, const std::shared_ptr<const Texts>& texts, const wchar_t* format)
{
    measure(std::string("read/") + row.name + "/swscanf", numbersOf(*texts), [texts, format](std::size_t i) {
        Numbers n;
        n.count =
            static_cast<unsigned>(std::swscanf((*texts)[i].c_str(), format, &n.at[0], &n.at[1], &n.at[2], &n.at[3]));
        return n;
    });
}

void measureLibavutil(const BenchFormat& row, const std::shared_ptr<const Texts>& texts)
{
    Inputs<int> frames;
    const auto narrow = std::make_shared<Inputs<std::string>>();
    for (std::size_t i = 0; i < kInputs; ++i) {
        _smpteval label{};
        label.type = PosFmtFactsOf(row.format)->smpteType;
        AsciiToSMPTE((*texts)[i], &label, kThousands);
        frames[i] = static_cast<int>(SMPTEToFrameCount(&label));
        (*narrow)[i].assign((*texts)[i].begin(), (*texts)[i].end());
    }
    const bool isNtsc = row.format == QVPOSFMT_SMPTE_NONDROP_29 || row.format == QVPOSFMT_SMPTE_DROP;
    const int perSecond = row.format == QVPOSFMT_SMPTE_EBU ? 25 : row.format == QVPOSFMT_SMPTE_FILM ? 24 : 30;
    const AVRational rate = isNtsc ? AVRational{30000, 1001} : AVRational{perSecond, 1};
    measure(std::string("read/") + row.name + "/libavutil", frames, [narrow, rate](std::size_t i) {
        AVTimecode timecode;
        av_timecode_init_from_string(&timecode, rate, (*narrow)[i].c_str(), nullptr);
        return timecode.start;
    });
}

void measureSamples()
{
    const auto texts = plainTextsOf(kSamples.format);
    measureObject(kSamples, texts);
    const auto units = std::make_shared<Inputs<icu::UnicodeString>>();
    for (std::size_t i = 0; i < kInputs; ++i)
        for (const wchar_t c : (*texts)[i]) (*units)[i].append(static_cast<UChar>(c));

    UErrorCode error = U_ZERO_ERROR;
    const auto icu = std::make_shared<icu::DecimalFormat>(
        u"#,##0.##", icu::DecimalFormatSymbols(icu::Locale("en_US"), error), error);
    measure("read/samples/icu", kPositions, [icu, units](std::size_t i) {
        icu::Formattable number;
        UErrorCode status = U_ZERO_ERROR;
        icu->parse((*units)[i], number, status);
        return static_cast<long long>(number.getInt64(status));
    });
}

/// The value as a number; the text is read to its end.
void measureScannedNumber(const BenchFormat& row, const std::shared_ptr<const Texts>& texts)
{
    Inputs<double> expected;
    for (std::size_t i = 0; i < kInputs; ++i) expected[i] = std::wcstod((*texts)[i].c_str(), nullptr);
    const wchar_t* const format = row.format == QVPOSFMT_PERCENT ? L"%lf %%" : L"%lf";
    measure(std::string("read/") + row.name + "/swscanf", expected, [texts, format](std::size_t i) {
        double value = 0;
        std::swscanf((*texts)[i].c_str(), format, &value);
        return value;
    });
}

} // namespace

void measureReading()
{
    for (const BenchFormat& row : kTimecodes) {
        const auto texts = plainTextsOf(row.format);
        measureKernel(row, "kernel", texts, readTimecode);
        measureObject(row, texts);
        measureLibavutil(row, texts);
        measureScanned(row, texts, row.format == QVPOSFMT_SMPTE_DROP ? L"%u:%u:%u;%u" : L"%u:%u:%u:%u");
    }
    for (const BenchFormat& row : kTimes) {
        const auto texts = plainTextsOf(row.format);
        measureKernel(row, "kernel", texts, readTime);
        measureObject(row, texts);
        measureScanned(row, texts, (*texts)[0][8] == L'.' ? L"%u:%u:%u.%u" : L"%u:%u:%u:%u");
    }
    for (const BenchFormat& row : kMetrics) {
        const auto texts = plainTextsOf(row.format);
        measureKernel(row, "kernel", texts, readMetric);
        measureObject(row, texts);
        measureScannedNumber(row, texts);
    }
    const auto texts = plainTextsOf(kMeasures.format);
    measureKernel(kMeasures, "kernel", texts, readMeasures);
    measureObject(kMeasures, texts);
    measureScanned(kMeasures, texts, L"%u:%u.%u");
    measureSamples();
}
