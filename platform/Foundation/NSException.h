#pragma once

/// What is thrown when a program breaks a rule of the object layer.
///
/// Example: `throw NSException(NSInvalidArgumentException, "Fader has no action “blink:”");`

#include <exception>
#include <string>

inline constexpr const char* NSInternalInconsistencyException = "NSInternalInconsistencyException";
inline constexpr const char* NSInvalidArgumentException = "NSInvalidArgumentException";
inline constexpr const char* NSUndefinedKeyException = "NSUndefinedKeyException";

class NSException : public std::exception {
public:
    NSException(const char* name, std::string reason);

    const std::string& name() const { return mName; }
    const std::string& reason() const { return mReason; }                ///< for a person, in UTF-8
    const char* what() const noexcept override { return mWhat.c_str(); } ///< "name: reason"

private:
    std::string mName, mReason, mWhat;
};
