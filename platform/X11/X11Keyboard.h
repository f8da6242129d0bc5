#pragma once

/// Key codes to characters: the server's keymap and state, and the compose sequences of the user's locale.

#include "AppKit/NSEvent.h"
#include "X11/X11Connection.h"

#include <bitset>
#include <optional>

#include <xkbcommon/xkbcommon-compose.h>
#include <xkbcommon/xkbcommon.h>

/// The flags of an event's modifier state. Num Lock and the third shift level don't count.
std::uint32_t X11FlagsOfState(std::uint16_t state);

/// What a key types.
struct X11KeyText {
    std::u16string characters;                  ///< after compose; may be empty
    std::u16string charactersIgnoringModifiers; ///< as if only Shift were held; never empty
    std::uint32_t flags = 0;                    ///< of the key itself: numeric pad, function key
    bool isARepeat = false;
};

class X11Keyboard {
public:
    /// Null when the server has no usable keyboard extension; says why.
    static std::unique_ptr<X11Keyboard> open(X11Connection& connection, std::string* error);

    /// Takes an event of the keyboard extension: new keymaps and changes of the state. @return whether it was one
    bool handle(const xcb_generic_event_t& event);
    /// @return nothing for keys that type nothing of their own: modifiers, parts of a compose sequence
    std::optional<X11KeyText> press(const xcb_key_press_event_t& event);
    std::optional<X11KeyText> release(const xcb_key_release_event_t& event);
    void forgetPressedKeys() { mPressed.reset(); } ///< their releases went elsewhere

private:
    explicit X11Keyboard(X11Connection& connection) : mConnection(connection) {}
    bool loadKeymap();
    void loadComposeTable();
    void selectEvents();
    xkb_keysym_t symbolIgnoringModifiers(xkb_keycode_t key, std::uint16_t state) const;
    xkb_keysym_t symbolAtLevel(xkb_keycode_t key, xkb_layout_index_t layout, bool shifted) const;
    std::optional<X11KeyText> textOf(xkb_keycode_t key, std::uint16_t state) const;
    std::optional<std::u16string> composed(xkb_keysym_t symbol, bool isShortcut);

    X11Connection& mConnection;
    std::uint8_t mFirstEvent = 0;
    std::int32_t mDevice = -1;
    std::unique_ptr<xkb_context, X11Releaser<xkb_context_unref>> mContext;
    std::unique_ptr<xkb_keymap, X11Releaser<xkb_keymap_unref>> mKeymap;
    std::unique_ptr<xkb_state, X11Releaser<xkb_state_unref>> mState;
    std::unique_ptr<xkb_compose_state, X11Releaser<xkb_compose_state_unref>> mCompose;
    bool mComposeIsLoaded = false;
    std::bitset<256> mPressed;
};
