// Positions to text: the kernel's functions, the format object, and what else prints the same text.

#include "Samples.h"

#include <cstring>
#include <cwchar>
#include <fmt/format.h>
#include <fmt/xchar.h>
#include <memory>
#include <unicode/decimfmt.h>

extern "C" {
#include <libavutil/timecode.h>
}

namespace {

constexpr std::size_t kRoom = 64;

using Texts = Inputs<ZeString>;

template <typename Write>
void measureKernel(const BenchFormat& row, const char* converter, const Texts& texts, Write write)
{
    const auto fmt = std::make_shared<ZePosFmt>();
    const auto out = std::make_shared<ZeString>();
    setUp(*fmt, row.format);
    measure(std::string("write/") + row.name + '/' + converter, texts,
            [kept = fmt, fmt = fmt.get(), alsoKept = out, out = out.get(), write](std::size_t i) {
                write(*out, *fmt, kPositions[i]);
                return std::wstring_view(*out);
            });
}

void measureObject(const BenchFormat& row, const Texts& texts)
{
    measureKernel(row, "object", texts,
                  [](ZeString& out, ZePosFmt& fmt, long long position) { fmt.stringValue(out, position, 0); });
}

/// `print(numbers, out, room)` prints the numbers of a text and returns how many characters it wrote.
template <typename Print>
void measurePrinted(const BenchFormat& row, const char* converter, const Texts& texts, Print print)
{
    const auto numbers = std::make_shared<Inputs<Numbers>>();
    for (std::size_t i = 0; i < kInputs; ++i) (*numbers)[i] = numbersOf(texts[i]);
    const auto out = std::make_shared<std::array<wchar_t, kRoom>>();
    measure(std::string("write/") + row.name + '/' + converter, texts, [numbers, out, print](std::size_t i) {
        return std::wstring_view(out->data(), static_cast<std::size_t>(print((*numbers)[i], out->data())));
    });
}

template <typename... Args> auto printFmt(wchar_t* out, std::wstring_view format, const Args&... args)
{
    return fmt::format_to(out, format, args...) - out;
}

AVTimecode timecodeOf(_qvposfmt_format format)
{
    const bool isNtsc = format == QVPOSFMT_SMPTE_NONDROP_29 || format == QVPOSFMT_SMPTE_DROP;
    const int perSecond = format == QVPOSFMT_SMPTE_EBU ? 25 : format == QVPOSFMT_SMPTE_FILM ? 24 : 30;
    AVTimecode timecode;
    const AVRational rate = isNtsc ? AVRational{30000, 1001} : AVRational{perSecond, 1};
    const int flags = format == QVPOSFMT_SMPTE_DROP ? int{AV_TIMECODE_FLAG_DROPFRAME} : 0;
    if (av_timecode_init(&timecode, rate, flags, 0, nullptr) != 0) throw std::runtime_error("av_timecode_init failed");
    return timecode;
}

void measureLibavutil(const BenchFormat& row, const Texts& texts)
{
    ZePosFmt fmt;
    setUp(fmt, row.format);
    Inputs<int> frames;
    Inputs<std::string> narrow;
    for (std::size_t i = 0; i < kInputs; ++i) {
        _smpteval label{};
        label.type = PosFmtFactsOf(row.format)->smpteType;
        PositionToSMPTE(kPositions[i], kSampleRate, &label);
        frames[i] = static_cast<int>(SMPTEToFrameCount(&label));
        narrow[i].assign(texts[i].begin(), texts[i].end());
    }
    const AVTimecode timecode = timecodeOf(row.format);
    const auto out = std::make_shared<std::array<char, AV_TIMECODE_STR_SIZE>>();
    measure(std::string("write/") + row.name + "/libavutil", narrow, [frames, timecode, out](std::size_t i) {
        return std::string_view(av_timecode_make_string(&timecode, out->data(), frames[i]));
    });
}

void measureTimecode(const BenchFormat& row)
{
    const Texts texts = textsOf(row.format);
    measureKernel(row, "kernel", texts, writeTimecode);
    measureObject(row, texts);
    measureLibavutil(row, texts);
    const bool isDrop = row.format == QVPOSFMT_SMPTE_DROP;
    const wchar_t* const format = isDrop ? L"%02u:%02u:%02u;%02u" : L"%02u:%02u:%02u:%02u";
    measurePrinted(row, "swprintf", texts, [format](const Numbers& n, wchar_t* out) {
        return std::swprintf(out, kRoom, format, n.at[0], n.at[1], n.at[2], n.at[3]);
    });
    if (isDrop)
        measurePrinted(row, "fmt", texts, [](const Numbers& n, wchar_t* out) {
            return printFmt(out, L"{:02}:{:02}:{:02};{:02}", n.at[0], n.at[1], n.at[2], n.at[3]);
        });
}

void measureTime(const BenchFormat& row)
{
    const Texts texts = textsOf(row.format);
    const bool isTime = row.format == QVPOSFMT_TIME;
    const wchar_t separator = texts[0][8];
    measureKernel(row, "kernel", texts, writeTime);
    measureObject(row, texts);
    measurePrinted(row, "swprintf", texts, [isTime, separator](const Numbers& n, wchar_t* out) {
        return std::swprintf(out, kRoom, isTime ? L"%02u:%02u:%02u%lc%03u" : L"%02u:%02u:%02u%lc%02u", n.at[0], n.at[1],
                             n.at[2], static_cast<wint_t>(separator), n.at[3]);
    });
    if (isTime)
        measurePrinted(row, "fmt", texts, [separator](const Numbers& n, wchar_t* out) {
            return printFmt(out, L"{:02}:{:02}:{:02}{}{:03}", n.at[0], n.at[1], n.at[2], separator, n.at[3]);
        });
}

/// The groups of digits and the fraction as whole numbers that somebody else has computed: no way to get this text with
/// the C library is faster.
int printGrouped(wchar_t* out, const Numbers& n, _qvposfmt_format format)
{
    if (format == QVPOSFMT_PERCENT) return std::swprintf(out, kRoom, L"%u.%02u %%", n.at[0], n.at[1]);
    const bool isSix = format == QVPOSFMT_TIME_METRIC;
    switch (n.count) {
    case 2:
        return std::swprintf(out, kRoom, isSix ? L"%u.%06u" : L"%u.%03u", n.at[0], n.at[1]);
    case 3:
        return std::swprintf(out, kRoom, isSix ? L"%u,%03u.%06u" : L"%u,%03u.%03u", n.at[0], n.at[1], n.at[2]);
    default:
        return std::swprintf(out, kRoom, isSix ? L"%u,%03u,%03u.%06u" : L"%u,%03u,%03u.%03u", n.at[0], n.at[1], n.at[2],
                             n.at[3]);
    }
}

/// The number itself, as the C library prints it: without groups.
void measureFloat(const BenchFormat& row, Texts texts)
{
    const bool isPercent = row.format == QVPOSFMT_PERCENT;
    const wchar_t* const format = isPercent ? L"%.2f %%" : row.format == QVPOSFMT_TIME_METRIC ? L"%.6f" : L"%.3f";
    const auto values = std::make_shared<Inputs<double>>();
    for (std::size_t i = 0; i < kInputs; ++i) {
        std::erase(texts[i], L',');
        (*values)[i] = std::wcstod(texts[i].c_str(), nullptr);
    }
    const auto out = std::make_shared<std::array<wchar_t, kRoom>>();
    measure(std::string("write/") + row.name + "/swprintf", texts, [values, format, out](std::size_t i) {
        const int count = std::swprintf(out->data(), kRoom, format, (*values)[i]);
        return std::wstring_view(out->data(), static_cast<std::size_t>(count));
    });
}

void measureMetric(const BenchFormat& row)
{
    const Texts texts = textsOf(row.format);
    measureKernel(row, "kernel", texts, writeMetric);
    measureObject(row, texts);
    measurePrinted(row, "swprintf-parts", texts,
                   [format = row.format](const Numbers& n, wchar_t* out) { return printGrouped(out, n, format); });
    measureFloat(row, texts);
}

void measureMeasures()
{
    const Texts texts = textsOf(kMeasures.format);
    measureKernel(kMeasures, "kernel", texts, writeMeasures);
    measureObject(kMeasures, texts);
    measurePrinted(kMeasures, "swprintf", texts, [](const Numbers& n, wchar_t* out) {
        return std::swprintf(out, kRoom, L"%u:%u.%u", n.at[0], n.at[1], n.at[2]);
    });
    measurePrinted(kMeasures, "fmt", texts, [](const Numbers& n, wchar_t* out) {
        return printFmt(out, L"{}:{}.{}", n.at[0], n.at[1], n.at[2]);
    });
}

void measureSamples()
{
    const Texts texts = textsOf(kSamples.format);
    measureObject(kSamples, texts);
    Inputs<std::u16string> units;
    for (std::size_t i = 0; i < kInputs; ++i) units[i].assign(texts[i].begin(), texts[i].end());

    UErrorCode error = U_ZERO_ERROR;
    const auto icu = std::make_shared<icu::DecimalFormat>(
        u"#,##0.##", icu::DecimalFormatSymbols(icu::Locale("en_US"), error), error);
    const auto out = std::make_shared<icu::UnicodeString>();
    measure("write/samples/icu", units, [icu, out](std::size_t i) {
        icu->format(static_cast<std::int64_t>(kPositions[i]), out->remove());
        return std::u16string_view(out->getBuffer(), static_cast<std::size_t>(out->length()));
    });
}

} // namespace

void measureWriting()
{
    for (const BenchFormat& row : kTimecodes) measureTimecode(row);
    for (const BenchFormat& row : kTimes) measureTime(row);
    for (const BenchFormat& row : kMetrics) measureMetric(row);
    measureMeasures();
    measureSamples();
}
