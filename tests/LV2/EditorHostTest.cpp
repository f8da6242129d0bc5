// What an editor reads from a host's features, well made or not.

#include "LV2/EditorHost.h"
#include "LV2/PlugInHost.h"

#include <gtest/gtest.h>

#include <cmath>

#include <lv2/parameters/parameters.h>

namespace {

/// Each kind of number that an option can hold.
union Number {
    float real;
    double longReal;
    std::int32_t whole;
    std::int64_t longWhole;
};

class EditorHostTest : public testing::Test {
protected:
    EditorHost hostWith(const LV2_Options_Option& option)
    {
        LV2_Options_Option list[] = {option, {}};
        const LV2_Feature map{LV2_URID__map, names.map()}, options{LV2_OPTIONS__options, list};
        const LV2_Feature* const features[] = {&map, &options, nullptr};
        return {nullptr, nullptr, features};
    }
    LV2_Options_Option option(const char* key, const char* type, std::uint32_t size, const void* value)
    {
        return {LV2_OPTIONS_INSTANCE, 0, names(key), size, names(type), value};
    }

    Names names;
};

TEST_F(EditorHostTest, TakesNumbersOfEachTypeButNoneThatCantBe)
{
    const struct {
        const char* type;
        std::uint32_t size;
        Number value;
        double expected;
    } kRows[] = {
        {LV2_ATOM__Float, 4, {.real = 48000.0f}, 48000.0}, {LV2_ATOM__Double, 8, {.longReal = 44100.5}, 44100.5},
        {LV2_ATOM__Int, 4, {.whole = 96000}, 96000.0},     {LV2_ATOM__Long, 8, {.longWhole = 192000}, 192000.0},
        {LV2_ATOM__Float, 8, {.real = 48000.0f}, 0.0},     {LV2_ATOM__Double, 4, {.real = 48000.0f}, 0.0},
        {LV2_ATOM__String, 4, {.real = 48000.0f}, 0.0},    {LV2_ATOM__Float, 4, {.real = -1.0f}, 0.0},
        {LV2_ATOM__Float, 4, {.real = INFINITY}, 0.0},     {LV2_ATOM__Double, 8, {.longReal = NAN}, 0.0},
    };
    for (const auto& row : kRows) {
        const auto read = [&](const char* key) { return hostWith(option(key, row.type, row.size, &row.value)); };
        EXPECT_EQ(read(LV2_PARAMETERS__sampleRate).sampleRateHz(), row.expected) << row.type << " of " << row.size;
        EXPECT_EQ(read(LV2_UI__scaleFactor).scale(), row.expected) << row.type << " of " << row.size;
    }
    EXPECT_EQ(hostWith(option(LV2_UI__scaleFactor, LV2_ATOM__Float, 4, nullptr)).scale(), 0.0);
}

TEST_F(EditorHostTest, ReadsATitleNoFurtherThanItGoes)
{
    const char text[] = {'T', 'o', 'n', 'e', '\0', '!'};
    for (const auto& [size, title] : {std::pair(6U, "Tone"), {5U, "Tone"}, {4U, "Tone"}, {2U, "To"}, {0U, ""}})
        EXPECT_EQ(hostWith(option(LV2_UI__windowTitle, LV2_ATOM__String, size, text)).windowTitle(), title) << size;
    EXPECT_EQ(hostWith(option(LV2_UI__windowTitle, LV2_ATOM__Int, 5, text)).windowTitle(), "");
}

TEST(EditorHost, DoesNothingWhereNothingIsOffered)
{
    const LV2_Feature* const none[] = {nullptr};
    for (const LV2_Feature* const* features : {none, static_cast<const LV2_Feature* const*>(nullptr)}) {
        const EditorHost host(nullptr, nullptr, features);
        host.write(1, 0, 0, nullptr);
        host.touch(1, true);
        host.resize({100, 50});
        EXPECT_EQ(host.sampleRateHz(), 0.0);
        EXPECT_EQ(host.scale(), 0.0);
        EXPECT_EQ(host.parent(), 0U);
    }
}

} // namespace
