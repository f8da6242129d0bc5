#pragma once

/// The window system's headers, and owners for what they hand out. For the sources of this folder only.

#include <xcb/shm.h>
#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

// This header has a field named like a keyword of C++.
#ifdef __clang__
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wkeyword-macro"
#endif
#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit
#ifdef __clang__
#pragma clang diagnostic pop
#endif

template <auto Release> struct X11Releaser {
    void operator()(auto* object) const { Release(object); }
};

/// Replies, events and errors are blocks of the C library.
template <typename T> using X11Block = std::unique_ptr<T, X11Releaser<::free>>;
using X11Event = X11Block<xcb_generic_event_t>;

/// The event as what its type says it is.
template <typename T> const T& X11EventAs(const xcb_generic_event_t& event)
{
    return reinterpret_cast<const T&>(event);
}

/// The type without the mark of events that another client sent.
inline unsigned X11TypeOf(const xcb_generic_event_t& event) { return event.response_type & 0x7FU; }
