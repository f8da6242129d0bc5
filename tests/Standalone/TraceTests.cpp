#include "SessionRig.h"

#include <cmath>
#include <limits>

namespace {

TEST(Trace, WritesTheShortestTextThatReadsBack)
{
    const struct {
        float value;
        const char* text;
    } kRows[] = {
        {0.1F, "0.1"},    {1.0F / 3, "0.33333334"}, {16777216, "16777216"},
        {1e30F, "1e+30"}, {1e-45F, "1e-45"},        {-std::numeric_limits<float>::infinity(), "-inf"},
    };
    for (const auto& row : kRows) {
        EXPECT_EQ(shortestText(row.value), row.text);
        EXPECT_EQ(std::strtof(row.text, nullptr), row.value);
    }
}

TEST(Trace, FlushesEachLineAtOnce)
{
    char* text = nullptr;
    std::size_t size = 0;
    std::FILE* const file = open_memstream(&text, &size); // `text` is what was flushed
    ASSERT_TRUE(file);
    UnitTrace trace(file);
    trace.gestureBegan(1);
    EXPECT_STREQ(text, "begin 1\n");
    trace.parameterSet(1, 440);
    EXPECT_STREQ(text, "begin 1\nset 1 440\n");
    trace.gestureEnded(1);
    EXPECT_STREQ(text, "begin 1\nset 1 440\nend 1\n");
    std::fclose(file);
    std::free(text);
}

TEST(Trace, TellsOfAllWindowsTogether)
{
    const SessionScene scene;
    Options options;
    options.trace = true;
    Session session(options);
    for (int i = 0; i < 2; ++i) session.openEditor(1)->orderFront();
    SessionScene::run();
    testing::internal::CaptureStdout();
    for (const std::size_t i : {0U, 1U}) {
        const auto* entry = session.editor(i)->classTable().findOutlet("mLogSweepCheckbox");
        auto* checkBox = const_cast<NSButton*>(asKind<NSButton>(entry->get(session.editor(i))));
        checkBox->setEnabled(true);
        checkBox->performClick(nullptr);
        SessionScene::run(); // the other window follows, so that the second click takes back the first
    }
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "begin 4\nset 4 1\nend 4\nbegin 4\nset 4 0\nend 4\n");
}

TEST(Session, EndsWhenItsLastWindowCloses)
{
    const SessionScene scene;
    Session session({});
    int ends = 0;
    session.setLastClosedHandler([&ends] { ++ends; });
    NSWindow* const first = session.openEditor(1);
    NSWindow* const second = session.openEditor(1);
    first->close();
    EXPECT_EQ(ends, 0);
    EXPECT_EQ(session.openEditors(), 1U);
    second->close();
    EXPECT_EQ(ends, 1);
}

} // namespace
