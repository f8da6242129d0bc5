#include "X11/X11Settings.h"

namespace {

constexpr std::uint32_t kMostWords = 1U << 16; // of a list, 256 KB; managers need some 3 KB

/// What the environment asks for, as every program of this person understands it.
std::optional<X11Theme> ThemeOfEnvironment()
{
    const char* name = std::getenv("GTK_THEME");
    return name && *name ? std::optional(X11Theme{name}) : std::nullopt;
}

void Select(X11Connection& connection, xcb_window_t window, std::uint32_t events)
{
    xcb_change_window_attributes(connection.get(), window, XCB_CW_EVENT_MASK, &events);
}

} // namespace

X11Settings::X11Settings(X11Connection& connection) : mConnection(connection)
{
    // also of the root's properties, from which windows take their scale
    Select(mConnection, mConnection.screen().root, XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE);
    if (const auto theme = ThemeOfEnvironment()) {
        mAppearance = theme->appearance();
        return;
    }
    mSelection = mConnection.internAtom("_XSETTINGS_S" + std::to_string(mConnection.screenNumber()));
    mProperty = mConnection.atom(X11Atom::_XSETTINGS_SETTINGS);
    mManagerMessage = mConnection.atom(X11Atom::MANAGER);
    findManager(); // announced on the root, so that none can have come unseen
}

/// A manager that goes in the middle of this leaves no settings; its follower announces itself.
void X11Settings::findManager()
{
    const auto owner =
        mConnection.reply<xcb_get_selection_owner_reply>(xcb_get_selection_owner(mConnection.get(), mSelection));
    mManager = owner ? owner->owner : xcb_window_t{XCB_NONE};
    if (mManager) Select(mConnection, mManager, XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE);
    read();
}

void X11Settings::read()
{
    const NSAppearanceName appearance = theme().appearance();
    if (std::exchange(mAppearance, appearance) == appearance) return;
    const auto changed = mChanged; // which may be replaced in the call
    if (changed) changed();
}

X11Theme X11Settings::theme()
{
    if (!mManager) return {};
    const auto answer = mConnection.reply<xcb_get_property_reply>(
        xcb_get_property(mConnection.get(), 0, mManager, mProperty, mProperty, 0, kMostWords));
    if (!answer || answer->format != 8) return {};
    const auto* bytes = static_cast<const std::uint8_t*>(xcb_get_property_value(answer.get()));
    const auto count = static_cast<std::size_t>(xcb_get_property_value_length(answer.get()));
    return X11ReadTheme({bytes, count}).value_or(X11Theme{});
}

bool X11Settings::isNewManager(const xcb_generic_event_t& event) const
{
    if (X11TypeOf(event) != XCB_CLIENT_MESSAGE) return false;
    const auto& message = X11EventAs<xcb_client_message_event_t>(event);
    return message.type == mManagerMessage && message.format == 32 && message.data.data32[1] == mSelection;
}

bool X11Settings::handle(const xcb_generic_event_t& event)
{
    if (!mSelection) return false;
    if (isNewManager(event)) {
        findManager();
        return true;
    }
    if (!mManager) return false;
    if (X11TypeOf(event) == XCB_PROPERTY_NOTIFY) {
        const auto& change = X11EventAs<xcb_property_notify_event_t>(event);
        if (change.window != mManager) return false;
        if (change.atom == mProperty) read();
        return true;
    }
    if (X11TypeOf(event) != XCB_DESTROY_NOTIFY) return false;
    if (X11EventAs<xcb_destroy_notify_event_t>(event).window != mManager) return false;
    findManager();
    return true;
}
