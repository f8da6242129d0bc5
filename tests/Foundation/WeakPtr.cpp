#include "Foundation/WeakPtr.h"

#include <gtest/gtest.h>

#include <optional>

namespace {

class Mortal final : public NSObject {
public:
    WeakPtr<Mortal>* watcher = nullptr;
    bool* seen = nullptr;

protected:
    void dealloc() override
    {
        if (seen) *seen = watcher->get() == this;
        NSObject::dealloc();
    }
};

TEST(WeakPtr, IsNullOnceItsObjectIsGone)
{
    auto object = make<Mortal>();
    bool seen = false;
    WeakPtr<Mortal> first(object), second = first, third;
    third = second;
    object->watcher = &first;
    object->seen = &seen;
    EXPECT_EQ(third.get(), object.get());
    object.reset();
    EXPECT_TRUE(seen); // dealloc still finds the whole object
    EXPECT_EQ(first.get(), nullptr);
    EXPECT_EQ(second.get(), nullptr);
    EXPECT_EQ(third.get(), nullptr);
}

TEST(WeakPtr, LetsGoOfOneObjectForAnother)
{
    auto one = make<Mortal>(), two = make<Mortal>();
    std::optional<WeakPtr<Mortal>> pointer(std::in_place, one.get());
    *pointer = two.get();
    one.reset();
    EXPECT_EQ(pointer->get(), two.get());
    pointer.reset();
    two.reset(); // nothing points at it any more
}

} // namespace
