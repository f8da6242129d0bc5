#include "AppKit/NSTextKeys.h"

namespace {

using enum NSTextAction;
using enum NSTextEditing::Direction;
using enum NSTextEditing::Unit;

constexpr std::uint32_t kShift = NSShiftKeyMask, kCommand = NSCommandKeyMask, kOption = NSAlternateKeyMask;
constexpr std::uint32_t kSelects = 1U << 0; ///< not a real modifier: Shift is allowed and extends the selection

struct Binding {
    unichar key;
    std::uint32_t flags; ///< exactly these of Shift, Command and Option
    NSTextAction action;
    NSTextEditing::Direction direction = forward;
    NSTextEditing::Unit unit = character;
};
constexpr Binding kBindings[] = {
    {NSLeftArrowFunctionKey, kSelects, move, backward, character},
    {NSRightArrowFunctionKey, kSelects, move, forward, character},
    {NSLeftArrowFunctionKey, kSelects | kCommand, move, backward, word},
    {NSRightArrowFunctionKey, kSelects | kCommand, move, forward, word},
    {NSHomeFunctionKey, kSelects, move, backward, all},
    {NSEndFunctionKey, kSelects, move, forward, all},
    {NSHomeFunctionKey, kSelects | kCommand, move, backward, all},
    {NSEndFunctionKey, kSelects | kCommand, move, forward, all},
    {NSUpArrowFunctionKey, kSelects, stepUp, backward, all},
    {NSDownArrowFunctionKey, kSelects, stepDown, forward, all},
    {NSUpArrowFunctionKey, kSelects | kCommand, stepUp, backward, all},
    {NSDownArrowFunctionKey, kSelects | kCommand, stepDown, forward, all},
    {NSDeleteCharacter, 0, erase, backward, character},
    {NSDeleteCharacter, kShift, erase, backward, character},
    {NSDeleteCharacter, kCommand, erase, backward, word},
    {NSBackspaceCharacter, 0, erase, backward, character},
    {NSBackspaceCharacter, kShift, erase, backward, character},
    {NSBackspaceCharacter, kCommand, erase, backward, word},
    {NSDeleteFunctionKey, 0, erase, forward, character},
    {NSDeleteFunctionKey, kCommand, erase, forward, word},
    {NSDeleteFunctionKey, kShift, cut},
    {NSInsertFunctionKey, kShift, paste},
    {NSInsertFunctionKey, kCommand, copy},
    {u'a', kCommand, selectAll},
    {u'c', kCommand, copy},
    {u'x', kCommand, cut},
    {u'v', kCommand, paste},
    {u'z', kCommand, undo},
    {u'z', kCommand | kShift, redo},
    {u'y', kCommand, redo},
    {NSCarriageReturnCharacter, 0, accept},
    {NSCarriageReturnCharacter, kShift, accept},
    {NSEnterCharacter, 0, accept},
    {NSEnterCharacter, kShift, accept},
    {NSEscapeCharacter, 0, cancel},
};

unichar Lowered(unichar key) { return key >= u'A' && key <= u'Z' ? static_cast<unichar>(key + 32) : key; }

} // namespace

NSTextCommand NSTextCommandForKey(unichar key, std::uint32_t flags)
{
    flags &= kShift | kCommand | kOption;
    for (const Binding& binding : kBindings) {
        const bool selects = (binding.flags & kSelects) != 0;
        const std::uint32_t wanted = selects ? (binding.flags & ~kSelects) | (flags & kShift) : binding.flags;
        if (binding.key != Lowered(key) || wanted != flags) continue;
        const auto selecting =
            selects && (flags & kShift) != 0 ? NSTextEditing::Selecting::extend : NSTextEditing::Selecting::no;
        return {binding.action, binding.direction, binding.unit, selecting};
    }
    return {};
}

std::u16string_view NSTextTypedByKey(const NSEvent& event)
{
    const std::uint32_t flags = event.modifierFlags();
    const bool control = (flags & NSControlKeyMask) != 0, option = (flags & kOption) != 0;
    const bool thirdLevel = control && option;
    const bool plain = !control && !option && (flags & kCommand) == 0;
    const NSString* characters = event.characters();
    if (!characters || (!plain && !thirdLevel)) return {};
    return NSTypableText(characters->units());
}
