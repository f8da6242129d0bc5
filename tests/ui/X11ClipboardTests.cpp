// Copy and paste between programs.
#include "ui/X11Rig.h"

namespace {

class X11ClipboardTest : public X11Test {
protected:
    std::optional<std::string> readNow()
    {
        std::optional<std::string> answer;
        bool isAnswered = false;
        display->readClipboardText([&](const NSString* text) {
            isAnswered = true;
            if (text) answer = text->utf8();
        });
        EXPECT_TRUE(runUntil([&] { return isAnswered; }));
        return answer;
    }
    Program clip(const std::vector<std::string>& options)
    {
        std::vector<std::string> words = {"xclip", "-selection", "clipboard", "-quiet"};
        words.insert(words.end(), options.begin(), options.end());
        return Program(words, {server.setting()});
    }
    /// What another program pastes.
    std::string pasted(const std::string& target)
    {
        Program reader = clip({"-o", "-target", target});
        std::string text;
        runUntil([&] {
            while (const auto line = reader.nextLine(0.0)) text += line->text + "\n";
            return reader.waitForExit(0.0).has_value();
        });
        return text + reader.allOutput();
    }
    bool hasOwner() { return person.ownerOf("CLIPBOARD") != XCB_NONE; }
};

TEST_F(X11ClipboardTest, OthersPasteWhatWasCopiedHere)
{
    display->setClipboardText(NSString::string("440,5 Hz – ä").get());
    EXPECT_EQ(pasted("UTF8_STRING"), "440,5 Hz – ä");
    EXPECT_EQ(pasted("STRING"), "440,5 Hz ? \xE4") << "what Latin-1 lacks";
    EXPECT_THAT(pasted("TARGETS"), testing::HasSubstr("UTF8_STRING"));
    EXPECT_EQ(readNow(), "440,5 Hz – ä");
}

TEST_F(X11ClipboardTest, PastesWhatOthersCopied)
{
    const auto isPasted = [this](const std::string& text) {
        display->setClipboardText(nullptr);
        person.waitUntil([&] { return !hasOwner(); });
        Program owner = clip({"-i"});
        owner.writeInput(text);
        EXPECT_TRUE(person.waitUntil([&] { return hasOwner(); }));
        const auto answer = readNow();
        EXPECT_EQ(answer.value_or(text) == text, true) << "too much to print";
        return answer.has_value();
    };
    EXPECT_TRUE(isPasted("1000.0004"));
    EXPECT_TRUE(isPasted("ä€𝄞"));
    EXPECT_TRUE(isPasted(std::string(600000, 'x'))) << "in parts";
    EXPECT_FALSE(isPasted(std::string(3000000, 'x'))) << "more than a megabyte";
}

TEST_F(X11ClipboardTest, NobodyOwnsIt) { EXPECT_EQ(readNow(), std::nullopt); }

TEST_F(X11ClipboardTest, AnOwnerThatNeverAnswers)
{
    const xcb_window_t silent = person.makeWindow(0, 0, 10, 10);
    xcb_set_selection_owner(person.get(), silent, person.atom("CLIPBOARD"), XCB_CURRENT_TIME);
    person.synchronize();
    const double start = SecondsNow();
    EXPECT_EQ(readNow(), std::nullopt);
    EXPECT_GT(SecondsNow() - start, 0.9);
    EXPECT_LT(SecondsNow() - start, 5.0);
}

TEST_F(X11ClipboardTest, WorksWhileAMenuIsOpen)
{
    LoggingClient client, menuClient;
    const auto window = makeWindow(client);
    const auto menu = display->makePopUp(menuClient, *window, {{0, 0}, {50, 50}});
    menu->show();
    display->setClipboardText(NSString::string("440").get());
    EXPECT_EQ(pasted("UTF8_STRING"), "440");
}

TEST_F(X11ClipboardTest, AnAnswerMayEndTheDisplay)
{
    bool called = false;
    display->readClipboardText([&](const NSString*) {
        called = true;
        display.reset();
    });
    EXPECT_TRUE(runUntil([&] { return called; }));
}

} // namespace
