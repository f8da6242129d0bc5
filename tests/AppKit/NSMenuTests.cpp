#include "AppKit/NSMenu.h"

#include "AppKit/NSMenuSession.h"
#include "AppKit/NSPopUpButton.h"
#include "Script.h"

namespace {

constexpr CGFloat kRow = 24, kPadding = 5;

/// A key pressed where a menu has the keyboard.
void KeyInto(NSMenu& menu, unichar character)
{
    const RetainPtr<NSWindow> in = menu.popUpWindow();
    const auto text = NSString::string(std::u16string(1, character));
    if (in) in->sendEvent(*NSEvent::keyEvent(NSKeyDown, 0, CFAbsoluteTimeGetCurrent(), in, text, text, false));
}

/// A menu over a view, and a person in front of its window. A place in a script is a row's number, "here", where a
/// press opened the menu, "left" and "below" for what is outside, or the "line" behind the rows.
struct OpenMenu : OffscreenRig {
    explicit OpenMenu(std::initializer_list<const char*> titles = {"Sine", "Triangle", "Square", "Sawtooth"})
        : view(add(make<NSView>(NSRect{{100, 50}, {80, 20}}))), menu(make<NSMenu>()), log(make<ActionLog>())
    {
        for (const char* title : titles)
            log->watch(*menu->addItemWithTitle(NSString::string(title).get(), nullptr, nullptr));
        const auto mouseVerb = [this](NSEventType type) {
            return [this, type](const Step& step) { mouse(type, placeOf(step.what)); };
        };
        script.otherwise = TypingInto([this](const TypedKey& typed) { KeyInto(*menu, typed.key); });
        script.verbs = {
            {"press", mouseVerb(NSLeftMouseDown)},
            {"rightPress", mouseVerb(NSRightMouseDown)},
            {"move", mouseVerb(NSMouseMoved)},
            {"drag", mouseVerb(NSLeftMouseDragged)},
            {"release", mouseVerb(NSLeftMouseUp)},
            {"click", [this](const Step& step) { click(placeOf(step.what)); }},
            {"wait", [this](const Step& step) { advance(step.number()); }},
        };
    }
    ~OpenMenu() { menu->cancelTracking(); }
    /// Below the view, as a press at its top left would open it.
    bool open(const NSEvent* opener = nullptr)
    {
        NSMenuPlacement placement;
        placement.anchor = view->bounds();
        placement.opener = opener;
        return menu->popUp(placement, view, [this](NSMenuItem* chosen) {
            log->text += chosen ? "chosen:" : "closed ";
            EXPECT_FALSE(menu->isOpen());
        });
    }
    bool openByPress()
    {
        const NSPoint spot = view->convertPointToWindow({0, 0});
        return open(NSEvent::mouseEvent(NSLeftMouseDown, spot, 0, CFAbsoluteTimeGetCurrent(), window(), 1).get());
    }
    /// Does the steps, and tells what was chosen or closed.
    std::string play(std::string_view steps)
    {
        script.play(steps);
        return log->take();
    }
    void mouse(NSEventType type, NSPoint point)
    {
        const RetainPtr<NSWindow> in = menu->popUpWindow();
        if (in) in->sendEvent(*NSEvent::mouseEvent(type, point, 0, CFAbsoluteTimeGetCurrent(), in, 1));
    }
    void click(NSPoint point)
    {
        mouse(NSLeftMouseDown, point);
        mouse(NSLeftMouseUp, point);
    }
    static NSPoint rowAt(int index) { return {20, kPadding + kRow * index + kRow / 2}; }
    static NSPoint placeOf(const std::string& what)
    {
        static const std::map<std::string, NSPoint> kPlaces = {
            {"here", {0, -22}}, // the menu's anchor ends two points above it
            {"left", {-5, 10}},
            {"below", {20, 500}},
            {"line", {20, kPadding + 4 * kRow + 3}},
        };
        const auto place = kPlaces.find(what);
        return place == kPlaces.end() ? rowAt(std::stoi(what)) : place->second;
    }

    NSView* view;
    RetainPtr<NSMenu> menu;
    RetainPtr<ActionLog> log;
    Script script;
};

/// An open one whose second row is disabled, with a line behind the last; "look" notes whether it is open.
struct MixedMenu : OpenMenu {
    MixedMenu()
    {
        menu->itemArray()[1]->setEnabled(false);
        menu->addItem(NSMenuItem::separatorItem().get());
        EXPECT_TRUE(openByPress());
        script.verbs["look"] = [this](const Step&) { log->text += menu->isOpen() ? "open " : "gone "; };
    }
};

TEST(NSMenu, KeysAndMouseMoveAndChoose)
{
    ExpectLogs<MixedMenu>({
        {"the first from above", "Down Ret", "chosen:Sine "},
        {"the last from below", "Up _", "chosen:Sawtooth "},
        {"a disabled one is passed", "Down Down _", "chosen:Square "},
        {"round the end", "End Down _", "chosen:Sine "},
        {"End", "End Enter", "chosen:Sawtooth "},
        {"Home", "End Home _", "chosen:Sine "},
        {"a page", "Home PageDown _", "chosen:Sawtooth "},
        {"a letter", "s _", "chosen:Sine "},
        {"letters that begin nothing", "S S _", "chosen:Sine "},
        {"more letters", "s q _", "chosen:Square "},
        {"letters after a pause begin anew", "s wait:1.5 s _", "chosen:Square "},
        {"a letter of a disabled one", "t _", "closed "},
        {"nothing to choose", "Ret", "closed "},
        {"Escape", "Down Esc", "closed "},
        {"Tab", "Down Tab _", "closed "},
        {"a click opens it and another chooses", "release:here move:1 click:2", "chosen:Square "},
        {"a press drawn into it", "drag:0 drag:3 release:3", "chosen:Sawtooth "},
        {"a press drawn past it", "drag:below release:below", "closed "},
        {"a press outside", "press:left", "closed "},
        {"a right press outside", "rightPress:below", "closed "},
        {"a disabled row", "click:1 look", "open "},
        {"a line between rows", "click:line look", "open "},
    });
}

TEST(NSMenu, AReleaseWhereItOpenedChoosesNothing)
{
    // a menu that found no room elsewhere lies under the pointer
    OpenMenu rig;
    const auto press = NSEvent::mouseEvent(NSRightMouseDown, {140, 60}, 0, 0, rig.window(), 1);
    rig.view->setMenu(rig.menu);
    ASSERT_TRUE(NSMenu::popUpContextMenu(*press, rig.view));
    rig.mouse(NSRightMouseDragged, {2, 4});
    rig.mouse(NSRightMouseUp, {2, 4});
    EXPECT_TRUE(rig.menu->isOpen());
    EXPECT_EQ(rig.play("click:0"), "Sine ");
}

TEST(NSMenu, ClosesWithoutAChoice)
{
    static const struct {
        const char* why;
        void (*end)(OpenMenu&);
    } kRows[] = {
        {"its window is closed", [](OpenMenu& rig) { rig.menu->popUpWindow()->close(); }},
        {"its view is hidden", [](OpenMenu& rig) { rig.content()->setHidden(true); }},
        {"its view leaves", [](OpenMenu& rig) { rig.view->removeFromSuperview(); }},
        {"its view's window closes", [](OpenMenu& rig) { rig.window()->close(); }},
        {"its items go", [](OpenMenu& rig) { rig.menu->removeAllItems(); }},
        {"another menu opens",
         [](OpenMenu& rig) {
             const auto other = make<NSMenu>();
             other->addItemWithTitle("Other"_ns.get(), nullptr, nullptr);
             other->popUpMenuPositioningItem(nullptr, {0, 0}, rig.view);
             other->cancelTracking();
         }},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        OpenMenu rig;
        ASSERT_TRUE(rig.openByPress());
        row.end(rig);
        EXPECT_FALSE(rig.menu->isOpen());
        EXPECT_EQ(rig.log->take(), "closed ");
    }
}

TEST(NSMenu, DoesNotOpenWhereThereIsNothingToShow)
{
    OpenMenu rig;
    EXPECT_FALSE(make<NSMenu>()->popUp({}, rig.view));
    EXPECT_FALSE(rig.menu->popUp({}, nullptr));
    rig.view->setHidden(true);
    EXPECT_FALSE(rig.open());
    const RetainPtr<NSView> loose = make<NSView>(NSRect{{0, 0}, {10, 10}});
    EXPECT_FALSE(rig.menu->popUp({}, loose));
    EXPECT_EQ(rig.log->take(), "");
}

TEST(NSMenu, AsksTheViewsThatItsItemsTarget)
{
    class Asked : public NSView {
    public:
        bool validateUserInterfaceItem(NSMenuItem& item) override
        {
            item.setState(item.tag() == 2 ? NSOnState : NSOffState);
            return item.tag() != 1;
        }
    };
    OpenMenu rig({"No target"});
    const auto asked = make<Asked>(NSRect{});
    for (const int tag : {1, 2}) {
        auto* item = rig.menu->addItemWithTitle("Item"_ns.get(), "changed:", nullptr);
        item->setTarget(asked);
        item->setTag(tag);
    }
    rig.open();
    const auto& items = rig.menu->itemArray();
    EXPECT_TRUE(items[0]->isEnabled());
    EXPECT_FALSE(items[1]->isEnabled());
    EXPECT_EQ(items[2]->state(), NSOnState);
}

TEST(NSMenu, OutlivesItsTarget)
{
    OpenMenu rig({"One"});
    rig.open();
    rig.log = make<ActionLog>();
    EXPECT_EQ(rig.play("click:0"), "chosen:");
}

TEST(NSMenu, AnActionMayTakeEverythingAway)
{
    OpenMenu rig;
    rig.log->also = [&] {
        rig.menu->removeAllItems();
        rig.view->removeFromSuperview();
        rig.window()->close();
    };
    rig.open();
    EXPECT_EQ(rig.play("click:0"), "chosen:Sine ");
}

TEST(NSMenu, AnActionMayOpenAnother)
{
    OpenMenu rig;
    rig.log->also = [&] { rig.open(); };
    rig.open();
    EXPECT_EQ(rig.play("click:1"), "chosen:Triangle ");
    EXPECT_EQ(rig.play("Esc"), "closed ");
}

TEST(NSMenuFrame, StaysOnTheScreen)
{
    static const struct {
        const char* why;
        NSSize size;
        NSRect anchor, screen, frame;
    } kRows[] = {
        {"below", {80, 100}, {{10, 20}, {60, 26}}, {{0, 0}, {500, 400}}, {{10, 48}, {80, 100}}},
        {"above", {80, 100}, {{10, 320}, {60, 26}}, {{0, 0}, {500, 400}}, {{10, 218}, {80, 100}}},
        {"neither", {80, 300}, {{10, 200}, {60, 26}}, {{0, 0}, {500, 400}}, {{10, 100}, {80, 300}}},
        {"longer than the screen", {80, 900}, {{10, 200}, {60, 26}}, {{0, 0}, {500, 400}}, {{10, 0}, {80, 400}}},
        {"the right edge", {80, 100}, {{480, 20}, {60, 26}}, {{0, 0}, {500, 400}}, {{420, 48}, {80, 100}}},
        {"the left edge", {80, 100}, {{-30, 20}, {60, 26}}, {{-20, 0}, {500, 400}}, {{-20, 48}, {80, 100}}},
        {"at a point", {80, 100}, {{10, 20}, {0, 0}}, {{0, 0}, {500, 400}}, {{10, 20}, {80, 100}}},
        {"a screen that isn't known", {80, 900}, {{-30, 20}, {60, 26}}, {}, {{-30, 48}, {80, 900}}},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(NSMenuFrame(row.size, row.anchor, row.screen), row.frame);
    }
}

TEST(NSMenu, ALongOneScrolls)
{
    OpenMenu rig({});
    for (int i = 0; i < 200; ++i)
        rig.log->watch(*rig.menu->addItemWithTitle(NSString::stringWithFormat("%d", i).get(), nullptr, nullptr));
    ASSERT_TRUE(rig.open());
    const CGFloat height = rig.menu->popUpWindow()->contentSize().height;
    EXPECT_EQ(height, rig.window()->screenFrame().size.height);
    rig.play("End");
    rig.click({20, height - kPadding - kRow / 2}); // the last row is where the keys brought it
    EXPECT_EQ(rig.log->take(), "chosen:199 ");

    rig.open();
    rig.mouse(NSMouseMoved, {20, height - 3}); // on the arrow
    rig.advance(20);
    rig.click({20, height - kPadding - kRow / 2});
    EXPECT_EQ(rig.log->take(), "chosen:199 ");
}

// --- the button that opens one

/// The second of three is selected. Keys of a script go to the menu while it is open.
struct Choices : ControlRig<NSPopUpButton> {
    Choices() : ControlRig({{20, 20}, {160, 28}}), button(control)
    {
        for (const auto& title : {"Sine"_ns, "Triangle"_ns, "Square"_ns}) button->addItemWithTitle(title.get());
        button->selectItemAtIndex(1);
        window()->makeFirstResponder(button);
        script.verbs["look"] = [this](const Step&) { log->text += isOpen() ? "open " : "gone "; };
        script.otherwise = TypingInto([this](const TypedKey& typed) {
            isOpen() ? KeyInto(*button->menuOfItems(), typed.key) : void(key(typed.key));
            log->text += button->isHighlighted() ? "pressed " : "raised ";
        });
    }
    bool isOpen() const { return button->menuOfItems()->isOpen(); }

    NSPopUpButton* button;
};

TEST(NSPopUpButton, SelectsByIndexAndTitle)
{
    Choices rig;
    EXPECT_EQ(rig.button->indexOfSelectedItem(), 1);
    rig.button->setTitle("Square"_ns.get());
    EXPECT_EQ(rig.button->indexOfSelectedItem(), 2);
    rig.button->setTitle("Noise"_ns.get());
    rig.button->setTitle(nullptr);
    rig.button->selectItemAtIndex(3);
    rig.button->selectItemAtIndex(-2);
    EXPECT_EQ(rig.button->titleOfSelectedItem()->utf8(), "Square");
    EXPECT_EQ(rig.button->itemTitleAtIndex(3), nullptr);
    rig.button->selectItemAtIndex(-1);
    EXPECT_EQ(rig.button->titleOfSelectedItem(), nullptr);
    rig.button->setIntValue(1);
    EXPECT_EQ(rig.button->indexOfSelectedItem(), 1);
    rig.button->removeAllItems();
    EXPECT_EQ(rig.button->indexOfSelectedItem(), -1);
    EXPECT_EQ(rig.log->take(), "");
}

TEST(NSPopUpButton, SendsWhatAPersonChooses)
{
    ExpectLogs<Choices>({
        {"Space opens the menu at the selection", "_ look Down Ret look", "pressed open pressed 2 raised gone "},
        {"Return", "Ret Down Ret", "pressed pressed 2 raised "},
        {"Up", "Up Down Ret", "pressed pressed 2 raised "},
        {"Down", "Down Down Ret", "pressed pressed 2 raised "},
        {"a choice is sent also when it stays the same", "press:50,10 Ret", "1 raised "},
        {"Escape sends nothing", "press:50,10 look Esc look", "open raised gone "},
        {"the wheel changes nothing", "wheel:-1 look", "gone "},
        {"disabled in the middle", "press:50,10 disable look", "gone "},
    });
}

TEST(NSPopUpButton, HasNoOpenMenuWhereThereIsNothingToChooseOrNoWindow)
{
    Choices rig;
    const RetainPtr<NSMenu> menu = rig.button->menuOfItems();
    rig.play("press:50,10");
    ASSERT_TRUE(menu->isOpen());
    rig.play("remove");
    EXPECT_FALSE(menu->isOpen());

    rig.add(rig.owner);
    rig.button->removeAllItems();
    rig.play("press:50,10");
    EXPECT_FALSE(rig.isOpen());
    EXPECT_FALSE(rig.button->isHighlighted());
    rig.button->addItemWithTitle("Sine"_ns.get());
    EXPECT_EQ(rig.play("disable press:50,10"), "");
    EXPECT_FALSE(rig.isOpen());
}

} // namespace
