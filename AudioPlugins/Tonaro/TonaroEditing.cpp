#include "TonaroEditing.h"

#include "AppKit/NSPasteboard.h"
#include "AppKit/NSWindow.h"
#include "TonaroSettingText.h"
#include "TonaroTexts.h"

namespace {

constexpr double kNoticeSeconds = 4;
constexpr CGFloat kNoticeInset = 20; // points from the editor's left and bottom
constexpr const char* kUnreadable = "“%1$@” is no part of a setting.";
constexpr const char* kNothing = "The clipboard holds no setting.";

unichar Lowered(unichar key) { return key >= u'A' && key <= u'Z' ? static_cast<unichar>(key + 32) : key; }

} // namespace

TonaroEditing::TonaroEditing(NSView& editor, AudioUnit unit)
    : mEditor(editor), mUnit(unit), mHistory(std::make_shared<TonaroHistory>(unit))
{
}

TonaroEditing::~TonaroEditing()
{
    *mAlive = false;
    hideNotice();
}

bool TonaroEditing::performKey(const NSEvent& event)
{
    const std::uint32_t flags = event.modifierFlags() & (NSCommandKeyMask | NSShiftKeyMask | NSAlternateKeyMask);
    const unichar key = Lowered(event.keyCharacter());
    if (event.type() != NSKeyDown || !(flags & NSCommandKeyMask) || (flags & NSAlternateKeyMask)) return false;
    const bool shift = (flags & NSShiftKeyMask) != 0;
    const std::shared_ptr<TonaroHistory> history = mHistory; // what it sets may end this object
    if (key == u'z') return shift ? history->redo() : history->undo();
    if (shift) return false;
    if (key == u'y') return history->redo();
    if (key == u'c') copy();
    if (key == u'v') paste();
    return key == u'c' || key == u'v';
}

void TonaroEditing::copy() const
{
    std::array<float, kParamCount> values{};
    for (AudioUnitParameterID id = 0; id < kParamCount; ++id)
        AudioUnitGetParameter(mUnit, id, kAudioUnitScope_Global, 0, &values[id]);
    NSPasteboard::setString(NSString::string(TonaroSettingText(values)).get());
}

void TonaroEditing::paste()
{
    NSPasteboard::readString([this, alive = mAlive](const NSString* text) {
        if (*alive) pasteText(text ? text->utf8() : std::string());
    });
}

void TonaroEditing::pasteText(const std::string& text)
{
    std::string problem;
    const TonaroSetting setting = TonaroSettingFromText(text, problem);
    if (!problem.empty()) return showNotice(kUnreadable, problem);
    if (setting.empty()) return showNotice(kNothing, {});
    hideNotice();
    const std::shared_ptr<TonaroHistory> history = mHistory;
    history->apply(setting);
}

void TonaroEditing::showNotice(const char* key, const std::string& quote)
{
    hideNotice();
    NSWindow* const window = mEditor.window();
    if (!window) return;
    const RetainPtr<NSString> sentence = TonaroText(key, {quote});
    const NSRect room = mEditor.convertRectToWindow(mEditor.bounds());
    const NSRect anchor = {{room.origin.x + kNoticeInset, CGRectGetMaxY(room) - kNoticeInset}, {0, 0}};
    mNotice = make<NSTextBubble>(&NSTextBubble::initWithText, sentence.get(), anchor, room);
    window->addOverlay(mNotice);
    mNoticeTimer = CFRunLoopTimerCreate(CFAbsoluteTimeGetCurrent() + kNoticeSeconds, 0, [this] { hideNotice(); });
    CFRunLoopAddTimer(CFRunLoopGetCurrent(), mNoticeTimer, kCFRunLoopCommonModes);
}

void TonaroEditing::hideNotice()
{
    if (mNoticeTimer) CFRunLoopTimerInvalidate(mNoticeTimer);
    mNoticeTimer.reset();
    const RetainPtr<NSTextBubble> notice = std::exchange(mNotice, nullptr);
    if (notice && notice->window()) notice->window()->removeOverlay(notice); // the editor may have left it
}
