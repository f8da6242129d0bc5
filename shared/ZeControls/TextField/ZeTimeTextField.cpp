#include "TextField/ZeTimeTextField.h"

#include "Foundation/NSClass.h"
#include "TextField/ZeTimeTextFieldCell.h"

#include <algorithm>
#include <limits>

NS_CLASS_TABLE(ZeTimeTextField, NSTextField, "")
    .action("onFormatMenuAction:", &ZeTimeTextField::onFormatMenuAction)
NS_CLASS_TABLE_END

bool ZeTimeTextField::initWithFrame(NSRect frame)
{
    if (!NSTextField::initWithFrame(frame)) return false;
    initFormatter();
    m_OwnMenu = createDefaultMenuWithTarget(this);
    setDefaultMenu(m_OwnMenu);
    setMenu(m_DefaultMenu);
    return true;
}

void ZeTimeTextField::dealloc()
{
    cleanup();
    NSTextField::dealloc();
}

void ZeTimeTextField::cleanup()
{
    if (!m_Formatter) return;
    m_Formatter->cleanup();
    m_Formatter.reset();
}

// --- the formatter

void ZeTimeTextField::initFormatter()
{
    if (m_Formatter) return;
    m_Formatter = make<ZeTimeTextFormatter>();
    setFormatter(m_Formatter);
    m_Formatter->setObjectValue(objectValue());
}

ZeTimeTextFormatter& ZeTimeTextField::neededFormatter()
{
    initFormatter();
    return *m_Formatter;
}

void ZeTimeTextField::setFormat(unsigned type)
{
    const RetainPtr<ZeTimeTextField> keep(this);
    ZeTimeTextFormatter& formatter = neededFormatter();
    const RetainPtr<NSObject> value(objectValue());
    const int former = formatter.format();
    willChangeValueForKey("format");
    if (type <= QVPOSFMT_PERCENT) formatter.setFormat(static_cast<int>(type));
    const bool changed = formatter.format() != former;
    if (value) setObjectValue(value);
    // What was being typed was meant in the former format.
    if (changed) abortEditing();
    didChangeValueForKey("format");
}

unsigned ZeTimeTextField::format() const { return m_Formatter ? static_cast<unsigned>(m_Formatter->format()) : 0; }

void ZeTimeTextField::setFrameAndSampleRate(double rate)
{
    neededFormatter().setFrameRate(rate);
    neededFormatter().setSampleRate(rate);
}

void ZeTimeTextField::setFrameRate(double framesPerSecond) { neededFormatter().setFrameRate(framesPerSecond); }
void ZeTimeTextField::setSampleRate(double samplesPerSecond) { neededFormatter().setSampleRate(samplesPerSecond); }
void ZeTimeTextField::setTempo(double beatsPerMinute) { neededFormatter().setTempo(beatsPerMinute); }
void ZeTimeTextField::setPercentBase(double samples) { neededFormatter().setPercentBase(samples); }
void ZeTimeTextField::setTimeSignature(unsigned signature) { neededFormatter().setTimeSignature(signature); }
void ZeTimeTextField::setTicksPerBeat(unsigned ticks) { neededFormatter().setTicksPerBeat(ticks); }
void ZeTimeTextField::setIsLength(bool isLength) { neededFormatter().setIsLength(isLength); }
long long ZeTimeTextField::getIncrement() const { return m_Formatter ? m_Formatter->getIncrement() : 0; }

// --- the value

void ZeTimeTextField::setObjectValue(NSObject* value)
{
    const RetainPtr<NSObject> keep(value);
    if (m_Formatter) m_Formatter->setObjectValue(value);
    NSTextField::setObjectValue(value);
}

namespace {

long long Stepped(long long position, long long increment, bool up)
{
    using Limits = std::numeric_limits<long long>;
    long long stepped = 0;
    const bool overflows = up ? __builtin_add_overflow(position, increment, &stepped)
                              : __builtin_sub_overflow(position, increment, &stepped);
    if (!overflows) return stepped;
    return up ? Limits::max() : Limits::min();
}

} // namespace

bool ZeTimeTextField::stepWithKey(bool up, NSEvent& event)
{
    if ((event.modifierFlags() & NSShiftKeyMask) || !currentEditor()) return false; // Shift selects
    const RetainPtr<ZeTimeTextField> keep(this);
    RetainPtr<NSObject> value(objectValue());
    if (RetainPtr<NSObject> typed; currentEditor()->isEdited()) {
        if (!readText(typed)) return true;
        if (typed) value = typed;
    }
    setFormat(format()); // brings the format's own frame rate back
    const auto* const number = asKind<NSNumber>(value.get());
    long long position = Stepped(number ? number->longLongValue() : 0, getIncrement(), up);
    if (m_Formatter && m_Formatter->isLength()) position = std::max(position, 0LL);
    setObjectValue(NSNumber::numberWithLongLong(position).get());
    abortEditing(); // shows the value, all selected
    valueWasTyped();
    sendAction(action(), target());
    return true;
}

// --- the menu

RetainPtr<NSMenu> ZeTimeTextField::createDefaultMenuWithTarget(NSObject* target)
{
    return make<ZeTimeFormatMenu>(&ZeTimeFormatMenu::initWithTarget, target);
}

void ZeTimeTextField::setDefaultMenu(NSMenu* menu)
{
    m_DefaultMenu = menu;
    if (auto* const own = asKind<ZeTimeTextFieldCell>(cell())) own->setDefaultMenu(menu);
}

void ZeTimeTextField::onFormatMenuAction(NSMenuItem* sender)
{
    if (!sender) return;
    const RetainPtr<ZeTimeTextField> keep(this);
    setFormat(static_cast<unsigned>(sender->tag()));
    abortEditing(); // also where the format was the same
}

bool ZeTimeTextField::validateUserInterfaceItem(NSMenuItem& item)
{
    if (!item.action() || std::string_view(item.action()) != "onFormatMenuAction:") return true;
    item.setState(format() == item.tag() ? NSOnState : NSOffState);
    return true;
}

bool ZeTimeTextField::eventIndicatesContextMenu(const NSEvent* event) const
{
    return ZeEventIndicatesContextMenu(event);
}

NSMenu* ZeTimeTextField::menuForEvent(NSEvent& event)
{
    return eventIndicatesContextMenu(&event) ? defaultMenu() : nullptr;
}

void ZeTimeTextField::keyDown(NSEvent& event)
{
    const bool asksForMenu =
        event.keyCharacter() == NSMenuFunctionKey ||
        (event.keyCharacter() == NSF10FunctionKey && (event.modifierFlags() & NSShiftKeyMask) != 0);
    if (!asksForMenu || !showMenuForKey(event)) NSTextField::keyDown(event);
}

/// As a right press at the lower left corner would, with the current format highlighted.
bool ZeTimeTextField::showMenuForKey(const NSEvent& event)
{
    const RetainPtr<NSView> view(currentEditor() ? static_cast<NSView*>(currentEditor()) : this);
    const NSPoint corner = view->convertPointToWindow({0, view->bounds().size.height});
    const auto press = NSEvent::mouseEvent(NSRightMouseDown, corner, 0, event.timestamp(), window(), 1);
    const RetainPtr<NSMenu> menu(view->menuForEvent(*press));
    if (!menu) return false;
    NSMenuPlacement placement;
    placement.anchor = view->bounds();
    for (const auto& item : menu->itemArray())
        if (item->tag() == format()) placement.highlighted = item.get();
    return menu->popUp(placement, view);
}
