#pragma once

/// The CLIPBOARD selection: text for other programs, and theirs for us.

#include "CoreFoundation/CFRunLoop.h"
#include "Foundation/NSString.h"
#include "X11/X11Connection.h"

#include <functional>
#include <vector>

class X11Clipboard {
public:
    using Callback = std::function<void(const NSString*)>;

    explicit X11Clipboard(X11Connection& connection);
    ~X11Clipboard(); ///< reads that still wait are dropped without a call
    X11Clipboard(const X11Clipboard&) = delete;
    X11Clipboard& operator=(const X11Clipboard&) = delete;

    void setText(const NSString* text); ///< null gives the selection up
    /// Calls back once, with null when there is no text, when the owner doesn't answer for a second, or when it sends
    /// more than a megabyte.
    void read(Callback callback);
    /// Takes an event of a selection. @return whether it was one
    bool handle(const xcb_generic_event_t& event);
    void connectionLost(); ///< answers every read with null

private:
    struct Read;

    bool hasSelection();
    void answer(const xcb_selection_request_event_t& request);
    bool writeTarget(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t target);
    void ask(Read& read, xcb_atom_t target);
    void restartTimer(Read& read);
    void received(Read& read, const xcb_selection_notify_event_t& event);
    void receivedPart(Read& read);
    bool isText(xcb_atom_t type) const;
    bool takeProperty(Read& read, xcb_atom_t& type);
    void finish(Read& read, bool hasText);
    Read* readOf(xcb_window_t window);

    X11Connection& mConnection;
    xcb_window_t mWindow;
    std::string mText; // UTF-8, while this is the owner
    bool mIsOwner = false;
    xcb_timestamp_t mOwnedSince = 0;
    std::vector<std::unique_ptr<Read>> mReads;
};
