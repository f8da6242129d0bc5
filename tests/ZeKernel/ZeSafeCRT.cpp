#include "ZeSafeCRT.h"

#include "ZeString.h"

#include <clocale>
#include <cstdlib>
#include <string>

#include <langinfo.h>

#include <gtest/gtest.h>

namespace {

/// Runs a test in a character locale of its own.
class ScopedLocale {
public:
    explicit ScopedLocale(const char* name) : mBefore(std::setlocale(LC_CTYPE, nullptr))
    {
        std::setlocale(LC_CTYPE, name);
    }
    ~ScopedLocale() { std::setlocale(LC_CTYPE, mBefore.c_str()); }
    ScopedLocale(const ScopedLocale&) = delete;
    ScopedLocale& operator=(const ScopedLocale&) = delete;

private:
    std::string mBefore;
};

/// Runs a test with another soft limit of open files.
class ScopedFileLimit {
public:
    explicit ScopedFileLimit(rlim_t soft)
    {
        getrlimit(RLIMIT_NOFILE, &mBefore);
        const rlimit limit{soft, mBefore.rlim_max};
        mIsSet = setrlimit(RLIMIT_NOFILE, &limit) == 0;
    }
    ~ScopedFileLimit() { setrlimit(RLIMIT_NOFILE, &mBefore); }
    ScopedFileLimit(const ScopedFileLimit&) = delete;
    ScopedFileLimit& operator=(const ScopedFileLimit&) = delete;
    bool isSet() const { return mIsSet; }

private:
    rlimit mBefore{};
    bool mIsSet = false;
};

bool StartUpWasApplied()
{
    rlimit now{};
    getrlimit(RLIMIT_NOFILE, &now);
    return now.rlim_cur == 7168 && ZeCRT::init.rlim_cur == 7168 && ZeCRT::init.rlim_max == now.rlim_max &&
           std::string(nl_langinfo(CODESET)) == "UTF-8";
}

// before anything else can change it
const bool kStartUpWasApplied = StartUpWasApplied();

} // namespace

// The child is a fresh start of this program: what it finds was set while its static objects were made.
TEST(StartUpDeathTest, SetsTheFileLimitAndTheLocale)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    for (const rlim_t before : {rlim_t(500), rlim_t(8000)}) {
        const ScopedFileLimit limit(before);
        if (!limit.isSet()) continue; // the hard limit is lower
        EXPECT_EXIT(std::exit(kStartUpWasApplied ? 0 : 1), testing::ExitedWithCode(0), "") << before;
    }
}

TEST(CharacterLocale, IsSetBeforeEachWidePrint)
{
    const ScopedLocale locale("C");
    ZeString out;
    ZeSprintf(out, L"%s", "\xE2\x82\xAC");
    EXPECT_EQ(out, L"\u20AC");

    std::setlocale(LC_CTYPE, "C");
    wchar_t buffer[4];
    EXPECT_EQ(ZeCRT::swprintf_s(buffer, 4, L"%s", "\xE2\x82\xAC"), 1);
    EXPECT_EQ(buffer[0], L'\u20AC');
}

TEST(CharacterLocale, StaysWhereItIsUTF8Already)
{
    const ScopedLocale locale("C.utf8"); // another name than the one that would be asked for
    ZeString out;
    ZeSprintf(out, L"%d", 1);
    EXPECT_STREQ(std::setlocale(LC_CTYPE, nullptr), "C.utf8");
}

TEST(CharacterLocale, IsLeftAloneByNarrowPrinting)
{
    const ScopedLocale locale("C");
    _ZeString<char> out;
    ZeSprintfA(out, "%d", 1);
    EXPECT_STREQ(std::setlocale(LC_CTYPE, nullptr), "C");
}
