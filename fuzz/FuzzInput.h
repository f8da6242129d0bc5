#pragma once

/// The bytes of a trial, taken off piece by piece. Where they run out, numbers are 0 and texts empty.

#include "ZeString.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

class FuzzInput {
public:
    FuzzInput(const std::uint8_t* data, std::size_t size) : mRest(reinterpret_cast<const char*>(data), size) {}

    template <typename Number> Number take()
    {
        Number number{};
        const std::size_t size = mRest.size() < sizeof number ? mRest.size() : sizeof number;
        std::memcpy(static_cast<void*>(&number), mRest.data(), size);
        mRest.remove_prefix(size);
        return number;
    }

    /// The bytes up to a newline, which is taken too.
    std::string_view line();
    std::string_view rest() const { return mRest; }

private:
    std::string_view mRest;
};

/// One element a code point, from UTF-8; what is none becomes U+FFFD. NULs stay.
ZeString FuzzText(std::string_view bytes);

/// Ends the trial as a finding, with what was expected in the report.
[[noreturn]] void FuzzFailed(const char* expectation);
inline void FuzzExpect(bool holds, const char* expectation)
{
    if (!holds) FuzzFailed(expectation);
}
