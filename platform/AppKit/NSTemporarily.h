#pragma once

/// Keeps a value in a place for as long as this lives, then puts the old one back. For sources of this folder.

#include <utility>

template <typename T> class NSTemporarily {
public:
    NSTemporarily(T& place, T value) : mPlace(place), mOld(std::exchange(place, std::move(value))) {}
    ~NSTemporarily() { std::swap(mPlace, mOld); }
    NSTemporarily(const NSTemporarily&) = delete;
    NSTemporarily& operator=(const NSTemporarily&) = delete;

private:
    T& mPlace;
    T mOld;
};
