#include "CoreFoundation/CFArray.h"
#include "Foundation/NSDictionary.h"
#include "Foundation/NSNumber.h"
#include "Probe.h"

#include <stdexcept>

namespace {

RetainPtr<NSNumber> Number(std::int32_t value) { return NSNumber::numberWithInt(value); }

TEST(NSArray, ComparesByValueAndRefusesNullAndWrongIndexes)
{
    const auto list = NSArray::arrayWithObjects({Number(1).get(), "a"_ns.get()});
    EXPECT_TRUE(list->isEqual(NSArray::arrayWithObjects({NSNumber::numberWithDouble(1).get(), "a"_ns.get()}).get()));
    EXPECT_FALSE(list->isEqual(NSArray::arrayWithObjects({"a"_ns.get(), Number(1).get()}).get()));
    EXPECT_EQ(list->indexOfObject("a"_ns.get()), 1u);
    EXPECT_EQ(list->indexOfObject("b"_ns.get()), 2u);
    EXPECT_FALSE(list->containsObject(nullptr));
    EXPECT_EQ(list->description()->utf8(), "(1, a)");
    EXPECT_THAT(Thrown([&] { list->objectAtIndex(2); }), testing::HasSubstr("2"));
    EXPECT_NE(Thrown([] { NSArray::arrayWithObjects({nullptr}); }), "");
    const auto growing = make<NSMutableArray>();
    EXPECT_NE(Thrown([&] { growing->addObject(nullptr); }), "");
    EXPECT_NE(Thrown([&] { growing->insertObject(list, 1); }), "");
    EXPECT_NE(Thrown([&] { growing->removeObjectAtIndex(0); }), "");
    for (const int i : {1, 2, 1, 3}) growing->addObject(Number(i).get());
    growing->removeObject(growing->objectAtIndex(0)); // every equal one, though the list held the argument
    growing->insertObject(Number(0).get(), 0);
    EXPECT_EQ(growing->description()->utf8(), "(0, 2, 3)");
}

TEST(NSArray, EndsAllItsObjectsEvenWhereSomeFail)
{
    Journal journal;
    auto list = make<NSMutableArray>();
    auto dictionary = make<NSMutableDictionary>();
    for (const char* name : {"a", "b", "c"}) {
        const auto probe = Probe::named(name, journal);
        probe->onDealloc = [name](NSObject*) { throw std::runtime_error(name); };
        list->addObject(probe);
        dictionary->setObject(probe, NSString::string(name).get());
    }
    list.reset();
    EXPECT_EQ(journal.take(), "");
    EXPECT_THROW(dictionary.reset(), std::runtime_error);
    EXPECT_EQ(journal.take(), "~a ~b ~c");
}

TEST(NSDictionary, FindsByEqualityAndKeepsTheOrder)
{
    const auto dictionary = make<NSMutableDictionary>();
    dictionary->setObject("one"_ns.get(), Number(1).get());
    dictionary->setObject("two"_ns.get(), "2"_ns.get());
    dictionary->setObject("three"_ns.get(), Number(3).get());
    dictionary->setObject("uno"_ns.get(), NSNumber::numberWithFloat(1).get()); // the same key
    EXPECT_EQ(dictionary->description()->utf8(), "{1 = uno, 2 = two, 3 = three}");
    EXPECT_TRUE(dictionary->objectForKey("2"));
    EXPECT_FALSE(dictionary->objectForKey(Number(2).get()));
    dictionary->setObject("two"_ns.get(), Number(4).get());
    EXPECT_EQ(dictionary->allKeysForObject("two"_ns.get())->description()->utf8(), "(2, 4)");
    dictionary->removeObjectForKey(NSNumber::numberWithDouble(1).get());
    dictionary->removeObjectForKey(Number(7).get());
    dictionary->setObject("one"_ns.get(), Number(1).get());
    EXPECT_EQ(dictionary->allKeys()->description()->utf8(), "(2, 3, 4, 1)");
    EXPECT_NE(Thrown([&] { dictionary->setObject(nullptr, Number(1).get()); }), "");
    EXPECT_NE(Thrown([&] { dictionary->setObject(dictionary, nullptr); }), "");
}

TEST(NSDictionary, EndsWhatItReplacesWhenItIsWholeAgain)
{
    Journal journal;
    const auto dictionary = make<NSMutableDictionary>();
    const auto probe = [&](const char* name) {
        auto made = Probe::named(name, journal);
        made->onDealloc = [&](NSObject*) { journal.note(std::to_string(dictionary->count())); };
        return made;
    };
    dictionary->setObject(probe("a").get(), "k"_ns.get());
    dictionary->setObject(probe("b").get(), "k"_ns.get());
    dictionary->removeObjectForKey(dictionary->allKeys()->objectAtIndex(0));
    EXPECT_EQ(journal.take(), "~a 1 ~b 0");
}

TEST(CFArray, HandsOverOneReference)
{
    Journal journal;
    auto probe = Probe::named("a", journal);
    const NSObject* const objects[] = {probe.get(), probe.get()};
    CFArrayRef array = CFArrayCreate(objects, 2);
    probe.reset();
    EXPECT_EQ(CFArrayGetCount(array), 2);
    EXPECT_EQ(CFArrayGetValueAtIndex(array, 1), CFArrayGetValueAtIndex(array, 0));
    EXPECT_NE(Thrown([&] { CFArrayGetValueAtIndex(array, -1); }), "");
    EXPECT_EQ(CFArrayGetCount(nullptr), 0);
    EXPECT_EQ(journal.take(), "");
    CFRelease(array);
    EXPECT_EQ(journal.take(), "~a");
}

} // namespace
