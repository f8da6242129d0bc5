#pragma once

/// Named values that remember their type.
///
/// A `ZePropertyMap` is the standard ordered map from a `ZeString` (any text, the empty one included) to a
/// `ZeProperty`. A property is empty or holds one `int`, `unsigned int`, `long long` or `double`, and owns it: copies
/// are independent. Nothing converts between the four types: a value is read as the type it was stored as, or as 0.
///
/// Failure: a missing key, an empty property or another type reads as 0 and says nothing. A map is used by one thread
/// at a time.
///
/// Example: after `map.insert<int>(L"eFormat", 3)`, `map[L"eFormat"].get<int>()` is 3 and `get<unsigned int>()` is 0.

#include "ZeString.h"

#include <concepts>
#include <map>
#include <typeinfo>
#include <utility>

template <typename T>
concept ZePropertyValue =
    std::same_as<T, int> || std::same_as<T, unsigned int> || std::same_as<T, long long> || std::same_as<T, double>;

class ZeProperty {
public:
    /// The holder of one value.
    class content {
    public:
        virtual ~content() = default;
        virtual const std::type_info& type() const = 0;
        virtual bool is_arithmetic() const = 0;
        /// Decimal digits, grouped where the global locale groups; a float with 17 significant digits: 44100.0 gives
        /// "44100", 29.97 "29.969999999999999".
        virtual std::wstring to_string() const = 0;
        virtual class content* copy() const = 0; ///< the caller owns it
        /// True for the same type and the same value; not-a-number equals nothing.
        virtual bool equal(class content const& other) const = 0;
    };
    template <ZePropertyValue T> class content_impl;

    ZeProperty() = default;
    template <ZePropertyValue T> explicit ZeProperty(T value);
    ZeProperty(const ZeProperty& other) : content(other.content ? other.content->copy() : nullptr) {}
    ZeProperty(ZeProperty&& other) noexcept : content(std::exchange(other.content, nullptr)) {}
    ZeProperty& operator=(ZeProperty other) noexcept
    {
        std::swap(content, other.content);
        return *this;
    }
    ~ZeProperty() { delete content; }

    /// The value where it is exactly a `T`, else 0.
    template <ZePropertyValue T> T get() const;

    class content* content = nullptr; ///< owned; null while the property is empty
};

template <ZePropertyValue T> class ZeProperty::content_impl final : public ZeProperty::content {
public:
    explicit content_impl(T held) : value(held) {}
    const std::type_info& type() const override { return typeid(T); }
    bool is_arithmetic() const override { return true; }
    std::wstring to_string() const override;
    class ZeProperty::content* copy() const override { return new content_impl(value); }
    bool equal(class ZeProperty::content const& other) const override
    {
        return other.type() == typeid(T) && static_cast<const content_impl&>(other).value == value;
    }

    T value;
};

template <ZePropertyValue T> ZeProperty::ZeProperty(T value) : content(new content_impl<T>(value)) {}

template <ZePropertyValue T> T ZeProperty::get() const
{
    return content && content->type() == typeid(T) ? static_cast<const content_impl<T>&>(*content).value : T{};
}

class ZePropertyMap : public std::map<ZeString, ZeProperty> {
    using Base = std::map<ZeString, ZeProperty>;

public:
    using Base::Base;
    using Base::insert;

    /// Adds the value under a new key. An entry that exists stays as it is, its type too: to overwrite one, assign
    /// `map[key] = ZeProperty(value)`.
    /// @return the entry of that key, and whether it was added
    template <ZePropertyValue T> std::pair<iterator, bool> insert(ZeString const& key, T const& value)
    {
        return Base::insert(value_type(key, ZeProperty(value)));
    }
};

// Compiled once, in ZePropertyMap.cpp.
extern template class ZeProperty::content_impl<int>;
extern template class ZeProperty::content_impl<unsigned int>;
extern template class ZeProperty::content_impl<long long>;
extern template class ZeProperty::content_impl<double>;
