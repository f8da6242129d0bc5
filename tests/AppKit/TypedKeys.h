#pragma once

/// Keys written down: "C-Left S-End 440 Ret" presses Control-Left, Shift-End, types 440 and presses Return. C is
/// Control, S Shift, A Alt; `_` types a space.

#include "AppKit/NSTextView.h"

#include <sstream>
#include <string>
#include <string_view>
#include <vector>

struct TypedKey {
    std::u16string characters;
    unichar key;
    std::uint32_t flags;
};

inline std::vector<TypedKey> KeysOf(std::string_view script)
{
    static const struct {
        std::string_view name;
        unichar key;
    } kNames[] = {
        {"Left", NSLeftArrowFunctionKey},   {"Right", NSRightArrowFunctionKey},  {"Home", NSHomeFunctionKey},
        {"End", NSEndFunctionKey},          {"Up", NSUpArrowFunctionKey},        {"Down", NSDownArrowFunctionKey},
        {"Back", NSDeleteCharacter},        {"Del", NSDeleteFunctionKey},        {"Ins", NSInsertFunctionKey},
        {"Ret", NSCarriageReturnCharacter}, {"Enter", NSEnterCharacter},         {"Tab", NSTabCharacter},
        {"Esc", NSEscapeCharacter},         {"PageDown", NSPageDownFunctionKey}, {"F5", NSF1FunctionKey + 4},
    };
    std::vector<TypedKey> keys;
    std::istringstream words{std::string(script)};
    for (std::string word; words >> word;) {
        std::uint32_t flags = 0;
        while (word.size() > 2 && word[1] == '-' && std::string_view("CSA").find(word[0]) != std::string_view::npos) {
            flags |= word[0] == 'C'   ? NSControlKeyMask | NSCommandKeyMask
                     : word[0] == 'S' ? static_cast<std::uint32_t>(NSShiftKeyMask)
                                      : static_cast<std::uint32_t>(NSAlternateKeyMask);
            word.erase(0, 2);
        }
        bool named = false;
        for (const auto& row : kNames) {
            if (row.name != word) continue;
            keys.push_back({std::u16string(1, row.key), row.key, flags});
            named = true;
        }
        if (named) continue;
        const std::u16string typed = NSUTF16FromUTF8(word);
        for (std::size_t i = 0; i < typed.size(); ++i) {
            const bool pair = (typed[i] & 0xFC00) == 0xD800;
            std::u16string characters = typed[i] == u'_' ? u" " : typed.substr(i, pair ? 2 : 1);
            keys.push_back({characters, characters[0], flags});
            if (pair) ++i;
        }
    }
    return keys;
}

inline RetainPtr<NSEvent> EventOf(const TypedKey& typed, NSWindow* window = nullptr)
{
    return NSEvent::keyEvent(NSKeyDown, typed.flags, 0, window, NSString::string(typed.characters).get(),
                             NSString::string(std::u16string(1, typed.key)).get(), false);
}

/// Text with brackets around what is selected and a bar for the caret: "4[40|]", "|440".
inline std::string Shown(std::u16string_view text, NSTextEditing::Span selection, std::size_t caret)
{
    std::u16string shown;
    for (std::size_t i = 0; i <= text.size(); ++i) {
        if (i == caret && i == selection.end) shown += u'|';
        if (!selection.empty() && i == selection.end) shown += u']';
        if (!selection.empty() && i == selection.start) shown += u'[';
        if (i == caret && i != selection.end) shown += u'|';
        if (i < text.size()) shown += text[i];
    }
    return NSUTF8FromUTF16(shown);
}
