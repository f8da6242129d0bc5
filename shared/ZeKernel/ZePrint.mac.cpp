#include "ZePrint.h"

#include "Foundation/NSAutoreleasePool.h"
#include "Foundation/NSNumber.h"
#include "Foundation/NSNumberFormatter.h"
#include "Foundation/NSString.h"

#include <algorithm>
#include <new>

namespace {

constexpr std::size_t kLongestText = 79; // of what is looked at to find where a refused number stops

RetainPtr<NSNumberFormatter> MakeNumberFormatter()
{
    auto formatter = make<NSNumberFormatter>();
    formatter->setLocalizesFormat(true);
    formatter->setHasThousandSeparators(true);
    return formatter;
}

const NSString* SamplesPattern()
{
    static const RetainPtr<NSString> pattern = "#,##0.##"_ns;
    return pattern;
}

/// The user's separators; the kernel looks at the first character of each.
struct Separators {
    ZeString decimal, thousands;

    void readFrom(const NSNumberFormatter& formatter)
    {
        decimal = formatter.decimalSeparator().get();
        thousands = formatter.thousandSeparator().get();
    }
};

/// True for text that reads the same whatever groups the digits: ':', '.' and ';' always separate.
bool IsPlainTimecode(const ZeString& text)
{
    return std::all_of(text.begin(), text.end(), [](wchar_t c) {
        return (c >= L'0' && c <= L'9') || c == _cSMPTEWhole || c == _cSMPTEFraction || c == _cSMPTESemi;
    });
}

class ZeFormatterMac final : public ZeFormatterPlatform {
public:
    void stringValue(ZeString& out, long long position, ZePosFmt& fmt, unsigned flags) override;
    long long numberValue(const ZeString& text, ZePosFmt& fmt, unsigned flags) override;
    double formatTicks(double span, ZePosFmt& fmt, bool* coarse, unsigned* stepCount) override;
    PosFmtReading readValue(const ZeString& text, ZePosFmt& fmt, unsigned flags) override;

private:
    NSNumberFormatter& numberFormatter();
    const Separators& separators();
    /// Sample counts.
    void writeCount(ZeString& out, long long count);
    PosFmtReading readCount(const ZeString& text);

    RetainPtr<NSNumberFormatter> pNumberFormatter; ///< made when first needed: it takes 30 ms, and timecode needs none
    Separators mSeparators;                        ///< its locale doesn't change
};

PosFmtKernel KernelOf(const ZePosFmt& fmt)
{
    const PosFmtFacts* facts = PosFmtFactsOf(fmt.eFormat);
    return facts ? facts->kernel : PosFmtKernel::None;
}

} // namespace

NSNumberFormatter& ZeFormatterMac::numberFormatter()
{
    if (!pNumberFormatter) {
        const NSAutoreleasePool pool;
        pNumberFormatter = MakeNumberFormatter();
        mSeparators.readFrom(*pNumberFormatter);
    }
    return *pNumberFormatter;
}

const Separators& ZeFormatterMac::separators()
{
    numberFormatter();
    return mSeparators;
}

void ZeFormatterMac::stringValue(ZeString& out, long long position, ZePosFmt& fmt, unsigned flags)
{
    switch (KernelOf(fmt)) {
    case PosFmtKernel::Samples:
        return writeCount(out, position);
    case PosFmtKernel::SmpteLike:
        return SMPTELike_ToString(out, fmt, position, separators().decimal, flags);
    case PosFmtKernel::Metric:
        return Metric_ToString(out, fmt, position, separators().decimal, mSeparators.thousands, flags);
    case PosFmtKernel::MusicTime:
        return MusicTime_ToString(out, fmt, position, separators().decimal, flags);
    case PosFmtKernel::Smpte:
        return SMPTE_ToString(out, position, fmt, flags);
    case PosFmtKernel::None:
        break;
    }
    ZeSprintf(out, L"!");
}

long long ZeFormatterMac::numberValue(const ZeString& text, ZePosFmt& fmt, unsigned flags)
{
    const PosFmtReading reading = readValue(text, fmt, flags);
    return reading.accepted ? reading.position : 0;
}

PosFmtReading ZeFormatterMac::readValue(const ZeString& text, ZePosFmt& fmt, unsigned flags)
{
    switch (KernelOf(fmt)) {
    case PosFmtKernel::Samples:
        return readCount(text);
    case PosFmtKernel::SmpteLike:
        return SMPTELike_Read(text, fmt, separators().decimal, mSeparators.thousands, flags);
    case PosFmtKernel::Metric:
        return Metric_Read(text, fmt, separators().decimal, mSeparators.thousands, flags);
    case PosFmtKernel::MusicTime:
        return MusicTime_Read(text, fmt, separators().decimal, mSeparators.thousands, flags);
    case PosFmtKernel::Smpte:
        return SMPTE_Read(text, fmt, IsPlainTimecode(text) ? mSeparators.thousands : separators().thousands, flags);
    case PosFmtKernel::None:
        break;
    }
    return {false, PosFmtReason::NoConversion, 0, 0};
}

double ZeFormatterMac::formatTicks(double span, ZePosFmt& fmt, bool* coarse, unsigned* stepCount)
{
    return NiceTick(span, fmt, coarse, stepCount);
}

void ZeFormatterMac::writeCount(ZeString& out, long long count)
{
    const NSAutoreleasePool pool;
    numberFormatter().setFormat(SamplesPattern());
    const RetainPtr<NSString> text = pNumberFormatter->stringFromNumber(NSNumber::numberWithLongLong(count).get());
    const std::u16string_view units = text ? std::u16string_view(text->units()) : std::u16string_view();
    // Units that are code points need no conversion, and the text keeps its room.
    out.resize(units.size());
    std::copy(units.begin(), units.end(), out.begin());
    if (std::any_of(units.begin(), units.end(), [](char16_t unit) { return (unit & 0xF800) == 0xD800; }))
        out = ZeString(text.get());
}

PosFmtReading ZeFormatterMac::readCount(const ZeString& text)
{
    const NSAutoreleasePool pool;
    numberFormatter().setFormat(SamplesPattern());
    const auto read = [this](const ZeString& part) { return pNumberFormatter->numberFromString(part); };
    const std::size_t end = std::min(text.find(L'\0'), text.size()); // where the platform's strings end
    if (const auto number = read(text)) {
        const PosFmtReason reason = end == text.size() ? PosFmtReason::None : PosFmtReason::UnexpectedCharacter;
        return {true, reason, end, number->longLongValue()};
    }
    // The platform refuses a text as a whole: the longest start that is a number tells where it went wrong.
    for (std::size_t stop = std::min(end, kLongestText); stop > 0; --stop) {
        const auto number = read(text.substr(0, stop));
        if (!number) continue;
        const PosFmtReason reason = stop < kLongestText ? PosFmtReason::UnexpectedCharacter : PosFmtReason::TextTooLong;
        return {false, reason, stop, number->longLongValue()};
    }
    return {false, PosFmtReason::NotANumber, 0, 0};
}

bool ZePosFmt::initFormatter()
{
    if (!pFormatter) pFormatter = new (std::nothrow) ZeFormatterMac;
    return pFormatter != nullptr;
}

void ZeFormatterPlatform::stringFromDouble(ZeString& out, double value, const wchar_t* pattern)
{
    const NSAutoreleasePool pool;
    Separators separators;
    separators.readFrom(*MakeNumberFormatter());
    FormatFloatPretty(out, value, pattern, separators.decimal, separators.thousands, true);
    if (value < 0.0) out.insert(0, 1, L'-');
}
