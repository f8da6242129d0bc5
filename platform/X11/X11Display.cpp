#include "X11/X11Display.h"

#include "X11/X11PopUp.h"

namespace {

class X11Display final : public NSDisplay {
public:
    explicit X11Display(std::shared_ptr<X11Server> server) : mServer(std::move(server)) {}
    ~X11Display() override { mServer->settings().setAppearanceHandler(nullptr); }

    std::unique_ptr<NSWindowBackend> makeWindow(NSWindowBackendClient& client,
                                                const NSBackendWindowOptions& options) override
    {
        return X11Window::create(mServer, client, options);
    }
    std::unique_ptr<NSWindowBackend> makePopUp(NSWindowBackendClient& client, NSWindowBackend& parent,
                                               NSRect frame) override
    {
        const auto* window = dynamic_cast<X11Window*>(&parent);
        return window ? X11PopUp::create(mServer, client, *window, frame) : nullptr;
    }
    void setClipboardText(const NSString* text) override { mServer->clipboard().setText(text); }
    void readClipboardText(std::function<void(const NSString*)> callback) override
    {
        mServer->clipboard().read(std::move(callback));
    }
    NSAppearanceName appearance() const override { return mServer->settings().appearance(); }
    void setAppearanceHandler(const std::function<void()>& changed) override
    {
        mServer->settings().setAppearanceHandler(changed);
    }

private:
    std::shared_ptr<X11Server> mServer;
};

} // namespace

std::unique_ptr<NSDisplay> NSMakeX11Display(const char* displayName, std::string* error)
{
    auto server = X11Server::connect(displayName, error);
    return server ? std::make_unique<X11Display>(std::move(server)) : nullptr;
}
