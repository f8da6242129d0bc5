#include "Foundation/NSBundle.h"
#include "Foundation/NSLog.h"
#include "SliderRig.h"
#include "Support/OffscreenRig.h"
#include "TextField/ZeTimeTextField.h"
#include "TextField/ZeTimeTextFieldCell.h"
#include "ZeUI/BundleOnDisk.h"

#include <set>

namespace {

constexpr std::uint32_t kCtrl = NSControlKeyMask | NSCommandKeyMask; // as the key sets them

/// 2.5 s at 48000 Hz in the field, as time, with the menu while it is edited.
class ZeTimeTextFieldTest : public testing::Test {
protected:
    ZeTimeTextFieldTest()
    {
        setenv("LC_ALL", "en_US.UTF-8", 1);
        NSBundle::registerBundle(host);
        NSBundle::setMainBundle(host);
        NSBundle::setPreferredLanguages({"en"});
        field = rig.add(makeField(make<ZeTimeTextFieldCell>()));
    }
    ~ZeTimeTextFieldTest() override
    {
        NSLogSetSink({});
        NSBundle::setPreferredLanguages({});
        NSBundle::setMainBundle(nullptr);
        unsetenv("LC_ALL");
    }

    RetainPtr<ZeTimeTextField> makeField(const RetainPtr<NSTextFieldCell>& cell)
    {
        cell->setEditable(true);
        cell->setSendsActionOnEndEditing(true);
        auto made = RetainPtr<ZeTimeTextField>::adopt(new ZeTimeTextField);
        made->setCell(cell);
        made->initWithFrame({{20, 20}, {160, 26}});
        made->setFormat(QVPOSFMT_TIME);
        made->setIsLength(true);
        made->setFrameAndSampleRate(48000);
        made->setObjectValue(NSNumber::numberWithFloat(120000).get());
        target->log = &log;
        made->setTarget(target);
        made->setAction("changed:");
        return made;
    }
    void focus() { ASSERT_TRUE(rig.window()->makeFirstResponder(field)); }
    std::string shown() const
    {
        const NSTextView* editor = field->currentEditor();
        return editor ? NSUTF8FromUTF16(editor->text()) : field->stringValue()->utf8();
    }
    bool allSelected() const
    {
        const NSTextView* editor = field->currentEditor();
        return editor && editor->selection().end - editor->selection().start == editor->text().size();
    }
    long long samples() const { return asKind<NSNumber>(field->objectValue())->longLongValue(); }
    NSMenu* menu() const { return field->defaultMenu(); }
    void menuKey(unichar key)
    {
        NSWindow* const window = menu()->popUpWindow();
        ASSERT_NE(window, nullptr);
        const auto text = NSString::string(std::u16string(1, key));
        window->sendEvent(*NSEvent::keyEvent(NSKeyDown, 0, 0, window, text, text, false));
    }

    Log log;
    RetainPtr<LoggingTarget> target = make<LoggingTarget>();
    RetainPtr<NSBundle> host = NSBundle::bundleWithPath(HOST_BUNDLE);
    OffscreenRig rig{{400, 300}};
    ZeTimeTextField* field = nullptr;
};

TEST_F(ZeTimeTextFieldTest, MenuHasElevenTitledFormatsInEachLanguage)
{
    const std::vector<std::int64_t> kTags = {0, 1, 2, 3, 4, 10, 9, 6, 8, 7, 17};
    for (const char* language : {"en", "de", "fr", "es", "ja"}) {
        SCOPED_TRACE(language);
        NSBundle::setPreferredLanguages({language});
        const RetainPtr<NSMenu> made = field->createDefaultMenuWithTarget(field);
        std::vector<std::int64_t> tags;
        std::set<std::string> titles;
        for (const auto& item : made->itemArray()) {
            tags.push_back(item->tag());
            titles.insert(item->title()->utf8());
            EXPECT_EQ(item->title()->utf8().find('&'), std::string::npos);
            EXPECT_FALSE(item->title()->hasPrefix("IDS_"_ns.get())) << item->title()->utf8();
            EXPECT_EQ(item->target(), field);
        }
        EXPECT_EQ(tags, kTags);
        EXPECT_EQ(titles.size(), 11U) << "no two formats read the same";
        const auto key = "This string contains illegal characterst"_ns;
        EXPECT_NE(host->localizedStringForKey(key, nullptr, nullptr)->utf8(), key->utf8());
    }
    EXPECT_EQ(menu()->itemArray()[2]->title()->utf8(), "Seconds");
}

TEST_F(ZeTimeTextFieldTest, ATitleThatTheHostDoesNotHaveIsItsId)
{
    const BundleOnDisk other("org.tonaro.host");
    other.write("ZeShared.strings",
                "\"IDS_QVPOSFMT_SAMPLES\" = \"S&amples && more\"; \"IDS_QVPOSFMT_FRAMES\" = \"&\";");
    NSBundle::registerBundle(other.bundle);
    const RetainPtr<NSMenu> made = field->createDefaultMenuWithTarget(field);
    NSBundle::registerBundle(host);
    EXPECT_EQ(made->itemArray()[0]->title()->utf8(), "Samples & more");
    EXPECT_EQ(made->itemArray()[1]->title()->utf8(), "IDS_QVPOSFMT_TIME") << "not the title of the row above";
    EXPECT_EQ(made->itemArray()[3]->title()->utf8(), "IDS_QVPOSFMT_FRAMES") << "nothing but a mnemonic's mark";
}

TEST_F(ZeTimeTextFieldTest, WhatOpensTheMenu)
{
    static const struct {
        NSEventType type;
        std::uint32_t flags;
        bool opens;
    } kRows[] = {
        {NSRightMouseDown, 0, true},
        {NSRightMouseDown, NSAlphaShiftKeyMask, true},
        {NSLeftMouseDown, kCtrl, true},
        {NSLeftMouseDown, NSControlKeyMask, true},
        {NSLeftMouseDown, kCtrl | NSShiftKeyMask | NSAlternateKeyMask | NSFunctionKeyMask, true},
        {NSLeftMouseDown, kCtrl | NSAlphaShiftKeyMask, false},
        {NSLeftMouseDown, kCtrl | NSNumericPadKeyMask, false},
        {NSLeftMouseDown, 0, false},
    };
    for (const bool editing : {false, true}) {
        if (editing) focus();
        for (const auto& row : kRows) {
            SCOPED_TRACE(testing::Message() << editing << ' ' << row.type << ' ' << row.flags);
            row.type == NSRightMouseDown ? rig.rightPress(field, {20, 10}, row.flags)
                                         : rig.press(field, {20, 10}, row.flags);
            EXPECT_EQ(menu()->isOpen(), row.opens);
            menu()->cancelTracking();
            row.type == NSRightMouseDown ? rig.rightRelease() : rig.release();
            if (!editing) rig.window()->makeFirstResponder(nullptr);
        }
    }
    EXPECT_FALSE(field->eventIndicatesContextMenu(nullptr)) << "no event is being delivered";
}

TEST_F(ZeTimeTextFieldTest, FormatPickedByKeyboardWhileTypingDropsWhatWasTyped)
{
    static const struct {
        unichar key;
        std::uint32_t flags;
        bool opens;
    } kOpeners[] = {
        {NSMenuFunctionKey, 0, true}, {NSF10FunctionKey, NSShiftKeyMask, true}, {NSF10FunctionKey, 0, false}};
    for (const bool ownCell : {true, false}) {
        for (const auto& opener : kOpeners) {
            const auto made = makeField(ownCell ? make<ZeTimeTextFieldCell>() : make<NSTextFieldCell>());
            field->removeFromSuperview();
            field = rig.add(made);
            focus();
            EXPECT_EQ(asKind<ZeTimeTextFieldEditor>(field->currentEditor()) != nullptr, ownCell);
            EXPECT_TRUE(allSelected());
            rig.type("7");
            rig.key(opener.key, opener.flags);
            ASSERT_EQ(menu()->isOpen(), opener.opens);
            if (!opener.opens) continue;
            EXPECT_EQ(menu()->itemArray()[1]->state(), NSOnState);
            menuKey(NSDownArrowFunctionKey);
            menuKey(NSCarriageReturnCharacter);
            EXPECT_EQ(field->format(), unsigned{QVPOSFMT_TIME_METRIC});
            EXPECT_EQ(shown(), "2.500000");
            EXPECT_TRUE(allSelected());
            EXPECT_EQ(samples(), 120000);
        }
    }
    EXPECT_EQ(log.take(), "") << "a format sends nothing";
}

TEST_F(ZeTimeTextFieldTest, EveryFormatShowsTheSameSamples)
{
    const RetainPtr<NSObject> value(field->objectValue());
    std::set<std::string> texts;
    for (const auto& item : menu()->itemArray()) {
        field->performSelector("onFormatMenuAction:", item.get());
        EXPECT_EQ(field->format(), item->tag());
        EXPECT_EQ(field->objectValue(), value.get());
        texts.insert(shown());
        int marks = 0;
        for (const auto& other : menu()->itemArray()) {
            EXPECT_TRUE(field->validateUserInterfaceItem(*other));
            if (other->state() == NSOnState) marks += other == item ? 1 : 100;
        }
        EXPECT_EQ(marks, 1) << item->title()->utf8();
    }
    EXPECT_GE(texts.size(), 8U);
    field->setFormat(QVPOSFMT_FRAMES_METRIC);
    field->setFormat(25);
    EXPECT_EQ(field->format(), unsigned{QVPOSFMT_FRAMES_METRIC});
    EXPECT_EQ(log.take(), "");
}

TEST_F(ZeTimeTextFieldTest, ArrowsStepByOneUnitOfTheFormat)
{
    NSLogSetSink([](std::string_view) {});
    const auto sent = [this](unsigned format, const char* typed, unichar key, std::uint32_t flags = 0) {
        field->abortEditing();
        rig.window()->makeFirstResponder(nullptr);
        field->setFormat(format);
        field->setFrameAndSampleRate(48000);
        field->setObjectValue(NSNumber::numberWithFloat(120000).get());
        focus();
        rig.type(typed);
        rig.key(key, flags);
        const std::string actions = log.take();
        EXPECT_EQ(allSelected(), !actions.empty() || flags != 0);
        EXPECT_EQ(actions, samples() == 120000 ? "" : "action(" + std::to_string(samples()) + ")");
        return actions;
    };
    EXPECT_EQ(sent(1, "", NSUpArrowFunctionKey), "action(124800)") << "a tenth of a second";
    EXPECT_EQ(sent(1, "", NSDownArrowFunctionKey), "action(115200)");
    EXPECT_EQ(sent(0, "", NSUpArrowFunctionKey), "action(120001)") << "a sample";
    EXPECT_EQ(sent(9, "", NSUpArrowFunctionKey), "action(121920)") << "a frame, at the format's rate";
    EXPECT_EQ(sent(3, "", NSUpArrowFunctionKey), "action(120001)") << "frames at the sample rate";
    EXPECT_EQ(sent(0, "5", NSUpArrowFunctionKey), "action(6)") << "from what was typed";
    EXPECT_EQ(sent(0, "5x", NSUpArrowFunctionKey), "") << "not from refused text";
    EXPECT_EQ(sent(0, "5", NSUpArrowFunctionKey, NSShiftKeyMask), "") << "with Shift it selects";
}

TEST_F(ZeTimeTextFieldTest, StepsStopAtTheEnds)
{
    constexpr auto kMost = std::numeric_limits<long long>::max();
    static const struct {
        bool isLength;
        long long from;
        unichar key;
        long long to;
    } kRows[] = {{true, kMost - 1, NSUpArrowFunctionKey, kMost},
                 {true, 1000, NSDownArrowFunctionKey, 0},
                 {false, 1000, NSDownArrowFunctionKey, 1000 - 4800}};
    for (const auto& row : kRows) {
        field->setIsLength(row.isLength);
        field->setObjectValue(NSNumber::numberWithLongLong(row.from).get());
        focus();
        rig.key(row.key);
        EXPECT_EQ(samples(), row.to);
    }
}

TEST_F(ZeTimeTextFieldTest, RefusedTextStaysWithItsReason)
{
    std::string logged;
    NSLogSetSink([&logged](std::string_view text) { logged += text; });
    focus();
    rig.type("-1");
    rig.key(NSCarriageReturnCharacter);
    EXPECT_EQ(shown(), "-1");
    EXPECT_EQ(samples(), 120000);
    ASSERT_NE(field->refusalText(), nullptr);
    EXPECT_TRUE(field->refusalText()->hasPrefix("Only digits"_ns.get()));
    EXPECT_EQ(logged, "This string contains illegal characters: -1");
    rig.key(NSEscapeCharacter);
    EXPECT_EQ(shown(), "00:00:02.500");
    EXPECT_EQ(field->refusalText(), nullptr);
    rig.type("3");
    field->setFrameAndSampleRate(44100);
    rig.key(NSCarriageReturnCharacter);
    EXPECT_EQ(log.take(), "action(132300)") << "read at the rate of now";
}

TEST_F(ZeTimeTextFieldTest, CellKeepsOneEditor)
{
    focus();
    const NSTextView* const first = field->currentEditor();
    ASSERT_TRUE(first->isKindOfClass<ZeTimeTextFieldEditor>());
    EXPECT_TRUE(first->isFieldEditor());
    EXPECT_EQ(static_cast<const ZeTimeTextFieldEditor*>(first)->defaultMenu(), menu());
    const auto other = make<NSMenu>();
    rig.window()->makeFirstResponder(nullptr);
    field->setDefaultMenu(other);
    focus();
    EXPECT_EQ(field->currentEditor(), first);
    EXPECT_EQ(first->menu(), other);
}

TEST_F(ZeTimeTextFieldTest, EditorLogsTheMenuThatItsClassShares)
{
    class Editor final : public ZeTimeTextFieldEditor {
    public:
        NSMenu* defaultMenuOfClass() const override { return shared; }
        RetainPtr<NSMenu> shared;
    };
    std::string logged;
    NSLogSetSink([&logged](std::string_view text) { logged.append(text).append(";"); });
    const auto editor = make<Editor>();
    editor->shared = make<NSMenu>();
    editor->shared->addItemWithTitle("100%s"_ns.get(), nullptr, ""_ns.get());
    editor->shared->addItemWithTitle("Copy"_ns.get(), nullptr, ""_ns.get());
    editor->setDefaultMenu(menu());
    const auto press = [&](std::uint32_t flags) {
        const auto event = NSEvent::mouseEvent(NSLeftMouseDown, {}, flags, 0, rig.window(), 1);
        return editor->menuForEvent(*event);
    };
    EXPECT_EQ(press(0), nullptr);
    EXPECT_EQ(logged, "");
    EXPECT_EQ(press(kCtrl), menu());
    EXPECT_EQ(logged, "100%s;Copy;");
}

TEST_F(ZeTimeTextFieldTest, NothingOutlivesItsOwnerBadly)
{
    const RetainPtr<NSMenu> kept = menu();
    field->setDefaultMenu(make<NSMenu>().get()); // only the cell holds it
    field->setCell(make<NSTextFieldCell>().get());
    EXPECT_EQ(menu(), nullptr);
    field->cleanup();
    field->cleanup();
    EXPECT_EQ(field->getIncrement(), 0);
    field->setFormat(QVPOSFMT_SAMPLES); // makes another formatter
    EXPECT_EQ(field->getIncrement(), 1);
    field->removeFromSuperview(); // the last reference
    EXPECT_EQ(kept->itemArray()[0]->target(), nullptr);
}

} // namespace
