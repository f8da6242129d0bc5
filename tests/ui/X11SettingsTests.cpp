// Whether the desktop is dark: the list that a settings manager publishes, and managers that come and go.
#include "ui/EditorRig.h"
#include "ui/X11Rig.h"

#include "X11/X11Display.h"
#include "X11/X11Theme.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
constexpr const char* kThemeName = "Net/ThemeName";
constexpr const char* kPrefersDark = "Gtk/ApplicationPreferDarkTheme";
constexpr auto kLight = NSAppearanceName::light, kDark = NSAppearanceName::dark;

/// Writes a list as managers do.
class SettingsList {
public:
    explicit SettingsList(bool bigEndian = false) : mBigEndian(bigEndian) {}

    SettingsList& integer(const std::string& name, std::uint32_t value) { return start(0, name).number(value, 4); }
    SettingsList& text(const std::string& name, const std::string& value)
    {
        return start(1, name).number(static_cast<std::uint32_t>(value.size()), 4).characters(value);
    }
    SettingsList& color(const std::string& name) { return start(2, name).number(0x11112222, 4).number(0x3333FFFF, 4); }
    SettingsList& unknown() { return start(3, "x"); }
    Bytes bytes() const
    {
        SettingsList whole(mBigEndian);
        whole.mBytes = {static_cast<std::uint8_t>(mBigEndian), 0, 0, 0};
        whole.number(7, 4).number(mCount, 4); // how often it was changed, and what it has
        whole.mBytes.insert(whole.mBytes.end(), mBytes.begin(), mBytes.end());
        return whole.mBytes;
    }

private:
    SettingsList& start(std::uint8_t kind, const std::string& name)
    {
        ++mCount;
        mBytes.insert(mBytes.end(), {kind, 0});
        return number(static_cast<std::uint32_t>(name.size()), 2).characters(name).number(7, 4);
    }
    SettingsList& number(std::uint32_t value, unsigned size)
    {
        for (unsigned i = 0; i < size; ++i)
            mBytes.push_back(static_cast<std::uint8_t>(value >> 8 * (mBigEndian ? size - 1 - i : i)));
        return *this;
    }
    SettingsList& characters(const std::string& text)
    {
        mBytes.insert(mBytes.end(), text.begin(), text.end());
        mBytes.resize((mBytes.size() + 3) / 4 * 4);
        return *this;
    }

    bool mBigEndian;
    std::uint32_t mCount = 0;
    Bytes mBytes;
};

SettingsList Themed(const char* name) { return SettingsList().text(kThemeName, name); }

TEST(X11Theme, IsReadFromTheListOfSettings)
{
    const auto read = [](const SettingsList& list) {
        const auto theme = X11ReadTheme(list.bytes());
        return theme ? theme->name + (theme->prefersDark ? ", dark" : "") : "damaged";
    };
    EXPECT_EQ(read(SettingsList()), "");
    EXPECT_EQ(read(Themed("Adwaita-dark")), "Adwaita-dark");
    EXPECT_EQ(read(SettingsList().integer(kPrefersDark, 1)), ", dark");
    EXPECT_EQ(read(SettingsList().integer(kPrefersDark, 0)), "");
    EXPECT_EQ(read(SettingsList().color("a").text("b", "x").integer("Xft/DPI", 98304).text(kThemeName, "T")), "T");
    EXPECT_EQ(read(SettingsList(true).color("abc").integer(kPrefersDark, 1).text(kThemeName, "Tt")), "Tt, dark");
    EXPECT_EQ(read(Themed("")), "");
    EXPECT_EQ(read(SettingsList().integer(kThemeName, 1)), "") << "a theme that is a number";
    EXPECT_EQ(read(SettingsList().text(kPrefersDark, "1")), "") << "a wish in words";
    EXPECT_EQ(read(SettingsList().text("Net/ThemeNames", "x").text("XNet/ThemeName", "y")), "") << "longer names";
    EXPECT_EQ(read(Themed("A").text(kThemeName, "B")), "B") << "the same twice";
}

TEST(X11Theme, ADamagedListSaysNothing)
{
    EXPECT_FALSE(X11ReadTheme(SettingsList().unknown().text(kThemeName, "x").bytes()));
    EXPECT_FALSE(X11ReadTheme(Bytes{2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0})) << "no such byte order";
    for (const bool bigEndian : {false, true}) {
        const Bytes whole = SettingsList(bigEndian).color("abcd").text(kThemeName, "Adw").integer("abc", 1).bytes();
        for (std::size_t size = 0; size < whole.size(); ++size)
            EXPECT_FALSE(X11ReadTheme(std::span(whole).first(size))) << size;
        // whatever a byte becomes, nothing is read from outside; the sanitizers watch
        for (std::size_t i = 0; i < whole.size(); ++i) {
            Bytes damaged = whole;
            for (const int value : {0, 1, 2, 0x7F, 0x80, 0xFF}) {
                damaged[i] = static_cast<std::uint8_t>(value);
                const auto theme = X11ReadTheme(damaged);
                EXPECT_LT(theme ? theme->name.size() : 0, whole.size());
            }
        }
    }
}

TEST(X11Theme, IsDarkByTheWordsOfItsName)
{
    const struct {
        const char* name;
        NSAppearanceName appearance;
    } kRows[] = {
        {"", kLight},           {"Adwaita", kLight},         {"Adwaita-dark", kDark}, {"Yaru-blue-dark", kDark},
        {"Arc-Dark", kDark},    {"Mint-Y-Dark-Aqua", kDark}, {"Adwaita:dark", kDark}, {"Dark", kDark},
        {"Breeze_dark", kDark}, {"Arc-Darker", kLight},      {"Darkness", kLight},    {"Semidark", kLight},
        {"-", kLight},          {"Nord dark-", kDark},       {"Adwaita-dar", kLight},
    };
    for (const auto& row : kRows) EXPECT_EQ(X11Theme{row.name}.appearance(), row.appearance) << row.name;
    EXPECT_EQ((X11Theme{"Adwaita", true}).appearance(), kDark);
}

/// A settings manager: owns the selection, publishes lists, and announces itself.
class Manager {
public:
    Manager(XClient& client, const Bytes& bytes) : mClient(client)
    {
        mWindow = xcb_generate_id(client.get());
        xcb_create_window(client.get(), 0, mWindow, client.screen().root, -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                          XCB_COPY_FROM_PARENT, 0, nullptr);
        publish(bytes);
        announce();
    }
    ~Manager()
    {
        xcb_destroy_window(mClient.get(), mWindow);
        mClient.synchronize();
    }
    Manager(const Manager&) = delete;
    Manager& operator=(const Manager&) = delete;

    void publish(const Bytes& bytes, const char* type = "_XSETTINGS_SETTINGS")
    {
        xcb_change_property(mClient.get(), XCB_PROP_MODE_REPLACE, mWindow, mClient.atom("_XSETTINGS_SETTINGS"),
                            mClient.atom(type), 8, static_cast<std::uint32_t>(bytes.size()), bytes.data());
        mClient.synchronize();
    }

private:
    void announce()
    {
        xcb_set_selection_owner(mClient.get(), mWindow, mClient.atom("_XSETTINGS_S0"), XCB_CURRENT_TIME);
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = mClient.screen().root;
        message.type = mClient.atom("MANAGER");
        message.data.data32[1] = mClient.atom("_XSETTINGS_S0");
        message.data.data32[2] = mWindow;
        xcb_send_event(mClient.get(), 0, message.window, XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                       reinterpret_cast<const char*>(&message));
        mClient.synchronize();
    }

    XClient& mClient;
    xcb_window_t mWindow;
};

class X11Settings : public X11Test {
protected:
    X11Settings()
    {
        unsetenv("GTK_THEME");
        connectAgain();
    }
    void connectAgain()
    {
        display = NSMakeX11Display(server.display().c_str(), nullptr);
        display->setAppearanceHandler([this] { ++changes; });
    }
    bool becomes(NSAppearanceName name)
    {
        return runUntil([&] { return display->appearance() == name; }, 5);
    }

    int changes = 0;
};

TEST_F(X11Settings, AreFollowedAsManagersComeAndGo)
{
    EXPECT_EQ(display->appearance(), kLight) << "nobody says anything";
    auto manager = std::make_optional<Manager>(person, Themed("Adwaita-dark").bytes());
    EXPECT_TRUE(becomes(kDark)) << "a manager came";
    manager->publish(Themed("Adwaita").bytes());
    EXPECT_TRUE(becomes(kLight)) << "it changed the theme";
    manager->publish(Themed("Adwaita").integer(kPrefersDark, 1).bytes());
    EXPECT_TRUE(becomes(kDark)) << "it prefers the dark";
    EXPECT_EQ(changes, 3);

    auto second = std::make_optional<Manager>(person, Themed("Yaru").bytes());
    EXPECT_TRUE(becomes(kLight)) << "another took its place";
    manager.reset();
    second->publish(Themed("Yaru-dark").bytes());
    EXPECT_TRUE(becomes(kDark));
    second.reset();
    EXPECT_TRUE(becomes(kLight)) << "nobody is left";
}

TEST_F(X11Settings, CountAsLightWhereTheyCannotBeRead)
{
    const Bytes dark = Themed("Adwaita-dark").bytes();
    Manager manager(person, {});
    for (const Bytes& damaged : {Bytes{}, Bytes{1}, Bytes(dark.begin(), dark.end() - 1)}) {
        manager.publish(dark);
        ASSERT_TRUE(becomes(kDark));
        manager.publish(damaged);
        EXPECT_TRUE(becomes(kLight)) << damaged.size();
    }
    manager.publish(dark);
    ASSERT_TRUE(becomes(kDark));
    manager.publish(dark, "STRING");
    EXPECT_TRUE(becomes(kLight)) << "of another type";
}

TEST_F(X11Settings, GiveWayToTheEnvironment)
{
    const Manager manager(person, Themed("Adwaita-dark").bytes());
    for (const auto& [theme, appearance] : {std::pair("Adwaita:dark", kDark), {"Adwaita", kLight}, {"", kDark}}) {
        setenv("GTK_THEME", theme, 1);
        connectAgain();
        EXPECT_EQ(display->appearance(), appearance) << theme;
    }
    unsetenv("GTK_THEME");
}

TEST_F(X11Settings, TheHandlerMayEndTheDisplay)
{
    display->setAppearanceHandler([this] { display.reset(); });
    const Manager manager(person, Themed("Adwaita-dark").bytes());
    EXPECT_TRUE(runUntil([&] { return display == nullptr; }));
}

class EditorAppearance : public EditorTest {
protected:
    /// Whether a pop-up button, where it has no text, is filled so.
    bool becomes(std::uint32_t color)
    {
        return person.waitUntil([&] {
            return person.pixels({at("mWaveformPopup", 0.7), {1, 1}}) == std::vector{color};
        });
    }
    static constexpr std::uint32_t kLightField = 0xFFFFFF, kDarkField = 0x1A1D22;
};

TEST_F(EditorAppearance, ChangesWithTheDesktop)
{
    start();
    EXPECT_TRUE(becomes(kLightField));
    Manager manager(person, Themed("Adwaita-dark").bytes());
    EXPECT_TRUE(becomes(kDarkField));
    manager.publish(Themed("Adwaita").bytes());
    EXPECT_TRUE(becomes(kLightField));
    start({"--appearance=dark"});
    EXPECT_TRUE(becomes(kDarkField)) << "as it was chosen";
}

} // namespace
