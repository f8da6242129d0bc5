// The length: what the field, its stepper and its format show, and what they send.

#include "EditorRig.h"

#include "AppKit/NSPasteboard.h"
#include "TonaroFormatPopUp.h"
#include "ZeKernel/ScopedLocale.h"

#include <cmath>
#include <random>

namespace {

class LengthTest : public EditorTest {
protected:
    ZeTimeTextField& field() const { return editor->outlet<ZeTimeTextField>("mLengthText"); }
    NSStepper& stepper() const { return editor->outlet<NSStepper>("mLengthStepper"); }
    TonaroFormatPopUp& formats() const { return editor->only<TonaroFormatPopUp>(); }
    double samples() const { return field().doubleValue(); }
    std::string text() const { return editor->text("mLengthText"); }
    std::u16string edited() const { return field().currentEditor()->text(); }
    void key(unichar character) { editor->key(character); }
    /// Over what the field holds; Return commits it.
    void type(const std::string& typed)
    {
        field().selectText(nullptr);
        for (const char character : typed) key(static_cast<unichar>(character));
        key(NSCarriageReturnCharacter);
    }
    void paste(const char* pasted)
    {
        NSPasteboard::setString(NSString::string(pasted).get());
        field().currentEditor()->paste(nullptr);
    }
};

TEST_F(LengthTest, ShowsTheUnitsSecondsAsSamplesAtItsRate)
{
    EXPECT_EQ(text(), "00:00:02.500");
    EXPECT_EQ(stepper().floatValue(), 2.5F);
    unit.sampleRate = 48000;
    open();
    EXPECT_EQ(samples(), 120000);

    changeRate(96000);
    EXPECT_EQ(samples(), 120000) << "until the unit tells the length again";
    editor->show(kParamLength, 2.5F);
    EXPECT_EQ(samples(), 240000);
    EXPECT_EQ(text(), "00:00:02.500");
    EXPECT_EQ(unit.takeLog(), "");
}

TEST_F(LengthTest, EditsAreFramed)
{
    editor->enter("mLengthText", 44100);
    EXPECT_EQ(unit.takeLog(), "begin(6) set(6,1) end(6)");
    scene.run();
    EXPECT_EQ(stepper().floatValue(), 1.0F);
    stepper().setFloatValue(7.25F);
    stepper().sendAction(stepper().action(), stepper().target());
    EXPECT_EQ(unit.takeLog(), "begin(6) set(6,7.25) end(6)");
    scene.run();
    EXPECT_EQ(text(), "00:00:07.250");
    EXPECT_EQ(unit.takeLog(), "") << "the echo is shown and answered by nobody";
}

TEST_F(LengthTest, AStepStartsFromWhatWasTypedAMomentAgo)
{
    type("00:00:09");
    editor->click(stepper(), {5, 5});
    EXPECT_EQ(unit.takeLog(), "begin(6) set(6,9) end(6) begin(6) set(6,9.5) end(6)");
    unit.values[kParamLength] = 0.125F;
    editor->show(kParamLength, 0.125F);
    key(NSUpArrowFunctionKey);
    EXPECT_EQ(unit.takeLog(), "begin(6) set(6,0.625) end(6)") << "also from less than a step";
}

TEST_F(LengthTest, TheToolTipTellsTheOtherFormats)
{
    const std::string tip = field().toolTip()->utf8();
    EXPECT_EQ(std::count(tip.begin(), tip.end(), '\n'), 9);
    EXPECT_NE(tip.find("Samples: 110,250\n"), tip.npos) << tip;
    EXPECT_NE(tip.find("\nSMPTE drop (29.97 fps): 00:00:02;15\n"), tip.npos) << tip;
    EXPECT_EQ(tip.find("Time (hh"), tip.npos) << "which the field shows";
    EXPECT_EQ(text(), "00:00:02.500");

    unit.whenSet = [this] { unit.values[kParamLength] = 100; };
    type("00:10:00");
    scene.run();
    EXPECT_EQ(field().toolTip()->utf8().find("00:10:00.000 is out of range; the nearest possible is 00:01:40.000."),
              0U);
    editor->show(kParamLength, 3);
    EXPECT_EQ(field().toolTip()->utf8().find("Samples"), 0U);
}

TEST_F(LengthTest, TheUnitsFormatIsUsedWhereItIsOne)
{
    const auto shown = [this](std::optional<std::uint32_t> format) {
        unit.timeFormat = format;
        open();
        EXPECT_EQ(samples(), 110250);
        const NSString* title = formats().titleOfSelectedItem();
        return std::to_string(field().format()) + ": " + text() + (title ? ", " + title->utf8() : "");
    };
    const std::string kTime = "1: 00:00:02.500, Time (hh:mm:ss.ms)";
    EXPECT_EQ(shown({}), kTime);
    EXPECT_EQ(shown(8), "8: 00:00:02;15, SMPTE drop (29.97 fps)");
    EXPECT_EQ(shown(17), "17: 00:00:02:37, CD time (75 fps)");
    EXPECT_TRUE(shown(20).starts_with("20: ")) << "which isn't in the list";
    EXPECT_EQ(shown(21), kTime);
    EXPECT_EQ(shown(0xFFFFFFFF), kTime);
}

TEST_F(LengthTest, ListAndMenuFollowEachOtherAndSendNothing)
{
    auto& list = formats();
    for (int i = 0; i < list.numberOfItems(); ++i) {
        SCOPED_TRACE(list.itemTitleAtIndex(i)->utf8());
        list.selectItemAtIndex(i);
        list.sendAction(list.action(), list.target());
        EXPECT_EQ(field().format(), list.menuOfItems()->itemArray()[static_cast<std::size_t>(i)]->tag());
        EXPECT_EQ(samples(), 110250);
        field().onFormatMenuAction(field().defaultMenu()->itemArray()[static_cast<std::size_t>(10 - i)]);
        EXPECT_EQ(list.indexOfSelectedItem(), 10 - i) << "the list follows the field's own menu";
    }
    scene.run();
    EXPECT_EQ(unit.takeLog(), "");
}

TEST_F(LengthTest, EveryLengthTravelsAsTheQuotientAndBackAsTheProduct)
{
    std::mt19937_64 random(1);
    for (const double rate : {8000.0, 11025.0, 44100.0, 48000.0, 96000.0, 192000.0, 384000.0}) {
        changeRate(rate);
        field().setFormat(0);
        std::vector<long long> lengths = {1, 2, (1 << 24) - 1, (1 << 24) + 1, static_cast<long long>(rate * 86399.99)};
        std::uniform_int_distribution<long long> any(1, lengths.back());
        while (lengths.size() < 40) lengths.push_back(any(random));
        for (const long long length : lengths) {
            SCOPED_TRACE(testing::Message() << length << " at " << rate);
            type(std::to_string(length));
            const auto seconds = static_cast<float>(double{static_cast<float>(length)} / rate);
            EXPECT_EQ(unit.values[kParamLength], seconds);
            scene.run(0.1);
            EXPECT_EQ(asKind<NSNumber>(field().objectValue())->longLongValue(),
                      static_cast<long long>(static_cast<float>(double{seconds} * rate)));
        }
    }
}

TEST_F(LengthTest, RefusesWhatIsNoPositionAndKeepsTheValue)
{
    static const struct {
        const char* pasted;
        bool isAccepted; ///< until it is committed
    } kRows[] = {{"1;2", true},  {"\U0001F600", true}, {"٣", true},       {"1\u202F000", true}, {"1\t2", false},
                 {"1\n", false}, {"1\r\n", false},     {"\u2028", false}, {"1\v2", false},      {"1\u00852", false}};
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.pasted);
        field().selectText(nullptr);
        paste(row.pasted);
        EXPECT_EQ(field().refusalText() == nullptr, row.isAccepted);
        key(NSCarriageReturnCharacter);
        EXPECT_EQ(field().refusalText() != nullptr, row.isAccepted);
        EXPECT_EQ(samples(), 110250);
        key(NSEscapeCharacter);
        EXPECT_FALSE(field().refusalText());
        EXPECT_EQ(edited(), u"00:00:02.500");
    }
    EXPECT_EQ(unit.takeLog(), "");
}

TEST_F(LengthTest, WritesAndReadsTheUsersSeparators)
{
    const auto sent = [this](const char* users, unsigned format, const char* shown, const char* pasted) {
        SCOPED_TRACE(testing::Message() << users << ' ' << format << ' ' << pasted);
        const ScopedLocale locale(users);
        unit.values[kParamLength] = 2.5F;
        unit.timeFormat = format;
        open();
        EXPECT_EQ(text(), shown);
        field().selectText(nullptr);
        key(NSCarriageReturnCharacter);
        EXPECT_EQ(unit.takeLog(), "") << "nothing was typed";
        EXPECT_EQ(samples(), 110250);
        paste(pasted);
        key(NSCarriageReturnCharacter);
        return field().refusalText() ? "refused" + unit.takeLog() : unit.takeLog();
    };
    EXPECT_EQ(sent("de_DE.UTF-8", 0, "110.250", "44.100"), "begin(6) set(6,1) end(6)");
    EXPECT_EQ(sent("de_DE.UTF-8", 1, "00:00:02,500", "1,5"), "begin(6) set(6,1.5) end(6)");
    EXPECT_EQ(sent("de_DE.UTF-8", 2, "2,500000", "1,5"), "begin(6) set(6,1.5) end(6)");
    EXPECT_EQ(sent("de_DE.UTF-8", 3, "00:00:02,22050", "0:01,22050"), "begin(6) set(6,0) end(6)");
    EXPECT_EQ(sent("fr_FR.UTF-8", 0, "110\u202F250", "44100"), "begin(6) set(6,1) end(6)");
    EXPECT_EQ(sent("fr_FR.UTF-8", 0, "110\u202F250", "44\u202F100"), "refused");
    EXPECT_EQ(sent("de_CH.UTF-8", 4, "110’250.000", "44’100"), "refused");
}

TEST_F(LengthTest, LegalNonsenseIsASingleEditInEveryFormat)
{
    for (const auto& item : field().defaultMenu()->itemArray()) {
        field().onFormatMenuAction(item);
        for (const std::string& typed : {std::string(200, '9'), std::string(":::"), std::string("%.,: ")}) {
            SCOPED_TRACE(item->title()->utf8() + ": " + typed);
            type(typed);
            EXPECT_FALSE(field().refusalText());
            const std::string log = unit.takeLog();
            EXPECT_TRUE(log.starts_with("begin(6) set(6,") && log.ends_with(") end(6)")) << log;
            EXPECT_TRUE(std::isfinite(unit.values[kParamLength])) << log;
            scene.run();
        }
    }
}

TEST_F(LengthTest, AnEditMayEndTheEditor)
{
    const auto press = [this](NSView& view, unichar character) {
        editor->window->makeFirstResponder(&view);
        if (&view == &field()) key(u'3');
        key(character);
    };
    const struct {
        const char* why;
        std::function<void()> edit;
        const char* log;
    } kRows[] = {
        {"Return", [&] { press(field(), NSCarriageReturnCharacter); }, "set(6,3)"},
        {"leaving", [&] { press(field(), NSTabCharacter); }, "set(6,3)"},
        {"an arrow key", [&] { press(field(), NSUpArrowFunctionKey); }, "set(6,3.1)"},
        {"the stepper", [&] { press(stepper(), NSUpArrowFunctionKey); }, "set(6,3)"},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        open();
        unit.whenSet = [this] { editor->end(); };
        row.edit();
        EXPECT_EQ(unit.takeLog(), std::string("begin(6) ") + row.log + " end(6)");
        unit.values[kParamLength] = 2.5F;
    }
}

TEST_F(LengthTest, WhoHearsOfAnotherFormatMayEndTheEditor)
{
    class Observer final : public NSObject {
    public:
        std::function<void()> heard;
        void observeValueForKeyPath(const NSString*, NSObject*, void*) override { std::exchange(heard, nullptr)(); }
    };
    const std::function<void()> kChoices[] = {
        [this] { field().onFormatMenuAction(field().defaultMenu()->itemArray()[5]); },
        [this] {
            auto& list = formats();
            list.selectItemAtIndex(5);
            list.sendAction(list.action(), list.target());
        },
        [this] {
            field().selectText(nullptr);
            key(NSUpArrowFunctionKey); // sets the format it has
        },
    };
    for (const auto& choose : kChoices) {
        open();
        const auto observer = make<Observer>();
        observer->heard = [this] { editor->end(); };
        field().addObserverForKeyPath(observer, "format"_ns.get(), nullptr);
        choose();
        EXPECT_FALSE(editor->view);
        unit.takeLog();
    }
}

TEST_F(LengthTest, AChangeOfRateDuringAnEditKeepsWhatIsTyped)
{
    field().selectText(nullptr);
    for (const char16_t character : std::u16string(u"00:00:01.000")) key(character);
    changeRate(48000);
    editor->show(kParamLength, 4);
    EXPECT_EQ(edited(), u"00:00:01.000");
    key(NSCarriageReturnCharacter);
    EXPECT_EQ(unit.takeLog(), "begin(6) set(6,1) end(6)") << "at the new rate";
}

} // namespace
