#pragma once

/// What the keys mean while a text is edited.

#include "AppKit/NSEvent.h"
#include "AppKit/NSTextEditing.h"

/// In this order: what changes nothing, what changes the text, what the whole field must decide.
enum class NSTextAction {
    none, ///< not a key of the editor
    move,
    selectAll,
    copy,
    erase,
    cut,
    paste,
    undo,
    redo,
    accept, ///< Return: commits the edit
    cancel,
    stepUp,
    stepDown,
    firstChange = erase,
    firstOfField = accept,
};

struct NSTextCommand {
    NSTextAction action = NSTextAction::none;
    NSTextEditing::Direction direction = NSTextEditing::Direction::forward;
    NSTextEditing::Unit unit = NSTextEditing::Unit::character;
    NSTextEditing::Selecting selecting = NSTextEditing::Selecting::no;
};

/// @param key    NSEvent::keyCharacter()
/// @param flags  NSEventModifierFlags
/// Control-Shift-Left is {move, backward, word, extend}.
NSTextCommand NSTextCommandForKey(unichar key, std::uint32_t flags);

/// What the key types; empty for commands, function keys and shortcuts of somebody else. Control and Alt together are
/// the third level of a keyboard, so they type.
std::u16string_view NSTextTypedByKey(const NSEvent& event);
