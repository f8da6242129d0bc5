#include "Foundation/WeakPtr.h"

#include "Probe.h"

#include <optional>

namespace {

TEST(WeakPtr, IsNullOnceItsObjectIsGone)
{
    auto object = make<Probe>();
    bool seen = false;
    WeakPtr<Probe> first(object), second = first, third;
    third = second;
    object->onDealloc = [&](NSObject* self) { seen = first.get() == self; }; // it is still whole
    EXPECT_EQ(third.get(), object.get());
    object.reset();
    EXPECT_TRUE(seen);
    for (const auto* pointer : {&first, &second, &third}) EXPECT_EQ(pointer->get(), nullptr);
}

TEST(WeakPtr, LetsGoOfOneObjectForAnother)
{
    auto one = make<Probe>(), two = make<Probe>();
    std::optional<WeakPtr<Probe>> pointer(std::in_place, one.get());
    *pointer = two.get();
    one.reset();
    EXPECT_EQ(pointer->get(), two.get());
    pointer.reset();
    two.reset(); // nothing points at it any more
}

} // namespace
