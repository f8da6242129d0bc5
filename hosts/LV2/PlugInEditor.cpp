#include "LV2/PlugInEditor.h"

#include "AppKit/NSApplication.h"
#include "CoreFoundation/CFRunLoop.h"
#include "Foundation/NSAutoreleasePool.h"
#include "LV2/Atoms.h"
#include "TextField/ZeTimeTextField.h"
#include "TonaroCocoaViewFactory.h"

#include <array>
#include <cstring>
#include <stdexcept>

#include <lv2/patch/patch.h>

namespace {

constexpr int kMostTurns = 16; // of the run loop in one idle call
constexpr const char* kFormatKey = "format";

ZeTimeTextField* TimeFieldIn(NSView* view)
{
    if (auto* field = asKind<ZeTimeTextField>(view)) return field;
    for (const auto& subview : view->subviews())
        if (auto* field = TimeFieldIn(subview)) return field;
    return nullptr;
}

} // namespace

/// Hears of a format that a person picked.
class PlugInEditor::FormatObserver final : public NSObject {
public:
    void observeValueForKeyPath(const NSString*, NSObject*, void* context) override
    {
        static_cast<PlugInEditor*>(context)->formatPicked();
    }
};

PlugInEditor::PlugInEditor(const EditorHost& host, const std::string& bundlePath)
    : mProcess(bundlePath, host.scale()),
      mHost(host),
      mUnit(*this, host.sampleRateHz()),
      mFormatObserver(make<FormatObserver>())
{
    const NSAutoreleasePool pool;
    if (mHost.map()) mapNames();
    openWindow();
    if (mHost.parent()) mWindow->orderFront();
    sendMessage(mNames.patchGet);
}

PlugInEditor::~PlugInEditor()
{
    const NSAutoreleasePool pool;
    closeWindow(); // what is being edited ends, and the host hears of it
    mUnit.close();
}

void PlugInEditor::openWindow()
{
    const auto factory = make<TonaroCocoaViewFactory>();
    NSView* const view = factory->uiViewForAudioUnit(&mUnit, {});
    if (!view) throw std::runtime_error("the view can't be opened");
    NSBackendWindowOptions options;
    options.contentSize = view->frame().size;
    options.scale = mHost.scale();
    options.parent = mHost.parent();
    mWindow = make<NSWindow>(&NSWindow::initWithDisplay, NSApplication::sharedApplication()->display(), options);
    if (!mWindow) throw std::runtime_error("the window can't be opened");
    const std::string& title = mHost.windowTitle();
    mWindow->setTitle(NSString::string(title.empty() ? std::string("Tonaro") : title).get());
    mWindow->setContentView(view);
    mLengthField = RetainPtr<ZeTimeTextField>(TimeFieldIn(view));
    if (mLengthField) mLengthField->addObserverForKeyPath(mFormatObserver, NSString::string(kFormatKey).get(), this);
    mHost.resize(NSPixelSize(options.contentSize, mWindow->backingScaleFactor()));
}

void PlugInEditor::closeWindow()
{
    if (mLengthField) mLengthField->removeObserverForKeyPath(mFormatObserver, NSString::string(kFormatKey).get());
    mLengthField.reset();
    if (const RetainPtr<NSWindow> window = std::move(mWindow)) {
        window->close();
        window->setContentView(nullptr);
    }
}

void PlugInEditor::show()
{
    const NSAutoreleasePool pool;
    if (!nativeWindow()) {
        closeWindow();
        openWindow();
    }
    mWindow->orderFront();
}

void PlugInEditor::hide()
{
    const NSAutoreleasePool pool;
    if (mWindow) mWindow->orderOut();
}

bool PlugInEditor::idle()
{
    // what the display sends meanwhile can wait for the next call
    for (int turn = 0; turn < kMostTurns; ++turn) {
        const auto result = CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0.0, true);
        if (result != kCFRunLoopRunHandledSource || !CFRunLoopIsDue(CFRunLoopGetCurrent())) break;
    }
    return nativeWindow() != 0;
}

// --- ports

void PlugInEditor::writePort(AudioUnitParameterID port, float value) { mHost.write(port, sizeof value, 0, &value); }

void PlugInEditor::touchPort(AudioUnitParameterID port, bool isHeld) { mHost.touch(port, isHeld); }

void PlugInEditor::portEvent(std::uint32_t port, std::uint32_t size, LV2_URID protocol, const void* data)
{
    if (!data) return;
    const NSAutoreleasePool pool;
    float value = 0;
    if (port < kParamCount && protocol == 0 && size == sizeof value) {
        std::memcpy(&value, data, sizeof value);
        mUnit.portChanged(port, value);
    } else if (port == kPortNotify && protocol == mHost.eventTransfer() && mHost.map()) {
        readMessage(size, data);
    }
}

// --- the time format, which has no port

void PlugInEditor::mapNames()
{
    const auto id = [this](const char* uri) { return mHost.map()->map(mHost.map()->handle, uri); };
    mNames = {id(LV2_PATCH__Get), id(LV2_PATCH__Set), id(LV2_PATCH__property), id(LV2_PATCH__value),
              id(kTonaroTimeFormatURI)};
    lv2_atom_forge_init(&mForge, mHost.map());
}

void PlugInEditor::sendMessage(LV2_URID kind, std::optional<std::uint32_t> format)
{
    if (!mHost.map()) return;
    alignas(std::uint64_t) std::array<std::uint8_t, 128> message; // more than one takes
    lv2_atom_forge_set_buffer(&mForge, message.data(), message.size());
    LV2_Atom_Forge_Frame object;
    lv2_atom_forge_object(&mForge, &object, 0, kind);
    lv2_atom_forge_key(&mForge, mNames.patchProperty);
    lv2_atom_forge_urid(&mForge, mNames.timeFormat);
    if (format) {
        lv2_atom_forge_key(&mForge, mNames.patchValue);
        lv2_atom_forge_int(&mForge, static_cast<std::int32_t>(*format));
    }
    lv2_atom_forge_pop(&mForge, &object);
    mHost.write(kPortControl, mForge.offset, mHost.eventTransfer(), message.data());
}

void PlugInEditor::writeTimeFormat(std::uint32_t format) { sendMessage(mNames.patchSet, format); }

void PlugInEditor::readMessage(std::uint32_t size, const void* data)
{
    const auto* const object = static_cast<const LV2_Atom_Object*>(data);
    if (size < sizeof *object || object->atom.size > size - sizeof object->atom || !HoldsObject(object->atom)) return;
    if (object->atom.type != mForge.Object || object->body.otype != mNames.patchSet) return;
    const LV2_Atom* const property = PropertyOf(*object, mNames.patchProperty);
    const LV2_Atom* const value = PropertyOf(*object, mNames.patchValue);
    if (!property || AtomContent<LV2_URID>(*property, mForge.URID) != mNames.timeFormat || !value) return;
    const auto asked = AtomContent<std::int32_t>(*value, mForge.Int);
    if (!asked) return;
    const auto format = static_cast<std::uint32_t>(*asked);
    mUnit.timeFormatChanged(format);
    if (mLengthField && format < kTonaroTimeFormats && mLengthField->format() != format)
        mLengthField->setFormat(format);
}

void PlugInEditor::formatPicked()
{
    const std::uint32_t format = mLengthField->format();
    AudioUnitSetProperty(&mUnit, kPropertyTimeFormat, kAudioUnitScope_Global, 0, &format, sizeof format);
}
