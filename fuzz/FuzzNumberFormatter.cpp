// Numbers in the locale's writing: a locale, a pattern, a text.

#include "Foundation/NSAutoreleasePool.h"
#include "Foundation/NSNumberFormatter.h"
#include "Foundation/NSString.h"
#include "FuzzInput.h"

#include <array>

namespace {

constexpr const char* kLocales[] = {"en_US", "de_DE", "fr_FR", "de_CH", "ar_EG", "hi_IN", "en_US_POSIX"};

/// Made once: each takes long.
NSNumberFormatter& formatterOf(std::size_t locale)
{
    static std::array<RetainPtr<NSNumberFormatter>, std::size(kLocales)> formatters;
    auto& formatter = formatters[locale];
    if (!formatter) {
        formatter = make<NSNumberFormatter>();
        formatter->setLocaleIdentifier(NSString::string(kLocales[locale]).get());
    }
    return *formatter;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const NSAutoreleasePool pool;
    FuzzInput input(data, size);
    NSNumberFormatter& formatter = formatterOf(input.take<std::uint8_t>() % std::size(kLocales));
    const auto value = input.take<double>();
    formatter.setFormat("#,##0.##"_ns.get());
    formatter.setFormat(NSString::string(input.line()).get());
    const auto number = formatter.numberFromString(NSString::string(input.rest()).get());
    if (number) {
        FuzzExpect(number->doubleValue() == number->doubleValue(), "not-a-number is refused");
        FuzzExpect(formatter.stringFromNumber(number.get()).get(), "what was read can be written");
    }
    formatter.stringFromNumber(NSNumber::numberWithDouble(value).get());
    return 0;
}
