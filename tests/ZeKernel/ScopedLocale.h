#pragma once

/// Makes a locale the user's for the lifetime of an object; formatters made meanwhile keep it.

#include <cstdlib>
#include <optional>
#include <string>

class ScopedLocale {
public:
    explicit ScopedLocale(const char* name)
    {
        if (const char* before = std::getenv(kVariable)) mBefore = before;
        setenv(kVariable, name, 1);
    }
    ~ScopedLocale() { mBefore ? setenv(kVariable, mBefore->c_str(), 1) : unsetenv(kVariable); }
    ScopedLocale(const ScopedLocale&) = delete;
    ScopedLocale& operator=(const ScopedLocale&) = delete;

private:
    static constexpr const char* kVariable = "LC_ALL";
    std::optional<std::string> mBefore;
};
