#include "ZeString.h"

#include <cstdlib>
#include <new>

#include "Foundation/NSAutoreleasePool.h"
#include "Foundation/NSString.h"
#include <gtest/gtest.h>

namespace {

/// While it is set, allocations of arrays that may answer null do so.
bool failAllocations = false;

/// A, an umlaut, a decimal separator of Arabic, a character of two units, a Z.
const std::u16string kUnits = u"A\u00E4\u066B\xD83D\xDE00Z";

} // namespace

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    if (failAllocations) return nullptr;
    try {
        return ::operator new[](size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

TEST(ZeStringFromNSString, HoldsOneElementACodePoint)
{
    static const struct {
        const char* why;
        std::u16string units;
        std::wstring text;
    } kRows[] = {
        {"outside the BMP", kUnits, L"A\u00E4\u066B\U0001F600Z"},
        {"empty", u"", L""},
        {"a NUL inside", std::u16string(u"a\0b", 3), std::wstring(L"a\0b", 3)},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(ZeString(NSString::string(row.units).get()), row.text);
    }
    EXPECT_EQ(ZeString(static_cast<const NSString*>(nullptr)), L"");
}

TEST(ZeStringToNSString, NarrowsEachElementToSixteenBits)
{
    static const struct {
        const char* why;
        ZeString text;
        std::u16string units;
    } kRows[] = {
        {"inside the BMP", L"A\u00E4\u066B", u"A\u00E4\u066B"},
        {"outside the BMP no pair is made", L"\U0001F600Z", u"\xF600Z"},
        {"only an element that is NUL ends the text", L"\U00010000Z", std::u16string(u"\0Z", 2)},
        {"ends at the first NUL", std::wstring(L"ab\0cd", 5), u"ab"},
        {"empty", L"", u""},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        const NSAutoreleasePool pool;
        const NSString* const string = row.text;
        ASSERT_NE(string, nullptr);
        EXPECT_EQ(string->units(), row.units);
    }
}

TEST(ZeStringToNSString, AnswersAStringOfThePool)
{
    RetainPtr<NSString> kept;
    {
        const NSAutoreleasePool pool;
        kept = static_cast<NSString*>(ZeString(L"kept"));
        [[maybe_unused]] NSString* const dropped = ZeString(L"dropped"); // a leak, were it not of the pool
    }
    EXPECT_EQ(kept->utf8(), "kept");
}

TEST(ZeStringFromCFString, KeepsSurrogatesApart)
{
    static const struct {
        const char* why;
        std::u16string units;
        std::wstring text;
    } kRows[] = {
        {"outside the BMP", kUnits, L"A\u00E4\u066B\xD83D\xDE00Z"},
        {"an unpaired surrogate", u"a\xD83Dz", L"a\xD83Dz"},
        {"ends at the first NUL", std::u16string(u"a\0b", 3), L"a"},
        {"empty", u"", L""},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        ZeString text(L"what was there before");
        zeassign(text, CFStringRef(NSString::string(row.units).get()));
        EXPECT_EQ(text, row.text);
    }
    ZeString text(L"old");
    zeassign(text, CFStringRef(nullptr));
    EXPECT_EQ(text, L"");
}

TEST(ZeStringFromCFString, LeavesTheTargetWhereThereIsNoMemory)
{
    const RetainPtr<NSString> source = NSString::string("new");
    ZeString text(L"old");
    failAllocations = true;
    zeassign(text, CFStringRef(source));
    failAllocations = false;
    EXPECT_EQ(text, L"old");
    zeassign(text, CFStringRef(source));
    EXPECT_EQ(text, L"new");
}
