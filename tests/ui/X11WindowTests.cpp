// Windows among other programs' windows: menus, embedding, the end of things.
#include "ui/X11Rig.h"

#include "Foundation/NSLog.h"

#include <xkbcommon/xkbcommon-keysyms.h>

namespace {

using testing::Contains;
using testing::IsEmpty;
using testing::Not;

class X11Windows : public X11Test {
protected:
    LoggingClient client;
    bool run(LoggingClient& of, const std::string& entry) { return runUntilLogged(of, entry); }
    void setResources(const std::string& text)
    {
        xcb_change_property(person.get(), XCB_PROP_MODE_REPLACE, person.screen().root, XCB_ATOM_RESOURCE_MANAGER,
                            XCB_ATOM_STRING, 8, static_cast<std::uint32_t>(text.size()), text.data());
        person.synchronize();
    }
};

TEST_F(X11Windows, FollowASizeThatOthersGiveThem)
{
    const auto window = display->makeWindow(client, XOptions({400, 200}, XCB_NONE, 2));
    EXPECT_EQ(person.frame(XWindowOf(*window)).size, (CGSize{400, 200}));
    const std::uint32_t size[] = {500, 300};
    xcb_configure_window(person.get(), XWindowOf(*window), XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, size);
    person.synchronize();
    EXPECT_TRUE(run(client, "resized 250x150"));
}

TEST_F(X11Windows, TakeTheirScaleFromTheDesktop)
{
    const auto scale = [this](const std::string& resources) {
        setResources(resources);
        NSBackendWindowOptions options;
        options.contentSize = {20, 10};
        const auto window = display->makeWindow(client, options);
        EXPECT_EQ(person.frame(XWindowOf(*window)).size, NSPixelSize({20, 10}, window->backingScale()));
        return window->backingScale();
    };
    EXPECT_EQ(scale(""), 1);
    EXPECT_EQ(scale("Xft.antialias:\t1\nXft.dpi:\t144\nXft.hinting:\t1\n"), 1.5);
    EXPECT_EQ(scale("Xft.dpi: 110"), 1.25) << "to the nearest quarter";
    EXPECT_EQ(scale("Xft.dpi:\t48\n"), 1) << "never below";
    EXPECT_EQ(scale("Xft.dpi:\t9600\n"), 4) << "never above";
    EXPECT_EQ(scale("notXft.dpi:\t192\n"), 1) << "another key that ends so";
    for (const char* noNumber : {"Xft.dpi:\tmany\n", "Xft.dpi:", "Xft.dpi:\tnan\n"}) EXPECT_EQ(scale(noNumber), 1);
}

TEST_F(X11Windows, FollowTheDesktopsScale)
{
    NSBackendWindowOptions options;
    options.contentSize = {21, 11};
    const auto following = display->makeWindow(client, options);
    options.scale = 1;
    LoggingClient other;
    const auto fixed = display->makeWindow(other, options);
    for (const auto& [dpi, scale] : {std::pair("144", 1.5), {"192", 2.0}, {"120", 1.25}, {"96", 1.0}}) {
        SCOPED_TRACE(dpi);
        setResources(std::string("Xft.dpi:\t") + dpi + "\n");
        client.log.clear();
        EXPECT_TRUE(runUntilLogged(client, "resized 21x11")) << "as large as before in points";
        EXPECT_EQ(following->backingScale(), scale);
        const NSSize pixels = NSPixelSize({21, 11}, scale);
        EXPECT_TRUE(person.waitUntil([&] { return person.frame(XWindowOf(*following)).size == pixels; }));
    }
    EXPECT_EQ(fixed->backingScale(), 1);
    EXPECT_FALSE(other.has("resized 21x11"));
}

TEST_F(X11Windows, AnswerAPing)
{
    const auto window = makeWindow(client);
    const std::uint32_t events[] = {XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY};
    xcb_change_window_attributes(person.get(), person.screen().root, XCB_CW_EVENT_MASK, events);
    person.tell(XWindowOf(*window), "_NET_WM_PING", {77, XWindowOf(*window)});
    EXPECT_TRUE(runUntil([&] {
        const std::unique_ptr<xcb_generic_event_t, XFree> event(xcb_poll_for_event(person.get()));
        if (!event || (event->response_type & 0x7F) != XCB_CLIENT_MESSAGE) return false;
        const auto& answer = reinterpret_cast<const xcb_client_message_event_t&>(*event);
        return answer.window == person.screen().root && answer.data.data32[1] == 77;
    }));
}

// --- menus

class X11Menus : public X11Windows {
protected:
    LoggingClient menuClient;
    std::unique_ptr<NSWindowBackend> window = makeWindow(client, {{300, 200}, {200, 100}});
    std::unique_ptr<NSWindowBackend> menu = display->makePopUp(menuClient, *window, {{10, 90}, {120, 80}});
};

TEST_F(X11Menus, StandOnTheScreenWhereTheirParentIs)
{
    menu->show();
    EXPECT_EQ(person.frame(XWindowOf(*menu)), CGRectMake(310, 290, 120, 80));
    const NSRect screen = window->screenFrame();
    EXPECT_EQ(screen, CGRectMake(-300, -200, Xvfb::kWidth, Xvfb::kHeight));
}

TEST_F(X11Menus, HoldPointerAndKeyboard)
{
    person.focus(XWindowOf(*window));
    run(client, "focus");
    menu->show();
    EXPECT_EQ(person.waitForMenu(), XWindowOf(*menu));
    person.click({320, 300});
    EXPECT_TRUE(run(menuClient, "up 10,10 x1"));
    person.click({30, 20}); // far outside, over no window of ours
    EXPECT_TRUE(run(menuClient, "down -280,-270 x1"));
    person.key(XKB_KEY_Escape);
    EXPECT_TRUE(run(menuClient, "key 001B"));
    menu.reset();
    person.key('a'); // back at the window, which never lost the focus
    EXPECT_TRUE(run(client, "key a types 'a'"));
    EXPECT_THAT(client.log, Not(Contains("no focus")));
}

TEST_F(X11Menus, OpenUnderAHeldButton)
{
    person.moveTo({310, 210});
    person.press();
    run(client, "down 10,10 x1");
    menu->show();
    person.waitForMenu();
    person.glideTo({320, 300});
    person.release();
    EXPECT_TRUE(run(menuClient, "up 10,10 x1"));
}

TEST_F(X11Menus, WaitForAnotherProgramsGrab)
{
    const auto grab = [&] {
        const auto cookie =
            xcb_grab_pointer(person.get(), 0, person.screen().root, XCB_EVENT_MASK_BUTTON_PRESS, XCB_GRAB_MODE_ASYNC,
                             XCB_GRAB_MODE_ASYNC, XCB_NONE, XCB_NONE, XCB_CURRENT_TIME);
        std::free(xcb_grab_pointer_reply(person.get(), cookie, nullptr));
    };
    grab();
    menu->show();
    EXPECT_FALSE(runUntil([&] { return menuClient.has("grab lost"); }, 0.05));
    xcb_ungrab_pointer(person.get(), XCB_CURRENT_TIME);
    person.synchronize();
    person.moveTo({30, 20});
    EXPECT_TRUE(runUntil([&] { // the pointer is far from the menu, which hears it nevertheless
        person.click({30, 20});
        return menuClient.has("down -280,-270 x1");
    }));
    menu = display->makePopUp(menuClient, *window, {{10, 90}, {120, 80}});
    grab();
    menuClient.log.clear();
    menu->show(); // the other program keeps it this time
    EXPECT_TRUE(run(menuClient, "grab lost"));
}

TEST_F(X11Menus, TellWhenSomethingHidesOrDestroysThem)
{
    menu->show();
    person.waitForMenu();
    xcb_unmap_window(person.get(), XWindowOf(*menu));
    person.synchronize();
    EXPECT_TRUE(run(menuClient, "grab lost"));
    menuClient.log.clear();
    xcb_destroy_window(person.get(), XWindowOf(*menu));
    person.synchronize();
    EXPECT_TRUE(run(menuClient, "destroyed"));
    menu->hide();
}

// --- inside a window of another program

class X11Embedding : public X11Windows {
protected:
    xcb_window_t host = person.makeWindow(200, 100, 400, 300);
    std::unique_ptr<NSWindowBackend> window = display->makeWindow(client, XOptions({200, 100}, host));

    void show()
    {
        window->show();
        run(client, "exposed");
        settle(client, *window);
        client.log.clear();
    }
};

TEST_F(X11Embedding, LiesInTheHostAndTakesKeysAfterAClick)
{
    EXPECT_EQ(person.frame(XWindowOf(*window)).origin, (CGPoint{200, 100})) << "before the loop turned even once";
    show();
    person.focus(host);
    person.click({210, 110});
    EXPECT_TRUE(run(client, "down 10,10 x1"));
    window->takeFocus();
    EXPECT_TRUE(run(client, "focus"));
    person.moveTo({1200, 800}); // the keys no longer follow the pointer
    person.key('a');
    EXPECT_TRUE(run(client, "key a types 'a'"));
}

TEST_F(X11Embedding, AHostOfAnotherDepthWillDo)
{
    auto depths = xcb_screen_allowed_depths_iterator(&person.screen());
    while (depths.rem > 0 && (depths.data->depth != 32 || depths.data->visuals_len == 0)) xcb_depth_next(&depths);
    ASSERT_GT(depths.rem, 0) << "the server has no 32-bit visual";
    const xcb_visualid_t visual = xcb_depth_visuals(depths.data)->visual_id;
    const xcb_colormap_t colors = xcb_generate_id(person.get());
    xcb_create_colormap(person.get(), XCB_COLORMAP_ALLOC_NONE, colors, person.screen().root, visual);
    const xcb_window_t deep = xcb_generate_id(person.get());
    const std::uint32_t values[] = {0, 0, colors};
    xcb_create_window(person.get(), 32, deep, person.screen().root, 0, 0, 300, 200, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      visual, XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_COLORMAP, values);
    person.synchronize();
    LoggingClient other;
    EXPECT_NE(display->makeWindow(other, XOptions({200, 100}, deep)), nullptr);
}

TEST_F(X11Embedding, AHostThatIsGoneIsNoHost)
{
    std::string logged;
    NSLogSetSink([&](std::string_view text) { logged = text; });
    xcb_destroy_window(person.get(), host);
    person.synchronize();
    LoggingClient late;
    EXPECT_EQ(display->makeWindow(late, XOptions({200, 100}, host)), nullptr);
    NSLogSetSink({});
    EXPECT_THAT(logged, testing::HasSubstr("refuses a window"));
    EXPECT_TRUE(run(client, "destroyed"));
    window->setTitle(NSString::string("late").get()); // nothing left to do it to
    window->present(CGBitmapContextCreate(200, 100).get(), {});
    window->show();
    EXPECT_EQ(window->nativeWindow(), 0U);
    LoggingClient next;
    EXPECT_NE(makeWindow(next), nullptr) << "the display goes on";
}

TEST_F(X11Embedding, AHostThatHidesTakesThePressAway)
{
    show();
    person.moveTo({210, 110});
    person.press();
    run(client, "down 10,10 x1");
    xcb_unmap_window(person.get(), host);
    person.synchronize();
    EXPECT_TRUE(run(client, "grab lost"));
    person.release();
}

// --- the end

TEST_F(X11Windows, ComeAndGoInAnyOrder)
{
    const std::size_t before = person.menus().size() + person.windowsNamed("").size();
    LoggingClient clients[12];
    std::vector<std::unique_ptr<NSWindowBackend>> windows(12);
    const auto bitmap = CGBitmapContextCreate(200, 100);
    const CGRect all[] = {CGRectMake(0, 0, 200, 100)};
    for (unsigned i = 0; i < 200; ++i) {
        const unsigned slot = i * 7 % 12;
        if (windows[slot]) {
            windows[slot].reset();
            continue;
        }
        windows[slot] = display->makeWindow(clients[slot], XOptions({200, 100}));
        ASSERT_TRUE(windows[slot]);
        windows[slot]->show();
        windows[slot]->present(bitmap, all);
    }
    windows.clear();
    EXPECT_TRUE(runUntil([&] { return person.menus().size() + person.windowsNamed("").size() == before; }));
}

TEST_F(X11Windows, OutliveTheDisplay)
{
    const auto window = makeWindow(client);
    display.reset();
    person.click({10, 10});
    EXPECT_TRUE(run(client, "up 10,10 x1"));
}

TEST_F(X11Windows, AllHearThatTheConnectionBroke)
{
    std::vector<std::string> logged;
    NSLogSetSink([&](std::string_view text) { logged.emplace_back(text); });
    LoggingClient second;
    auto window = makeWindow(client), other = makeWindow(second);
    client.then = [&](const std::string&) { other.reset(); }; // whoever hears it first may end the other
    second.then = [&](const std::string&) { window.reset(); };
    bool answered = false;
    display->readClipboardText([&](const NSString* text) { answered = text == nullptr; });
    server.stop();
    EXPECT_TRUE(runUntil([&] { return client.has("destroyed") || second.has("destroyed"); }));
    EXPECT_NE(window == nullptr, other == nullptr);
    EXPECT_TRUE(runUntil([&] { return answered; }));
    LoggingClient late;
    EXPECT_EQ(display->makeWindow(late, XOptions({200, 100})), nullptr);
    NSLogSetSink({});
    EXPECT_EQ(std::count(logged.begin(), logged.end(), "the connection to the X server is lost"), 1);
}

} // namespace
