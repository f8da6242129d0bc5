#include "CoreGraphics/CGCairo.h"
#include "Pixels.h"
#include "Support/TemporaryFolder.h"

#include <sys/stat.h>

namespace {

/// 3 by 2 pixels, rows 16 bytes apart; the fourth of each row is no part of the picture.
constexpr std::array<std::uint8_t, 32> kBytes{1, 0, 0, 255, 2, 0, 0, 255, 3, 0, 0, 255, 9, 9, 9, 9,
                                              4, 0, 0, 255, 5, 0, 0, 255, 6, 0, 0, 255, 9, 9, 9, 9};

/// Counts the providers that let go of their bytes.
struct Releases {
    int count = 0;
    const void* data = nullptr;
    std::size_t size = 0;

    static void callback(void* info, const void* data, std::size_t size)
    {
        auto& releases = *static_cast<Releases*>(info);
        ++releases.count;
        releases.data = data;
        releases.size = size;
    }
    RetainPtr<CGImage> image()
    {
        const auto provider = CGDataProviderCreateWithData(this, kBytes.data(), kBytes.size(), callback);
        return CGImageCreate(3, 2, 16, provider);
    }
};

const std::uint8_t* drawnFrom(CGImageRef image)
{
    return cairo_image_surface_get_data(image->contents().surface.get());
}

} // namespace

TEST(CGImage, CutsShareBytesAndKeepThem)
{
    static const struct {
        const char* why;
        CGRect rect;
        std::size_t x, y, width, height; // width 0: none
    } kRows[] = {
        {"whole", {{0, 0}, {3, 2}}, 0, 0, 3, 2},
        {"lower right", {{1, 1}, {2, 1}}, 1, 1, 2, 1},
        {"past the edges", {{-5, -5}, {7, 6}}, 0, 0, 2, 1},
        {"each pixel that is touched", {{0.9, 0.5}, {1.2, 0.2}}, 0, 0, 3, 1},
        {"from the other end", {{3, 2}, {-1, -1}}, 2, 1, 1, 1},
        {"beside", {{3, 0}, {1, 1}}, 0, 0, 0, 0},
        {"no height", {{0, 0}, {3, 0}}, 0, 0, 0, 0},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        Releases releases;
        auto image = releases.image();
        EXPECT_EQ(drawnFrom(image), kBytes.data());
        auto cut = CGImageCreateWithImageInRect(image, row.rect);
        image = nullptr;
        ASSERT_EQ(cut != nullptr, row.width > 0);
        EXPECT_EQ(releases.count, cut ? 0 : 1);
        if (!cut) continue;
        EXPECT_EQ(CGImageGetWidth(cut), row.width);
        EXPECT_EQ(CGImageGetHeight(cut), row.height);
        EXPECT_EQ(drawnFrom(cut), &kBytes[16 * row.y + 4 * row.x]);
        EXPECT_EQ(CGImageGetPixels(cut).data(), drawnFrom(cut));
        EXPECT_EQ(CGImageGetPixels(cut).size(), 16 * (row.height - 1) + 4 * row.width);
        EXPECT_EQ(CGImageGetBytesPerRow(cut), 16u);
        const auto context = CGBitmapContextCreate(row.width, row.height);
        CGContextDrawImage(context, CGRectMake(0, 0, CGFloat(row.width), CGFloat(row.height)), cut);
        EXPECT_EQ(pixelOf(context, row.width - 1, row.height - 1),
                  hexOf(kBytes, 4 * (row.y + row.height - 1) + row.x + row.width - 1));
        cut = CGImageCreateWithImageInRect(cut, CGRectMake(0, 0, 1, 1)); // of a part again
        EXPECT_EQ(releases.count, 0);
        cut = nullptr;
        EXPECT_EQ(releases.count, 1);
        EXPECT_EQ(releases.data, kBytes.data());
        EXPECT_EQ(releases.size, kBytes.size());
    }
    EXPECT_FALSE(CGImageCreateWithImageInRect(nullptr, CGRectMake(0, 0, 1, 1)));
}

TEST(CGImage, RefusesWhatTheBytesCannotHold)
{
    const auto provider = CGDataProviderCreateWithData(nullptr, kBytes.data(), 28, nullptr);
    EXPECT_TRUE(CGImageCreate(3, 2, 16, provider)); // the last row needs no gap behind it
    static const struct {
        std::size_t width, height, bytesPerRow;
    } kRows[] = {{4, 2, 16},    {3, 3, 16},    {3, 2, 8},      {3, 2, 14},
                 {0, 2, 16},    {3, 0, 16},    {32768, 1, 16}, {1, std::size_t{1} << 40, 4},
                 {1, 1, ~3ull}, {1, 32768, 4}, {1, 2, 1 << 20}};
    for (const auto& row : kRows)
        EXPECT_FALSE(CGImageCreate(row.width, row.height, row.bytesPerRow, provider))
            << row.width << " " << row.height << " " << row.bytesPerRow;
    EXPECT_FALSE(CGImageCreate(1, 1, 4, nullptr));
}

TEST(CGImage, WritesACutWithoutItsNeighbours)
{
    Releases releases;
    const auto image = releases.image();
    const auto cut = CGImageCreateWithImageInRect(image, CGRectMake(1, 0, 2, 2));
    const TemporaryFolder folder;
    ASSERT_TRUE(CGImageWritePNGFile(cut, folder / "cut.png"));
    const auto again = CGImageCreateWithPNGFile(folder / "cut.png");
    ASSERT_TRUE(again);
    static constexpr const char* kPixels[] = {"020000ff", "030000ff", "050000ff", "060000ff"};
    for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(hexOf(CGImageGetPixels(again), i), kPixels[i]);
}

TEST(CGDataProvider, ReadsRegularFilesOnly)
{
    const TemporaryFolder folder;
    const std::string pipe = folder / "pipe", file = folder / "file";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    auto bytesAt = [](const std::string& name) {
        return CGDataProviderCreateWithURL(CFURLCreateFromFileSystemRepresentation(name).get());
    };
    for (const std::string& path : {pipe, std::string("/dev/zero"), std::string("/")}) EXPECT_FALSE(bytesAt(path));
    EXPECT_FALSE(CGDataProviderCreateWithURL(nullptr));
    folder.write("file", "seen");
    const auto seen = bytesAt(file);
    ASSERT_TRUE(seen);
    EXPECT_EQ(std::string(seen->bytes().begin(), seen->bytes().end()), "seen");
    std::filesystem::resize_file(file, 300 << 20); // a hole of 300 MiB
    EXPECT_FALSE(bytesAt(file));
}
