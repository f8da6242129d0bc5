#pragma once

/// Numbers and raw bytes as objects.

#include "Foundation/NSObject.h"

#include <concepts>
#include <type_traits>
#include <variant>
#include <vector>

/// Bytes of any trivially copyable type, with the type's encoding ("d", "^v", "{AudioUnitEvent=...}").
///
/// The size comes from the encoding; the bytes are copied in and out and never constructed or destroyed as the type.
class NSValue : public NSObject {
public:
    static const NSClass& staticClass();
    const NSClass& classTable() const override { return staticClass(); }

    /// Copies as many bytes as `objCType` stands for. Raises NSInvalidArgumentException for an encoding it can't size.
    static RetainPtr<NSValue> value(const void* bytes, const char* objCType);
    static RetainPtr<NSValue> valueWithPointer(const void* pointer); ///< encoding "^v"

    virtual const char* objCType() const { return mType.c_str(); }
    /// Copies the bytes to `buffer`, which must have room for the encoded type.
    virtual void getValue(void* buffer) const;
    void* pointerValue() const; ///< null unless the value is a pointer

    bool isEqual(const NSObject* other) const override;
    std::size_t hash() const override;

protected:
    NSValue() = default;
    template <typename T, typename Base, typename... P, typename... A>
    friend RetainPtr<T> make(bool (Base::*)(P...), A&&...);

private:
    std::string mType;
    std::vector<unsigned char> mBytes;
};

/// Size in bytes of a value with that encoding: "I" 4, "{Pair=dI}" 16, "(?=dI)" 8, "[3i]" 12. 0 when it can't be read.
std::size_t NSGetSizeOfEncoding(const char* objCType);

/// An integer, a float or a truth value. Keeps its type: a 32-bit float stays one until it is read as something else.
class NSNumber final : public NSValue {
public:
    static const NSClass& staticClass();
    const NSClass& classTable() const override { return staticClass(); }

    static RetainPtr<NSNumber> numberWithBool(bool value);
    static RetainPtr<NSNumber> numberWithInt(std::int32_t value);
    static RetainPtr<NSNumber> numberWithUnsignedInt(std::uint32_t value);
    static RetainPtr<NSNumber> numberWithLongLong(std::int64_t value);
    static RetainPtr<NSNumber> numberWithUnsignedLongLong(std::uint64_t value);
    static RetainPtr<NSNumber> numberWithFloat(float value);
    static RetainPtr<NSNumber> numberWithDouble(double value);

    // Reading as another type. A float becomes an integer by truncation toward zero to 64 bits, saturating,
    // not-a-number as 0; a narrower integer keeps the low bits.
    bool boolValue() const;
    std::int32_t intValue() const;
    std::uint32_t unsignedIntValue() const;
    std::int64_t longLongValue() const;
    std::uint64_t unsignedLongLongValue() const;
    float floatValue() const;
    double doubleValue() const;
    /// The shortest digits that read back as the same number: "440", "-0.5", "inf"; with an exponent below 1e-5 and
    /// from 1e17 on.
    RetainPtr<NSString> stringValue() const;
    RetainPtr<NSString> description() const override;

    const char* objCType() const override;
    void getValue(void* buffer) const override;
    /// Numbers are equal when they stand for the same value, whatever their types.
    bool isEqual(const NSObject* other) const override;
    std::size_t hash() const override;

private:
    using Storage = std::variant<bool, std::int32_t, std::uint32_t, std::int64_t, std::uint64_t, float, double>;
    static RetainPtr<NSNumber> number(Storage value);
    Storage mValue;
};

/// Truncates toward zero to 64 bits; saturates; not-a-number gives 0. Narrower results keep the low bits.
std::int64_t NSTruncate(double value);

// Boxing for key-value coding.
template <std::same_as<bool> Truth> // a template, so that no pointer turns into a truth value
RetainPtr<NSObject> NSBoxed(Truth value)
{
    return NSNumber::numberWithBool(value);
}
inline RetainPtr<NSObject> NSBoxed(std::int32_t value) { return NSNumber::numberWithInt(value); }
inline RetainPtr<NSObject> NSBoxed(std::uint32_t value) { return NSNumber::numberWithUnsignedInt(value); }
inline RetainPtr<NSObject> NSBoxed(std::int64_t value) { return NSNumber::numberWithLongLong(value); }
inline RetainPtr<NSObject> NSBoxed(std::uint64_t value) { return NSNumber::numberWithUnsignedLongLong(value); }
inline RetainPtr<NSObject> NSBoxed(float value) { return NSNumber::numberWithFloat(value); }
inline RetainPtr<NSObject> NSBoxed(double value) { return NSNumber::numberWithDouble(value); }
inline RetainPtr<NSObject> NSBoxed(NSObject* value) { return value; }
template <typename T> RetainPtr<NSObject> NSBoxed(const RetainPtr<T>& value) { return value; }

/// The number an object stands for, converted to `T`; 0 for null and for objects that are no numbers. Pointers are
/// cast.
template <typename T> T NSUnbox(NSObject* value)
{
    if constexpr (std::is_pointer_v<T>) {
        return dynamic_cast<T>(value);
    } else {
        const auto* number = dynamic_cast<const NSNumber*>(value);
        if (!number) return T{};
        if constexpr (std::same_as<T, bool>)
            return number->boolValue();
        else if constexpr (std::floating_point<T>)
            return static_cast<T>(number->doubleValue());
        else
            return static_cast<T>(number->longLongValue());
    }
}
