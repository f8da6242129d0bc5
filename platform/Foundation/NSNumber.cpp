#include "Foundation/NSNumber.h"

#include "Foundation/NSClass.h"
#include "Foundation/NSString.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

NS_CLASS_TABLE(NSNumber, NSValue, "")
NS_CLASS_TABLE_END

namespace {

/// A number reduced to one of three forms, so that equal values are equal whatever type they came in: a signed integer
/// where it fits, an unsigned one above that, else a float that is no such integer.
using Plain = std::variant<std::int64_t, std::uint64_t, double>;

constexpr double kTwoTo63 = 9223372036854775808.0;

Plain PlainOf(std::uint64_t value)
{
    if (value > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) return value;
    return static_cast<std::int64_t>(value);
}

Plain PlainOf(double value)
{
    if (std::trunc(value) != value || value < -kTwoTo63 || value >= 2 * kTwoTo63) return value;
    if (value < kTwoTo63) return static_cast<std::int64_t>(value);
    return static_cast<std::uint64_t>(value);
}

template <typename Number> Plain PlainOf(Number value)
{
    if constexpr (std::floating_point<Number>)
        return PlainOf(static_cast<double>(value));
    else
        return static_cast<std::int64_t>(value);
}

/// As 64 bits; the caller keeps the low bits it has room for.
template <typename Storage> std::uint64_t BitsOf(const Storage& storage)
{
    return std::visit(
        [](auto value) {
            if constexpr (std::floating_point<decltype(value)>)
                return static_cast<std::uint64_t>(NSTruncate(static_cast<double>(value)));
            else
                return static_cast<std::uint64_t>(value);
        },
        storage);
}

} // namespace

std::int64_t NSTruncate(double value)
{
    if (std::isnan(value)) return 0;
    if (value >= kTwoTo63) return std::numeric_limits<std::int64_t>::max();
    if (value < -kTwoTo63) return std::numeric_limits<std::int64_t>::min();
    return static_cast<std::int64_t>(value);
}

RetainPtr<NSNumber> NSNumber::number(Storage value)
{
    auto number = RetainPtr<NSNumber>::adopt(new NSNumber);
    number->mValue = value;
    return number;
}

RetainPtr<NSNumber> NSNumber::numberWithBool(bool value) { return number(value); }
RetainPtr<NSNumber> NSNumber::numberWithInt(std::int32_t value) { return number(value); }
RetainPtr<NSNumber> NSNumber::numberWithUnsignedInt(std::uint32_t value) { return number(value); }
RetainPtr<NSNumber> NSNumber::numberWithLongLong(std::int64_t value) { return number(value); }
RetainPtr<NSNumber> NSNumber::numberWithUnsignedLongLong(std::uint64_t value) { return number(value); }
RetainPtr<NSNumber> NSNumber::numberWithFloat(float value) { return number(value); }
RetainPtr<NSNumber> NSNumber::numberWithDouble(double value) { return number(value); }

bool NSNumber::boolValue() const
{
    return std::visit([](auto value) { return value != decltype(value){}; }, mValue);
}

std::int32_t NSNumber::intValue() const { return static_cast<std::int32_t>(BitsOf(mValue)); }
std::uint32_t NSNumber::unsignedIntValue() const { return static_cast<std::uint32_t>(BitsOf(mValue)); }
std::int64_t NSNumber::longLongValue() const { return static_cast<std::int64_t>(BitsOf(mValue)); }
std::uint64_t NSNumber::unsignedLongLongValue() const { return BitsOf(mValue); }

float NSNumber::floatValue() const
{
    return std::visit([](auto value) { return static_cast<float>(value); }, mValue);
}

double NSNumber::doubleValue() const
{
    return std::visit([](auto value) { return static_cast<double>(value); }, mValue);
}

RetainPtr<NSString> NSNumber::stringValue() const
{
    char text[64];
    const auto write = [&text](auto value) {
        if constexpr (std::same_as<decltype(value), bool>) {
            return std::to_chars(text, std::end(text), int{value}).ptr;
        } else if constexpr (std::floating_point<decltype(value)>) {
            const auto size = std::fabs(value);
            if (std::isnan(value)) return std::to_chars(text, std::end(text), size).ptr; // without a sign
            const bool isLong = size != 0 && (size < decltype(value){1e-5f} || size >= decltype(value){1e17f});
            const auto format = isLong ? std::chars_format::scientific : std::chars_format::fixed;
            return std::to_chars(text, std::end(text), value, format).ptr;
        } else {
            return std::to_chars(text, std::end(text), value).ptr;
        }
    };
    const char* const end = std::visit(write, mValue);
    return NSString::string(std::string_view(text, static_cast<std::size_t>(end - text)));
}

RetainPtr<NSString> NSNumber::description() const { return stringValue(); }

const char* NSNumber::objCType() const
{
    static constexpr const char* kTypes[] = {"B", "i", "I", "q", "Q", "f", "d"};
    static_assert(std::size(kTypes) == std::variant_size_v<Storage>);
    return kTypes[mValue.index()];
}

void NSNumber::getValue(void* buffer) const
{
    std::visit([buffer](auto value) { std::memcpy(buffer, &value, sizeof value); }, mValue);
}

bool NSNumber::isEqual(const NSObject* other) const
{
    if (this == other) return true;
    const auto* number = asKind<NSNumber>(other);
    const auto plain = [](auto value) { return PlainOf(value); };
    return number && std::visit(plain, mValue) == std::visit(plain, number->mValue);
}

std::size_t NSNumber::hash() const
{
    return std::hash<Plain>()(std::visit([](auto value) { return PlainOf(value); }, mValue));
}
