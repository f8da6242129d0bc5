// What is typed or pasted into the editor's fields: a kind of field, a format, a text.

#include "Foundation/NSAutoreleasePool.h"
#include "FuzzInput.h"
#include "TonaroNotes.h"
#include "TonaroNumberFormatters.h"
#include "TonaroSettingText.h"
#include "ZeTimeTextFormatter.h"

#include <cmath>

namespace {

const NSNumber* read(const NSFormatter& formatter, const NSString* text, RetainPtr<NSObject>& value)
{
    RetainPtr<NSString> why;
    if (!formatter.getObjectValue(&value, text, &why)) {
        FuzzExpect(why && why->length() > 0, "a refusal has its reason");
        return nullptr;
    }
    return asKind<NSNumber>(value.get());
}

void tryFrequency(const NSString* text)
{
    static const auto formatter = make<TonaroFrequencyFormatter>();
    RetainPtr<NSObject> value;
    if (const NSNumber* hz = read(*formatter, text, value))
        FuzzExpect(std::isfinite(hz->doubleValue()), "a frequency is finite");
    if (const auto hz = HzFromNote(text->units()); hz && *hz >= 1 && *hz <= 1e6) {
        const auto back = HzFromNote(NSString::string(NoteFromHz(*hz))->units());
        FuzzExpect(back && std::abs(1200 * std::log2(*back / *hz)) < 0.51, "a note's name reads back");
    }
}

void tryGain(const NSString* text)
{
    static const auto formatter = [] {
        auto made = make<TonaroGainFormatter>();
        made->setNegativeInfinitySymbol("-Inf"_ns.get());
        return made;
    }();
    RetainPtr<NSObject> value;
    if (const NSNumber* decibels = read(*formatter, text, value))
        FuzzExpect(!std::isnan(decibels->doubleValue()), "a gain is a number");
}

void tryLength(int format, double rate, const NSString* text)
{
    static const auto formatter = make<ZeTimeTextFormatter>();
    formatter->setIsLength(true);
    formatter->setFormat(format);
    formatter->setSampleRate(rate);
    formatter->setFrameRate(rate);
    RetainPtr<NSObject> value;
    formatter->isPartialStringValid(text, nullptr, nullptr);
    if (const NSNumber* samples = read(*formatter, text, value)) {
        formatter->setObjectValue(value.get());
        const auto shown = formatter->stringForObjectValue(samples);
        FuzzExpect(shown && shown->length() < 200, "what was read can be shown");
    }
}

void trySetting(std::string_view text)
{
    std::string problem;
    const TonaroSetting setting = TonaroSettingFromText(text, problem);
    FuzzExpect(setting.empty() || problem.empty(), "nothing is taken from a text with a problem");
    for (const auto& [parameter, value] : setting)
        FuzzExpect(parameter < kParamCount && std::isfinite(value), "a setting has parameters and finite values");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const NSAutoreleasePool pool;
    FuzzInput input(data, size);
    const auto kind = input.take<std::uint8_t>();
    const int format = input.take<std::uint8_t>();
    const auto rate = input.take<double>();
    const auto text = NSString::string(input.rest());
    switch (kind % 4) {
    case 0:
        tryFrequency(text);
        break;
    case 1:
        tryGain(text);
        break;
    case 2:
        tryLength(format, rate, text);
        break;
    default:
        trySetting(input.rest());
        break;
    }
    return 0;
}
