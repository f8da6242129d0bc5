#include "X11/X11Clipboard.h"

#include <algorithm>

namespace {

constexpr CFTimeInterval kPatience = 1.0;    // seconds
constexpr std::size_t kMostBytes = 1U << 20; // of a text from elsewhere
constexpr std::uint32_t kMostWords = kMostBytes / 4 + 1;

xcb_window_t MakeHiddenWindow(X11Connection& connection)
{
    const xcb_window_t window = xcb_generate_id(connection.get());
    const std::uint32_t events[] = {XCB_EVENT_MASK_PROPERTY_CHANGE};
    xcb_create_window(connection.get(), 0, window, connection.screen().root, -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, events);
    return window;
}

RetainPtr<NSString> StringFromLatin1(const std::string& bytes)
{
    std::u16string units;
    for (const char byte : bytes) units.push_back(static_cast<unsigned char>(byte));
    return NSString::string(units);
}

// Characters that Latin-1 lacks become question marks.
std::string Latin1FromUTF8(const std::string& text)
{
    std::string bytes;
    for (const char16_t unit : NSUTF16FromUTF8(text))
        if ((unit & 0xFC00) != 0xDC00) bytes.push_back(unit < 0x100 ? static_cast<char>(unit) : '?');
    return bytes;
}

} // namespace

/// One question to the selection's owner. Its own window receives the answer, so that a late one can't be mistaken for
/// the answer to a newer question.
struct X11Clipboard::Read {
    xcb_window_t window;
    xcb_atom_t target;
    bool isIncremental;
    std::string bytes;
    Callback callback;
    RetainPtr<CFRunLoopTimer> timer;
};

X11Clipboard::X11Clipboard(X11Connection& connection) : mConnection(connection), mWindow(MakeHiddenWindow(connection))
{
}

X11Clipboard::~X11Clipboard()
{
    for (const auto& read : mReads) {
        CFRunLoopTimerInvalidate(read->timer);
        xcb_destroy_window(mConnection.get(), read->window);
    }
    xcb_destroy_window(mConnection.get(), mWindow);
}

void X11Clipboard::setText(const NSString* text)
{
    mText = text ? text->utf8() : std::string();
    if (!text && !mIsOwner) return;
    mIsOwner = text != nullptr;
    mOwnedSince = mConnection.lastTime();
    xcb_set_selection_owner(mConnection.get(), mIsOwner ? mWindow : XCB_NONE, mConnection.atom(X11Atom::CLIPBOARD),
                            mOwnedSince);
    // refused where another program has taken the selection since our newest event
    mIsOwner = mIsOwner && hasSelection();
}

bool X11Clipboard::hasSelection()
{
    const auto owner = mConnection.reply<xcb_get_selection_owner_reply>(
        xcb_get_selection_owner(mConnection.get(), mConnection.atom(X11Atom::CLIPBOARD)));
    return owner && owner->owner == mWindow;
}

void X11Clipboard::read(Callback callback)
{
    if (mIsOwner || mConnection.isLost()) {
        const RetainPtr<NSString> text = mIsOwner ? NSString::string(mText) : nullptr;
        callback(text);
        return;
    }
    auto& read = *mReads.emplace_back(
        std::make_unique<Read>(Read{MakeHiddenWindow(mConnection), 0, false, {}, std::move(callback), nullptr}));
    restartTimer(read);
    ask(read, mConnection.atom(X11Atom::UTF8_STRING));
}

void X11Clipboard::ask(Read& read, xcb_atom_t target)
{
    read.target = target;
    xcb_convert_selection(mConnection.get(), read.window, mConnection.atom(X11Atom::CLIPBOARD), target,
                          mConnection.atom(X11Atom::TONARO_CLIPBOARD), mConnection.lastTime());
    mConnection.flush();
}

void X11Clipboard::restartTimer(Read& read)
{
    CFRunLoopTimerInvalidate(read.timer);
    read.timer = CFRunLoopTimerCreate(CFAbsoluteTimeGetCurrent() + kPatience, 0.0, [this, window = read.window] {
        if (Read* late = readOf(window)) finish(*late, false);
    });
    CFRunLoopAddTimer(CFRunLoopGetCurrent(), read.timer, kCFRunLoopCommonModes);
}

bool X11Clipboard::handle(const xcb_generic_event_t& event)
{
    switch (X11TypeOf(event)) {
    case XCB_SELECTION_CLEAR:
        mIsOwner = mIsOwner && hasSelection(); // it may be about an older copy than the newest
        return true;
    case XCB_SELECTION_REQUEST:
        answer(X11EventAs<xcb_selection_request_event_t>(event));
        return true;
    case XCB_SELECTION_NOTIFY: {
        const auto& notify = X11EventAs<xcb_selection_notify_event_t>(event);
        if (Read* read = readOf(notify.requestor)) received(*read, notify);
        return true;
    }
    case XCB_PROPERTY_NOTIFY: {
        const auto& notify = X11EventAs<xcb_property_notify_event_t>(event);
        Read* read = readOf(notify.window);
        if (read && read->isIncremental && notify.state == XCB_PROPERTY_NEW_VALUE &&
            notify.atom == mConnection.atom(X11Atom::TONARO_CLIPBOARD))
            receivedPart(*read);
        return read != nullptr;
    }
    default:
        return false;
    }
}

void X11Clipboard::connectionLost()
{
    mIsOwner = false;
    while (!mReads.empty()) finish(*mReads.front(), false);
}

void X11Clipboard::answer(const xcb_selection_request_event_t& request)
{
    xcb_selection_notify_event_t notify{};
    notify.response_type = XCB_SELECTION_NOTIFY;
    notify.time = request.time;
    notify.requestor = request.requestor;
    notify.selection = request.selection;
    notify.target = request.target;
    const xcb_atom_t property = request.property ? request.property : request.target; // what old clients mean
    if (mIsOwner && request.selection == mConnection.atom(X11Atom::CLIPBOARD) &&
        writeTarget(request.requestor, property, request.target))
        notify.property = property;
    xcb_send_event(mConnection.get(), 0, request.requestor, 0, reinterpret_cast<const char*>(&notify));
    mConnection.flush();
}

bool X11Clipboard::writeTarget(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t target)
{
    auto* connection = mConnection.get();
    const xcb_atom_t utf8 = mConnection.atom(X11Atom::UTF8_STRING);
    const xcb_atom_t targets = mConnection.atom(X11Atom::TARGETS), timestamp = mConnection.atom(X11Atom::TIMESTAMP);
    if (target == targets) {
        const xcb_atom_t list[] = {targets, timestamp, utf8, XCB_ATOM_STRING};
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, requestor, property, XCB_ATOM_ATOM, 32, std::size(list),
                            list);
        return true;
    }
    if (target == timestamp) {
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, requestor, property, XCB_ATOM_INTEGER, 32, 1,
                            &mOwnedSince);
        return true;
    }
    if (target != utf8 && target != XCB_ATOM_STRING) return false;
    const std::string bytes = target == utf8 ? mText : Latin1FromUTF8(mText);
    if (bytes.size() / 4 + 16 > xcb_get_maximum_request_length(connection)) return false;
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, requestor, property, target, 8,
                        static_cast<std::uint32_t>(bytes.size()), bytes.data());
    return true;
}

void X11Clipboard::received(Read& read, const xcb_selection_notify_event_t& event)
{
    xcb_atom_t type = XCB_NONE;
    if (event.property != XCB_NONE && takeProperty(read, type)) {
        if (type != mConnection.atom(X11Atom::INCR)) {
            finish(read, isText(type));
            return;
        }
        read.bytes.clear(); // it held a guess of the length
        read.isIncremental = true;
        restartTimer(read);
        return;
    }
    if (event.property == XCB_NONE && read.target != XCB_ATOM_STRING)
        ask(read, XCB_ATOM_STRING);
    else
        finish(read, false);
}

void X11Clipboard::receivedPart(Read& read)
{
    const std::size_t before = read.bytes.size();
    xcb_atom_t type = XCB_NONE;
    if (!takeProperty(read, type) || read.bytes.size() > kMostBytes)
        finish(read, false);
    else if (read.bytes.size() == before)
        finish(read, isText(type));
    else
        restartTimer(read);
}

bool X11Clipboard::isText(xcb_atom_t type) const
{
    return type == mConnection.atom(X11Atom::UTF8_STRING) || type == XCB_ATOM_STRING;
}

// Appends the property's bytes; taking it away asks an incremental owner for the next part.
bool X11Clipboard::takeProperty(Read& read, xcb_atom_t& type)
{
    const auto property = mConnection.reply<xcb_get_property_reply>(
        xcb_get_property(mConnection.get(), 1, read.window, mConnection.atom(X11Atom::TONARO_CLIPBOARD),
                         XCB_GET_PROPERTY_TYPE_ANY, 0, kMostWords));
    mConnection.flush();
    if (!property || property->bytes_after != 0) return false;
    type = property->type;
    if (isText(type)) read.target = type;
    const int length = xcb_get_property_value_length(property.get());
    read.bytes.append(static_cast<const char*>(xcb_get_property_value(property.get())),
                      static_cast<std::size_t>(std::max(length, 0)));
    return true;
}

// The callback may read again or end the display, so it comes last.
void X11Clipboard::finish(Read& read, bool hasText)
{
    const auto found =
        std::find_if(mReads.begin(), mReads.end(), [&](const auto& entry) { return entry.get() == &read; });
    const std::unique_ptr<Read> done = std::move(*found);
    mReads.erase(found);
    CFRunLoopTimerInvalidate(done->timer);
    xcb_destroy_window(mConnection.get(), done->window);
    mConnection.flush();
    RetainPtr<NSString> text;
    if (hasText) text = done->target == XCB_ATOM_STRING ? StringFromLatin1(done->bytes) : NSString::string(done->bytes);
    done->callback(text);
}

X11Clipboard::Read* X11Clipboard::readOf(xcb_window_t window)
{
    const auto found =
        std::find_if(mReads.begin(), mReads.end(), [&](const auto& entry) { return entry->window == window; });
    return found != mReads.end() ? found->get() : nullptr;
}
