#include "zepos/Converter.h"

#include "zepos/FormatNames.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <stdexcept>

namespace {

void configure(ZePosFmt& fmt, const Options& options, std::optional<_qvposfmt_format> format)
{
    fmt.dwSampleRate = options.sampleRate;
    fmt.dFrameRate = options.frameRate;
    fmt.dTempo = options.tempo;
    fmt.ntOffset = options.offset;
    fmt.ccPercentBase = options.percentBase;
    fmt.wBeatValue = options.beatValue;
    fmt.wBeatsPerMeasure = options.beatsPerMeasure;
    fmt.cTicksPerBeat = options.ticksPerBeat;
    fmt.setType(format.value_or(QVPOSFMT_SAMPLES));
}

/// The offset belongs to the formats: a plain count is the position itself.
unsigned flagsOf(const Options& options, std::optional<_qvposfmt_format> format)
{
    return options.isLength || !format ? unsigned{kPosFmtLength} : 0;
}

bool isAscii(std::string_view text)
{
    unsigned char bits = 0;
    for (const char c : text) bits |= static_cast<unsigned char>(c);
    return bits < 0x80;
}

/// @return false, with the well-formed start in `out`, for bytes that are no UTF-8
bool decode(std::string_view text, ZeString& out)
{
    if (isAscii(text)) {
        out.assign(text.begin(), text.end());
        return true;
    }
    const int size = static_cast<int>(text.size());
    out.resize(text.size());
    StdConvert(out.data(), size, text.data(), size, ZeUTF8Locale());
    out.resize(out.find(L'\0') == out.npos ? out.size() : out.find(L'\0'));
    // The conversion stops quietly, and takes some sequences that UTF-8 forbids: what doesn't come back is refused.
    std::string back(text.size(), '\0');
    StdConvert(back.data(), size, out.data(), static_cast<int>(out.size()), ZeUTF8Locale());
    return back == text;
}

void append(const ZeString& text, std::string& out)
{
    const std::size_t before = out.size();
    wchar_t bits = 0;
    for (const wchar_t c : text) {
        bits |= c;
        out += static_cast<char>(c);
    }
    if (bits < 0x80) return;
    out.resize(before + text.size() * 4);
    StdConvert(out.data() + before, static_cast<int>(text.size() * 4), text.data(), static_cast<int>(text.size()),
               ZeUTF8Locale());
    out.resize(out.find('\0', before) == out.npos ? out.size() : out.find('\0', before));
}

} // namespace

Converter::Converter(const Options& options)
    : mWritesPlainCount(!options.to),
      mReadFlags(flagsOf(options, options.from)),
      mWriteFlags(flagsOf(options, options.to))
{
    configure(mFrom, options, options.from);
    configure(mTo, options, options.to);
}

/// Digits alone read the same in every locale, and need no locale data.
bool Converter::readPlainCount(std::string_view text, long long& position) const
{
    if (mFrom.eFormat != QVPOSFMT_SAMPLES || (mFrom.ntOffset != 0 && mReadFlags == 0)) return false;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), position);
    return error == std::errc() && end == text.data() + text.size();
}

std::optional<Converter::Remark> Converter::read(std::string_view text, long long& position)
{
    if (readPlainCount(text, position)) return std::nullopt;
    const std::size_t nul = text.find('\0');
    if (!decode(text.substr(0, nul), mText)) return Remark{true, "no UTF-8", mText.size()};
    if (nul != text.npos) return Remark{true, PosFmtReasonText(PosFmtReason::UnexpectedCharacter), mText.size()};
    const PosFmtReading reading = mFrom.readValue(mText, mReadFlags);
    position = reading.position;
    if (reading.accepted && reading.reason == PosFmtReason::None) return std::nullopt;
    return Remark{!reading.accepted, PosFmtReasonText(reading.reason), reading.stop};
}

void Converter::write(long long position, std::string& out)
{
    if (mWritesPlainCount) {
        char digits[24];
        out.append(digits, std::to_chars(digits, std::end(digits), position).ptr);
    } else {
        mTo.stringValue(mText, position, mWriteFlags);
        append(mText, out);
    }
    out += '\n';
}

std::optional<Converter::Remark> Converter::convert(std::string_view text, std::string& out)
{
    long long position = 0;
    const std::optional<Remark> remark = read(text, position);
    if (!remark || !remark->refused) write(position, out);
    return remark;
}

std::string Converter::ticksFor(double span)
{
    bool coarse = false;
    unsigned stepCount = 0;
    const double step = mTo.formatTicks(span, &coarse, &stepCount);
    if (!std::isfinite(step)) throw std::range_error("--ticks-for: this step has too many samples");
    char digits[400]; // of the largest double
    char* const end = std::to_chars(digits, std::end(digits), step, std::chars_format::fixed).ptr;
    return std::string(digits, end) + (coarse ? " coarse " : " fine ") + std::to_string(stepCount) + '\n';
}

std::string formatList(Options options)
{
    constexpr std::string_view kExample = "1800000";
    constexpr std::size_t kNameWidth = 18, kExampleWidth = 15;
    if (options.percentBase == 0) options.percentBase = 3600000;
    options.from = std::nullopt;
    std::string list;
    for (const FormatName& row : formatNames()) {
        options.to = row.format;
        std::string example;
        Converter(options).convert(kExample, example);
        example.pop_back(); // the newline
        const std::size_t shown = static_cast<std::size_t>(
            std::count_if(example.begin(), example.end(), [](char c) { return (c & 0xC0) != 0x80; }));
        list.append(row.name).append(kNameWidth - std::min(kNameWidth, row.name.size()), ' ');
        list.append(example).append(kExampleWidth - std::min(kExampleWidth, shown), ' ').append(row.meaning) += '\n';
    }
    return list;
}
