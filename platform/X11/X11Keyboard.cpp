#include "X11/X11Keyboard.h"

#include <algorithm>
#include <iterator>

#include <xkbcommon/xkbcommon-x11.h>

namespace {

constexpr struct {
    std::uint16_t state;
    std::uint32_t flags;
} kModifiers[] = {
    {XCB_MOD_MASK_SHIFT, NSShiftKeyMask},
    {XCB_MOD_MASK_LOCK, NSAlphaShiftKeyMask},
    {XCB_MOD_MASK_CONTROL, NSControlKeyMask | NSCommandKeyMask},
    {XCB_MOD_MASK_1, NSAlternateKeyMask},
    {XCB_MOD_MASK_4, NSCommandKeyMask},
};

constexpr std::uint16_t kShortcutState = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_4;

// Keys whose character is ours to name. Sorted by symbol.
constexpr struct KeyCharacter {
    xkb_keysym_t symbol;
    unichar character;
} kKeyCharacters[] = {
    {XKB_KEY_ISO_Left_Tab, NSBackTabCharacter},
    {XKB_KEY_BackSpace, NSDeleteCharacter},
    {XKB_KEY_Tab, NSTabCharacter},
    {XKB_KEY_Return, NSCarriageReturnCharacter},
    {XKB_KEY_Escape, NSEscapeCharacter},
    {XKB_KEY_Home, NSHomeFunctionKey},
    {XKB_KEY_Left, NSLeftArrowFunctionKey},
    {XKB_KEY_Up, NSUpArrowFunctionKey},
    {XKB_KEY_Right, NSRightArrowFunctionKey},
    {XKB_KEY_Down, NSDownArrowFunctionKey},
    {XKB_KEY_Page_Up, NSPageUpFunctionKey},
    {XKB_KEY_Page_Down, NSPageDownFunctionKey},
    {XKB_KEY_End, NSEndFunctionKey},
    {XKB_KEY_Begin, NSBeginFunctionKey},
    {XKB_KEY_Insert, NSInsertFunctionKey},
    {XKB_KEY_Menu, NSMenuFunctionKey},
    {XKB_KEY_KP_Tab, NSTabCharacter},
    {XKB_KEY_KP_Enter, NSEnterCharacter},
    {XKB_KEY_KP_Home, NSHomeFunctionKey},
    {XKB_KEY_KP_Left, NSLeftArrowFunctionKey},
    {XKB_KEY_KP_Up, NSUpArrowFunctionKey},
    {XKB_KEY_KP_Right, NSRightArrowFunctionKey},
    {XKB_KEY_KP_Down, NSDownArrowFunctionKey},
    {XKB_KEY_KP_Page_Up, NSPageUpFunctionKey},
    {XKB_KEY_KP_Page_Down, NSPageDownFunctionKey},
    {XKB_KEY_KP_End, NSEndFunctionKey},
    {XKB_KEY_KP_Begin, NSBeginFunctionKey},
    {XKB_KEY_KP_Insert, NSInsertFunctionKey},
    {XKB_KEY_KP_Delete, NSDeleteFunctionKey},
    {XKB_KEY_Delete, NSDeleteFunctionKey},
};
static_assert(std::is_sorted(std::begin(kKeyCharacters), std::end(kKeyCharacters),
                             [](const KeyCharacter& a, const KeyCharacter& b) { return a.symbol < b.symbol; }));

constexpr unichar kFirstFunctionKey = 0xF700, kLastFunctionKey = 0xF8FF;

unichar CharacterOf(xkb_keysym_t symbol)
{
    if (symbol >= XKB_KEY_F1 && symbol <= XKB_KEY_F35)
        return static_cast<unichar>(NSF1FunctionKey + (symbol - XKB_KEY_F1));
    const auto* found = std::lower_bound(std::begin(kKeyCharacters), std::end(kKeyCharacters), symbol,
                                         [](const KeyCharacter& row, xkb_keysym_t s) { return row.symbol < s; });
    return found != std::end(kKeyCharacters) && found->symbol == symbol ? found->character : u'\0';
}

bool IsKeypad(xkb_keysym_t symbol) { return symbol >= XKB_KEY_KP_Space && symbol <= XKB_KEY_KP_Equal; }

std::u16string Units(std::uint32_t codePoint)
{
    if (codePoint < 0x10000) return std::u16string(1, static_cast<char16_t>(codePoint));
    codePoint -= 0x10000;
    return {static_cast<char16_t>(0xD800 + (codePoint >> 10)), static_cast<char16_t>(0xDC00 + (codePoint & 0x3FF))};
}

bool IsControl(std::uint32_t codePoint) { return codePoint < 0x20 || (codePoint >= 0x7F && codePoint < 0xA0); }

const char* LocaleName()
{
    for (const char* variable : {"LC_ALL", "LC_CTYPE", "LANG"})
        if (const char* value = std::getenv(variable); value && *value) return value;
    return "C";
}

} // namespace

std::uint32_t X11FlagsOfState(std::uint16_t state)
{
    std::uint32_t flags = 0;
    for (const auto& row : kModifiers)
        if (state & row.state) flags |= row.flags;
    return flags;
}

std::unique_ptr<X11Keyboard> X11Keyboard::open(X11Connection& connection, std::string* error)
{
    auto keyboard = std::unique_ptr<X11Keyboard>(new X11Keyboard(connection));
    const int works = xkb_x11_setup_xkb_extension(connection.get(), XKB_X11_MIN_MAJOR_XKB_VERSION,
                                                  XKB_X11_MIN_MINOR_XKB_VERSION, XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS,
                                                  nullptr, nullptr, &keyboard->mFirstEvent, nullptr);
    keyboard->mDevice = works ? xkb_x11_get_core_keyboard_device_id(connection.get()) : -1;
    keyboard->mContext.reset(xkb_context_new(XKB_CONTEXT_NO_FLAGS));
    if (keyboard->mDevice < 0 || !keyboard->mContext || !keyboard->loadKeymap()) {
        if (error) *error = "the X server has no keyboard with the XKEYBOARD extension";
        return nullptr;
    }
    keyboard->selectEvents();
    return keyboard;
}

bool X11Keyboard::loadKeymap()
{
    auto* connection = mConnection.get();
    mKeymap.reset(xkb_x11_keymap_new_from_device(mContext.get(), connection, mDevice, XKB_KEYMAP_COMPILE_NO_FLAGS));
    mState.reset(mKeymap ? xkb_x11_state_new_from_device(mKeymap.get(), connection, mDevice) : nullptr);
    mConnection.keepQueuedEvents();
    return mState != nullptr;
}

void X11Keyboard::loadComposeTable()
{
    using Table = std::unique_ptr<xkb_compose_table, X11Releaser<xkb_compose_table_unref>>;
    Table table(xkb_compose_table_new_from_locale(mContext.get(), LocaleName(), XKB_COMPOSE_COMPILE_NO_FLAGS));
    if (!table)
        table.reset(xkb_compose_table_new_from_locale(mContext.get(), "en_US.UTF-8", XKB_COMPOSE_COMPILE_NO_FLAGS));
    if (table) mCompose.reset(xkb_compose_state_new(table.get(), XKB_COMPOSE_STATE_NO_FLAGS));
}

void X11Keyboard::selectEvents()
{
    constexpr std::uint16_t kEvents =
        XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY | XCB_XKB_EVENT_TYPE_STATE_NOTIFY;
    constexpr std::uint16_t kMapParts = XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS |
                                        XCB_XKB_MAP_PART_MODIFIER_MAP | XCB_XKB_MAP_PART_EXPLICIT_COMPONENTS |
                                        XCB_XKB_MAP_PART_KEY_ACTIONS | XCB_XKB_MAP_PART_VIRTUAL_MODS |
                                        XCB_XKB_MAP_PART_VIRTUAL_MOD_MAP;
    const auto device = static_cast<xcb_xkb_device_spec_t>(mDevice);
    xcb_xkb_select_events(mConnection.get(), device, kEvents, 0, kEvents, kMapParts, kMapParts, nullptr);
    // a held key then repeats as presses without releases between
    constexpr std::uint32_t kFlag = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
    mConnection.reply<xcb_xkb_per_client_flags_reply>(
        xcb_xkb_per_client_flags(mConnection.get(), device, kFlag, kFlag, 0, 0, 0));
}

bool X11Keyboard::handle(const xcb_generic_event_t& event)
{
    if (X11TypeOf(event) != mFirstEvent) return false;
    switch (event.pad0) { // the extension's own type
    case XCB_XKB_NEW_KEYBOARD_NOTIFY:
    case XCB_XKB_MAP_NOTIFY:
        loadKeymap();
        break;
    case XCB_XKB_STATE_NOTIFY: {
        const auto& state = X11EventAs<xcb_xkb_state_notify_event_t>(event);
        if (mState)
            xkb_state_update_mask(mState.get(), state.baseMods, state.latchedMods, state.lockedMods,
                                  static_cast<xkb_layout_index_t>(state.baseGroup),
                                  static_cast<xkb_layout_index_t>(state.latchedGroup), state.lockedGroup);
        break;
    }
    default:
        break;
    }
    return true;
}

std::optional<X11KeyText> X11Keyboard::press(const xcb_key_press_event_t& event)
{
    const bool isARepeat = mPressed[event.detail];
    mPressed[event.detail] = true;
    std::optional<X11KeyText> text = textOf(event.detail, event.state);
    if (!mState) return text;
    const auto typed =
        composed(xkb_state_key_get_one_sym(mState.get(), event.detail), (event.state & kShortcutState) != 0);
    if (!typed) return std::nullopt;
    if (!typed->empty()) {
        if (!text) text.emplace().charactersIgnoringModifiers = *typed;
        text->characters = *typed;
    }
    if (text) text->isARepeat = isARepeat;
    return text;
}

std::optional<X11KeyText> X11Keyboard::release(const xcb_key_release_event_t& event)
{
    mPressed[event.detail] = false;
    return textOf(event.detail, event.state);
}

// Answers nothing while a sequence goes on or was given up, the empty text when the key belongs to none.
std::optional<std::u16string> X11Keyboard::composed(xkb_keysym_t symbol, bool isShortcut)
{
    if (isShortcut) return std::u16string();
    if (!std::exchange(mComposeIsLoaded, true)) loadComposeTable(); // not before: it takes as long as a whole editor
    auto* compose = mCompose.get();
    if (!compose || xkb_compose_state_feed(compose, symbol) == XKB_COMPOSE_FEED_IGNORED) return std::u16string();
    switch (xkb_compose_state_get_status(compose)) {
    case XKB_COMPOSE_COMPOSING:
        return std::nullopt;
    case XKB_COMPOSE_CANCELLED:
        xkb_compose_state_reset(compose);
        return std::nullopt;
    case XKB_COMPOSE_COMPOSED: {
        char text[64] = {};
        xkb_compose_state_get_utf8(compose, text, sizeof text);
        xkb_compose_state_reset(compose);
        return NSUTF16FromUTF8(text);
    }
    default:
        return std::u16string();
    }
}

std::optional<X11KeyText> X11Keyboard::textOf(xkb_keycode_t key, std::uint16_t state) const
{
    if (!mState) return std::nullopt;
    const xkb_keysym_t symbol = symbolIgnoringModifiers(key, state);
    X11KeyText text;
    if (IsKeypad(symbol)) text.flags |= NSNumericPadKeyMask;
    if (const unichar own = CharacterOf(symbol)) {
        text.charactersIgnoringModifiers.assign(1, own);
        text.characters = text.charactersIgnoringModifiers;
        if (own >= kFirstFunctionKey && own <= kLastFunctionKey) text.flags |= NSFunctionKeyMask;
        return text;
    }
    const std::uint32_t plain = xkb_keysym_to_utf32(symbol);
    const std::uint32_t typed = xkb_state_key_get_utf32(mState.get(), key);
    if (plain != 0 && !IsControl(plain)) text.charactersIgnoringModifiers = Units(plain);
    if (typed != 0 && !IsControl(typed) && !(state & kShortcutState)) text.characters = Units(typed);
    if (text.charactersIgnoringModifiers.empty()) text.charactersIgnoringModifiers = text.characters;
    if (text.charactersIgnoringModifiers.empty()) return std::nullopt;
    return text;
}

xkb_keysym_t X11Keyboard::symbolIgnoringModifiers(xkb_keycode_t key, std::uint16_t state) const
{
    const xkb_keysym_t now = xkb_state_key_get_one_sym(mState.get(), key);
    if (IsKeypad(now)) return now; // Num Lock picks its level
    const bool shifted = (state & XCB_MOD_MASK_SHIFT) != 0;
    const xkb_layout_index_t layout = xkb_state_key_get_layout(mState.get(), key);
    const xkb_keysym_t symbol = symbolAtLevel(key, layout, shifted);
    if (!(state & kShortcutState) || xkb_keysym_to_utf32(symbol) < 0x80) return symbol;
    // a shortcut of another alphabet means the letter that the key has in a Latin layout
    const xkb_layout_index_t count = xkb_keymap_num_layouts_for_key(mKeymap.get(), key);
    for (xkb_layout_index_t other = 0; other < count; ++other) {
        const xkb_keysym_t latin = symbolAtLevel(key, other, shifted);
        const std::uint32_t character = xkb_keysym_to_utf32(latin);
        if (character > 0x20 && character < 0x7F) return latin;
    }
    return symbol;
}

xkb_keysym_t X11Keyboard::symbolAtLevel(xkb_keycode_t key, xkb_layout_index_t layout, bool shifted) const
{
    const xkb_keysym_t* symbols = nullptr;
    if (shifted && xkb_keymap_key_get_syms_by_level(mKeymap.get(), key, layout, 1, &symbols) == 1) return symbols[0];
    if (xkb_keymap_key_get_syms_by_level(mKeymap.get(), key, layout, 0, &symbols) == 1) return symbols[0];
    return XKB_KEY_NoSymbol;
}
