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
    const auto text = [](const std::u16string& units) { return ZeString(NSString::string(units).get()); };
    EXPECT_EQ(text(kUnits), L"A\u00E4\u066B\U0001F600Z");
    EXPECT_EQ(text(u""), L"");
    EXPECT_EQ(text(std::u16string(u"a\0b", 3)), std::wstring(L"a\0b", 3));
    EXPECT_EQ(ZeString(static_cast<const NSString*>(nullptr)), L"");
}

TEST(ZeStringToNSString, NarrowsEachElementToSixteenBits)
{
    const NSAutoreleasePool pool;
    const auto units = [](const ZeString& text) {
        const NSString* const string = text;
        return string ? string->units() : u"null";
    };
    EXPECT_EQ(units(L"A\u00E4\u066B"), u"A\u00E4\u066B");
    EXPECT_EQ(units(L"\U0001F600Z"), u"\xF600Z") << "outside the BMP no pair is made";
    EXPECT_EQ(units(L"\U00010000Z"), std::u16string(u"\0Z", 2)) << "only an element that is NUL ends the text";
    EXPECT_EQ(units(std::wstring(L"ab\0cd", 5)), u"ab");
    EXPECT_EQ(units(L""), u"");
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
    const auto text = [](const RetainPtr<NSString>& source) {
        ZeString assigned(L"what was there before");
        zeassign(assigned, CFStringRef(source.get()));
        return assigned;
    };
    EXPECT_EQ(text(NSString::string(kUnits)), L"A\u00E4\u066B\xD83D\xDE00Z");
    EXPECT_EQ(text(NSString::string(u"a\xD83Dz")), L"a\xD83Dz") << "an unpaired one too";
    EXPECT_EQ(text(NSString::string(std::u16string(u"a\0b", 3))), L"a") << "ends at the first NUL";
    EXPECT_EQ(text(NSString::string("")), L"");
    EXPECT_EQ(text(nullptr), L"");
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
