// What a window shows, with and without shared memory.
#include "ui/X11Rig.h"

#include "CoreGraphics/Pixels.h"
#include "X11/X11Display.h"

namespace {

using testing::HasSubstr;

/// Presents those parts of a picture of one colour; all of it where none are given.
void Show(NSWindowBackend& window, CGSize size, std::uint32_t color, std::vector<CGRect> parts = {})
{
    const auto bitmap =
        CGBitmapContextCreate(static_cast<std::size_t>(size.width), static_cast<std::size_t>(size.height));
    const auto part = [&](unsigned shift) { return (color >> shift & 0xFF) / 255.0; };
    fill(bitmap, {{}, size}, part(16), part(8), part(0), 1);
    if (parts.empty()) parts = {{{}, size}};
    window.present(bitmap, parts);
}

class X11Pixels : public X11Test, public testing::WithParamInterface<bool> {
protected:
    X11Pixels() : X11Test("24", GetParam() ? std::vector<std::string>() : Without()) {}
    static std::vector<std::string> Without() { return {"-extension", "MIT-SHM"}; }

    bool shows(CGRect part, std::uint32_t color)
    {
        return person.waitUntil([&] {
            const auto pixels = person.pixels(part);
            return std::all_of(pixels.begin(), pixels.end(), [&](std::uint32_t pixel) { return pixel == color; });
        });
    }
};

INSTANTIATE_TEST_SUITE_P(SharedMemory, X11Pixels, testing::Bool(),
                         [](const auto& parameter) { return parameter.param ? "Yes" : "No"; });

TEST_P(X11Pixels, OnlyThePresentedPartChanges)
{
    LoggingClient client;
    const auto window = makeWindow(client, {{30, 40}, {700, 600}});
    Show(*window, {700, 600}, 0xFF8000);
    EXPECT_TRUE(shows(CGRectMake(30, 40, 700, 600), 0xFF8000));

    // a second picture at once: the first must have been read before it is overwritten
    Show(*window, {700, 600}, 0x0000FF, {{{10, 10}, {20, 20}}, {{690.5, 590.5}, {100, 100}}, {{-9, -9}, {5, 5}}});
    EXPECT_TRUE(shows(CGRectMake(40, 50, 20, 20), 0x0000FF));
    EXPECT_TRUE(shows(CGRectMake(720, 630, 10, 10), 0x0000FF));
    EXPECT_TRUE(shows(CGRectMake(30, 40, 10, 600), 0xFF8000));
    EXPECT_TRUE(shows(CGRectMake(60, 40, 660, 590), 0xFF8000));
}

TEST_P(X11Pixels, WhatWasCoveredComesBackWithoutTheClient)
{
    LoggingClient client;
    const auto window = makeWindow(client);
    Show(*window, {200, 100}, 0x00FF00);
    ASSERT_TRUE(shows(CGRectMake(0, 0, 200, 100), 0x00FF00));
    const xcb_window_t cover = person.makeWindow(50, 20, 60, 60);
    xcb_clear_area(person.get(), 0, cover, 0, 0, 0, 0);
    xcb_destroy_window(person.get(), cover);
    person.synchronize();
    client.log.clear();
    settle(client, *window);
    EXPECT_TRUE(shows(CGRectMake(0, 0, 200, 100), 0x00FF00));
    EXPECT_THAT(client.log, testing::IsEmpty());
}

TEST_P(X11Pixels, TheNewSizeIsShownWhole)
{
    LoggingClient client;
    const auto window = makeWindow(client);
    Show(*window, {200, 100}, 0xFF0000);
    window->setContentSize({300, 150});
    Show(*window, {300, 150}, 0x0000FF, {{{0, 0}, {1, 1}}});
    EXPECT_TRUE(shows(CGRectMake(0, 0, 300, 150), 0x0000FF));
}

class X11ShallowScreen : public X11Test {
protected:
    X11ShallowScreen() : X11Test("16") {}
};

TEST_F(X11ShallowScreen, ShowsFullColors)
{
    LoggingClient client;
    const auto window = makeWindow(client);
    Show(*window, {200, 100}, 0xFF8000);
    EXPECT_TRUE(person.waitUntil(
        [&] { return person.pixels(CGRectMake(9, 9, 1, 1), XWindowOf(*window)) == std::vector{0xFF8000U}; }));
}

TEST(X11Display, SaysWhyThereIsNone)
{
    std::string error;
    EXPECT_EQ(NSMakeX11Display(":4999", &error), nullptr);
    EXPECT_THAT(error, HasSubstr("display \":4999\": no X server answers there"));
    EXPECT_EQ(NSMakeX11Display("nonsense", &error), nullptr);
    EXPECT_THAT(error, HasSubstr("\"nonsense\""));
}

} // namespace
