#include "AppKit/NSWindowBackend.h"

namespace {

class OffscreenWindow final : public NSWindowBackend {
public:
    OffscreenWindow(NSWindowBackendClient& client, NSSize size, CGFloat scale)
        : mClient(client), mSize(size), mScale(scale)
    {
    }

    // The last call of a function: the client may destroy this window in it.
    void show() override { mClient.backendFocusChanged(true); }
    void hide() override { mClient.backendFocusChanged(false); }
    void takeFocus() override { mClient.backendFocusChanged(true); }
    void setTitle(const NSString*) override {}
    void setContentSize(NSSize points) override
    {
        mSize = points;
        mClient.backendResized(points, mScale);
    }
    CGFloat backingScale() const override { return mScale; }
    void present(CGContextRef, std::span<const CGRect>) override {} // the window's bitmap is all there is to see
    void setCursor(NSCursorShape) override {}
    NSNativeWindow nativeWindow() const override { return 0; }
    NSRect screenFrame() const override
    {
        constexpr CGFloat kRoomAround = 1000; // so that menus find room on all sides
        return CGRectInset({{0, 0}, mSize}, -kRoomAround, -kRoomAround);
    }

private:
    NSWindowBackendClient& mClient;
    NSSize mSize;
    CGFloat mScale;
};

class OffscreenDisplay final : public NSDisplay {
public:
    explicit OffscreenDisplay(CGFloat scale) : mScale(scale) {}

    std::unique_ptr<NSWindowBackend> makeWindow(NSWindowBackendClient& client,
                                                const NSBackendWindowOptions& options) override
    {
        return std::make_unique<OffscreenWindow>(client, options.contentSize,
                                                 options.scale > 0 ? options.scale : mScale);
    }
    std::unique_ptr<NSWindowBackend> makePopUp(NSWindowBackendClient& client, NSWindowBackend& parent,
                                               NSRect frame) override
    {
        return std::make_unique<OffscreenWindow>(client, frame.size, parent.backingScale());
    }
    void setClipboardText(const NSString* text) override { mClipboard = text; }
    void readClipboardText(std::function<void(const NSString*)> callback) override
    {
        const RetainPtr<const NSString> text = mClipboard;
        callback(text);
    }

private:
    CGFloat mScale;
    RetainPtr<const NSString> mClipboard;
};

} // namespace

std::unique_ptr<NSDisplay> NSMakeOffscreenDisplay(CGFloat scale) { return std::make_unique<OffscreenDisplay>(scale); }
