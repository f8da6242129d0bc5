#include "Support/OffscreenRig.h"

#include <gmock/gmock.h>

namespace {

TEST(NSWindow, ABitmapHasThePixelsOfItsScale)
{
    static const struct { CGFloat scale; std::size_t width, height; } kRows[] = {
        {1, 420, 10}, {1.25, 525, 13}, {1.5, 630, 15}, {2, 840, 20}, {3, 1260, 30},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.scale);
        OffscreenRig rig({420, 10}, row.scale);
        EXPECT_EQ(CGBitmapContextGetWidth(rig.window()->bitmap()), row.width);
        EXPECT_EQ(CGBitmapContextGetHeight(rig.window()->bitmap()), row.height);
    }
}

} // namespace
