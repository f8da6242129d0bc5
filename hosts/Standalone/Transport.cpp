#include "Standalone/Transport.h"

#include "AppKit/NSAppearance.h"
#include "AppKit/NSGraphicsContext.h"
#include "AppKit/NSNib.h"
#include "Foundation/NSBundle.h"

NS_CLASS_TABLE(TransportView, NSView, "")
NS_CLASS_TABLE_END

NS_CLASS_TABLE(Transport, NSObject, "")
    .action("playOrStop:", &Transport::playOrStop)
        .outlet("view", &Transport::mView)
        .outlet("button", &Transport::mButton)
        .outlet("meter", &Transport::mMeter)
        .outlet("heard", &Transport::mHeard)
NS_CLASS_TABLE_END

namespace {

RetainPtr<NSString> localized(const char* english)
{
    const RetainPtr<NSString> key = NSString::string(english);
    return NSBundle::mainBundle()->localizedStringForKey(key, nullptr, nullptr);
}

RetainPtr<NSString> placeOf(const TonePlayer& player)
{
    switch (player.heard()) {
    case TonePlayer::Heard::unknown:
        break;
    case TonePlayer::Heard::muted:
        return localized("Muted");
    case TonePlayer::Heard::nowhere:
        return localized("No sound device");
    case TonePlayer::Heard::device:
        return NSString::string(player.deviceName());
    }
    return NSString::string("");
}

} // namespace

void TransportView::drawRect(NSRect)
{
    const CGContextRef context = NSGraphicsContext::currentContext();
    const CGFloat hairline = 1 / NSGraphicsContext::currentScale();
    CGContextSetFillColorWithColor(context, NSAppearanceColor(NSAppearanceColorName::cardColor));
    CGContextFillRect(context, bounds());
    CGContextSetFillColorWithColor(context, NSAppearanceColor(NSAppearanceColorName::cardBorderColor));
    CGContextFillRect(context, CGRectMake(0, CGRectGetMaxY(bounds()) - hairline, bounds().size.width, hairline));
}

bool Transport::initWithPlayer(TonePlayer* player)
{
    mPlayer = player;
    // only the interface description names these; naming them here too keeps the linker from leaving them out
    NSRegisterClass(TransportView::staticClass());
    NSRegisterClass(LevelMeter::staticClass());
    if (!NSObject::init() || !NSLoadNibNamed(NSString::string("Transport").get(), this) || !mView) return false;
    update();
    return true;
}

void Transport::update()
{
    const RetainPtr<NSString> title = localized(mPlayer->isPlaying() ? "Stop" : "Play");
    if (mButton && !title->isEqual(mButton.get()->title())) mButton.call(&NSButton::setTitle, title.get());
    mMeter.call(&LevelMeter::setLevel, mPlayer->level());
    const RetainPtr<NSString> place = placeOf(*mPlayer);
    const RetainPtr<NSString> shown = mHeard.call(&NSControl::stringValue);
    if (place->isEqual(shown.get())) return;
    mHeard.call(&NSControl::setStringValue, place.get());
    mHeard.call(&NSView::setToolTip, place.get()); // where the name is longer than its place
}

void Transport::playOrStop(NSObject*) { mPlayer->isPlaying() ? mPlayer->stop() : mPlayer->play(); }
