#include "Foundation/NSAutoreleasePool.h"

#include "Foundation/NSLog.h"
#include "Foundation/NSObject.h"
#include "Foundation/NSReleaseAll.h"

#include <exception>

namespace {

using Objects = std::vector<RetainPtr<NSObject>>;

thread_local NSAutoreleasePool* tInnermost = nullptr;

enum class Life : unsigned char { NotYet, Alive, Over };
thread_local Life tLifeOfThreadPool = Life::NotYet; // trivially destructible: readable while the thread ends

/// What was given away outside any pool.
struct ThreadPool {
    Objects objects;
    ThreadPool() { tLifeOfThreadPool = Life::Alive; }
    ~ThreadPool()
    {
        tLifeOfThreadPool = Life::Over;
        objects.clear();
    }
};

ThreadPool& TheThreadPool()
{
    thread_local ThreadPool pool;
    return pool;
}

} // namespace

std::exception_ptr NSReleaseAll(Objects& objects) noexcept
{
    std::exception_ptr first;
    while (!objects.empty()) { // an object's end may give away others
        Objects now;
        now.swap(objects);
        for (auto& object : now) {
            try {
                object.reset();
            } catch (...) {
                if (!first) first = std::current_exception();
            }
        }
    }
    return first;
}

NSAutoreleasePool::NSAutoreleasePool() : mOuter(std::exchange(tInnermost, this)) {}

NSAutoreleasePool::~NSAutoreleasePool()
{
    try {
        drain();
    } catch (const std::exception& exception) {
        NSLog("an object's end failed: %s", exception.what());
    } catch (...) {
        NSLog("an object's end failed");
    }
    tInnermost = mOuter;
}

void NSAutoreleasePool::drain()
{
    std::exception_ptr first = NSReleaseAll(mObjects);
    if (!mOuter && tLifeOfThreadPool == Life::Alive)
        if (auto second = NSReleaseAll(TheThreadPool().objects); !first) first = second;
    if (first) std::rethrow_exception(first);
}

void NSAutoreleasePool::add(RetainPtr<NSObject> object)
{
    if (!object) return;
    if (tInnermost)
        tInnermost->mObjects.push_back(std::move(object));
    else if (tLifeOfThreadPool != Life::Over)
        TheThreadPool().objects.push_back(std::move(object));
    else [[maybe_unused]]
        auto* const leaked = object.leak(); // the thread is ending and the caller still reads it
}
