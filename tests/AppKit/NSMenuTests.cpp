#include "AppKit/NSMenu.h"

#include "AppKit/ActionLog.h"
#include "AppKit/NSMenuSession.h"
#include "AppKit/NSPopUpButton.h"
#include "Support/OffscreenRig.h"

#include <gmock/gmock.h>

namespace {

constexpr CGFloat kRow = 24, kPadding = 5;

/// A menu over a view, and a person in front of its window.
struct OpenMenu : OffscreenRig {
    explicit OpenMenu(std::initializer_list<const char*> titles = {"Sine", "Triangle", "Square", "Sawtooth"})
        : view(add(make<NSView>(NSRect{{100, 50}, {80, 20}}))), menu(make<NSMenu>()), log(make<ActionLog>())
    {
        for (const char* title : titles)
            log->watch(*menu->addItemWithTitle(NSString::string(title).get(), nullptr, nullptr));
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
    static NSPoint rowAt(int index) { return {20, kPadding + kRow * index + kRow / 2}; }
    NSPoint openingSpot() const { return {0, -22}; } // seen from the menu, whose anchor ends two points above it
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
    void menuKey(unichar character)
    {
        const RetainPtr<NSWindow> in = menu->popUpWindow();
        const auto text = NSString::string(std::u16string(1, character));
        if (in) in->sendEvent(*NSEvent::keyEvent(NSKeyDown, 0, CFAbsoluteTimeGetCurrent(), in, text, text, false));
    }

    NSView* view;
    RetainPtr<NSMenu> menu;
    RetainPtr<ActionLog> log;
};

TEST(NSMenu, KeysMoveAndChoose)
{
    static const struct {
        const char* why;
        std::u16string keys;
        const char* log;
    } kRows[] = {
        {"the first from above", {NSDownArrowFunctionKey, NSCarriageReturnCharacter}, "chosen:Sine "},
        {"the last from below", {NSUpArrowFunctionKey, u' '}, "chosen:Sawtooth "},
        {"a disabled one is passed", {NSDownArrowFunctionKey, NSDownArrowFunctionKey, u' '}, "chosen:Square "},
        {"round the end", {NSEndFunctionKey, NSDownArrowFunctionKey, u' '}, "chosen:Sine "},
        {"End", {NSEndFunctionKey, NSEnterCharacter}, "chosen:Sawtooth "},
        {"Home", {NSEndFunctionKey, NSHomeFunctionKey, u' '}, "chosen:Sine "},
        {"a page", {NSHomeFunctionKey, NSPageDownFunctionKey, u' '}, "chosen:Sawtooth "},
        {"a letter", {u's', u' '}, "chosen:Sine "},
        {"letters that begin nothing", {u'S', u'S', u' '}, "chosen:Sine "},
        {"more letters", {u's', u'q', u' '}, "chosen:Square "},
        {"a letter of a disabled one", {u't', u' '}, "closed "},
        {"nothing to choose", {NSCarriageReturnCharacter}, "closed "},
        {"Escape", {NSDownArrowFunctionKey, NSEscapeCharacter}, "closed "},
        {"Tab", {NSDownArrowFunctionKey, NSTabCharacter, u' '}, "closed "},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        OpenMenu rig;
        rig.menu->itemArray()[1]->setEnabled(false);
        ASSERT_TRUE(rig.open());
        for (const unichar key : row.keys) rig.menuKey(key);
        EXPECT_EQ(rig.log->take(), row.log);
    }
}

TEST(NSMenu, LettersAfterAPauseBeginAnew)
{
    OpenMenu rig;
    rig.open();
    rig.menuKey(u's');
    rig.advance(1.5);
    rig.menuKey(u's');
    rig.menuKey(u' ');
    EXPECT_EQ(rig.log->take(), "chosen:Square ");
}

TEST(NSMenu, AClickOpensAndAnotherChooses)
{
    OpenMenu rig;
    ASSERT_TRUE(rig.openByPress());
    rig.mouse(NSLeftMouseUp, rig.openingSpot());
    EXPECT_TRUE(rig.menu->isOpen());
    rig.mouse(NSMouseMoved, rig.rowAt(1));
    rig.click(rig.rowAt(2));
    EXPECT_EQ(rig.log->take(), "chosen:Square ");
}

TEST(NSMenu, APressDrawnIntoItChoosesAtTheRelease)
{
    OpenMenu rig;
    rig.openByPress();
    rig.mouse(NSLeftMouseDragged, rig.rowAt(0));
    rig.mouse(NSLeftMouseDragged, rig.rowAt(3));
    rig.mouse(NSLeftMouseUp, rig.rowAt(3));
    EXPECT_EQ(rig.log->take(), "chosen:Sawtooth ");
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
    rig.click(rig.rowAt(0));
    EXPECT_EQ(rig.log->take(), "Sine ");
}

TEST(NSMenu, ClosesWithoutAChoice)
{
    static const struct {
        const char* why;
        void (*end)(OpenMenu&);
    } kRows[] = {
        {"a press outside",
         [](OpenMenu& rig) {
             rig.mouse(NSLeftMouseDown, {-5, 10});
         }},
        {"a right press outside",
         [](OpenMenu& rig) {
             rig.mouse(NSRightMouseDown, {20, 500});
         }},
        {"a press drawn past it",
         [](OpenMenu& rig) {
             rig.mouse(NSLeftMouseDragged, {20, 400});
             rig.mouse(NSLeftMouseUp, {20, 400});
         }},
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

TEST(NSMenu, ADisabledRowIsNotChosen)
{
    OpenMenu rig;
    rig.menu->itemArray()[1]->setEnabled(false);
    rig.menu->addItem(NSMenuItem::separatorItem().get());
    rig.open();
    rig.click(rig.rowAt(1));
    rig.click({20, kPadding + 4 * kRow + 3});
    EXPECT_TRUE(rig.menu->isOpen());
    EXPECT_EQ(rig.log->take(), "");
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
    rig.click(rig.rowAt(0));
    EXPECT_EQ(rig.log->take(), "chosen:");
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
    rig.click(rig.rowAt(0));
    EXPECT_EQ(rig.log->take(), "chosen:Sine ");
}

TEST(NSMenu, AnActionMayOpenAnother)
{
    OpenMenu rig;
    rig.log->also = [&] { rig.open(); };
    rig.open();
    rig.click(rig.rowAt(1));
    EXPECT_TRUE(rig.menu->isOpen());
    rig.menuKey(NSEscapeCharacter);
    EXPECT_EQ(rig.log->take(), "chosen:Triangle closed ");
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
    rig.menuKey(NSEndFunctionKey);
    rig.click({20, height - kPadding - kRow / 2}); // the last row is where the keys brought it
    EXPECT_EQ(rig.log->take(), "chosen:199 ");

    rig.open();
    rig.mouse(NSMouseMoved, {20, height - 3}); // on the arrow
    rig.advance(20);
    rig.click({20, height - kPadding - kRow / 2});
    EXPECT_EQ(rig.log->take(), "chosen:199 ");
}

// --- the button that opens one

struct Choices : OffscreenRig {
    Choices() : button(add(make<NSPopUpButton>(NSRect{{20, 20}, {160, 28}}))), log(make<ActionLog>())
    {
        for (const auto& title : {"Sine"_ns, "Triangle"_ns, "Square"_ns}) button->addItemWithTitle(title.get());
        log->watch(*button);
    }
    void menuKey(unichar character)
    {
        NSWindow* const in = button->menuOfItems()->popUpWindow();
        ASSERT_TRUE(in);
        const auto text = NSString::string(std::u16string(1, character));
        in->sendEvent(*NSEvent::keyEvent(NSKeyDown, 0, CFAbsoluteTimeGetCurrent(), in, text, text, false));
    }
    bool isOpen() const { return button->menuOfItems()->isOpen(); }

    NSPopUpButton* button;
    RetainPtr<ActionLog> log;
};

TEST(NSPopUpButton, SelectsByIndexAndTitle)
{
    Choices rig;
    EXPECT_EQ(rig.button->numberOfItems(), 3);
    EXPECT_EQ(rig.button->indexOfSelectedItem(), 0);
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

TEST(NSPopUpButton, KeysOpenTheMenuAtTheSelection)
{
    for (const unichar key : {unichar(u' '), unichar(NSCarriageReturnCharacter), unichar(NSUpArrowFunctionKey),
                              unichar(NSDownArrowFunctionKey)}) {
        SCOPED_TRACE(static_cast<int>(key));
        Choices rig;
        rig.button->selectItemAtIndex(1);
        rig.window()->makeFirstResponder(rig.button);
        rig.key(key);
        ASSERT_TRUE(rig.isOpen());
        EXPECT_TRUE(rig.button->isHighlighted());
        rig.menuKey(NSDownArrowFunctionKey);
        rig.menuKey(NSCarriageReturnCharacter);
        EXPECT_EQ(rig.log->take(), "2 ");
        EXPECT_FALSE(rig.button->isHighlighted());
    }
}

TEST(NSPopUpButton, AChoiceIsSentAlsoWhenItStaysTheSame)
{
    Choices rig;
    rig.press(rig.button, {50, 10});
    rig.menuKey(NSCarriageReturnCharacter);
    EXPECT_EQ(rig.log->take(), "0 ");
    rig.press(rig.button, {50, 10});
    rig.menuKey(NSEscapeCharacter);
    EXPECT_EQ(rig.log->take(), "");
}

TEST(NSPopUpButton, OpensNothingWhereThereIsNothingToChoose)
{
    Choices rig;
    rig.button->removeAllItems();
    rig.press(rig.button, {50, 10});
    EXPECT_FALSE(rig.isOpen());
    EXPECT_FALSE(rig.button->isHighlighted());
    rig.button->addItemWithTitle("Sine"_ns.get());
    rig.button->setEnabled(false);
    rig.press(rig.button, {50, 10});
    EXPECT_FALSE(rig.isOpen());
}

TEST(NSPopUpButton, ClosesItsMenuWhenDisabledOrRemoved)
{
    Choices rig;
    rig.press(rig.button, {50, 10});
    rig.button->setEnabled(false);
    EXPECT_FALSE(rig.isOpen());
    rig.button->setEnabled(true);
    rig.press(rig.button, {50, 10});
    const RetainPtr<NSMenu> menu = rig.button->menuOfItems();
    rig.button->removeFromSuperview();
    EXPECT_FALSE(menu->isOpen());
    EXPECT_EQ(rig.log->take(), "");
}

TEST(NSPopUpButton, TheWheelChangesNothing)
{
    Choices rig;
    rig.scroll(rig.button, {50, 10}, -1);
    EXPECT_EQ(rig.button->indexOfSelectedItem(), 0);
    EXPECT_EQ(rig.log->take(), "");
}

} // namespace
