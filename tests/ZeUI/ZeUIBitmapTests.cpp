#include "CoreGraphics/CGCairo.h"
#include "CoreGraphics/Pixels.h"
#include "ZeUIBitmap.h"

#include <climits>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace {

// red; (200, 100, 50) at alpha 128; blue of 255 at alpha 1; nothing
constexpr const char* kPNG = "89504e470d0a1a0a0000000d49484452000000020000000208060000"
                             "0072b60d24000000194944415478da63f8cfc0f0ff448a5103039066e4e4e46400003b4104f8"
                             "fc92ab140000000049454e44ae426082";
constexpr const char* kJPEG = // 16 by 16, all (200, 100, 50)
    "ffd8ffe000104a46494600010100000100010000ffdb0043000101010101010101010101010101010101"
    "010101010101010101010101010101010101010101010101010101010101010101010101010101010101"
    "0101010101ffdb0043010101010101010101010101010101010101010101010101010101010101010101"
    "0101010101010101010101010101010101010101010101010101010101010101ffc00011080010001003"
    "011100021101031101ffc4001500010100000000000000000000000000000006ffc40014100100000000"
    "000000000000000000000000ffc4001501010100000000000000000000000000000009ffc40014110100"
    "000000000000000000000000000000ffda000c03010002110311003f009f4af5b000001fffd9";

std::string bytesOf(std::string_view hex)
{
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
        bytes += char(std::stoi(std::string(hex.substr(i, 2)), nullptr, 16));
    return bytes;
}

/// A bitmap of a file of these bytes.
std::unique_ptr<ZeBitmap> bitmapOf(const std::string& bytes)
{
    const std::string path = testing::TempDir() + "bitmap-" + std::to_string(getpid());
    std::ofstream(path, std::ios::binary) << bytes;
    auto bitmap = std::make_unique<ZeBitmap>(CFURLCreateFromFileSystemRepresentation(path).get());
    std::filesystem::remove(path);
    return bitmap;
}

std::string pixelOf(CGImageRef image, std::size_t x, std::size_t y)
{
    return hexOf(CGImageGetPixels(image), y * CGImageGetBytesPerRow(image) / 4 + x);
}

RetainPtr<CGContext> contextOf(std::size_t width, std::size_t height)
{
    const auto context = CGBitmapContextCreate(width, height);
    for (std::size_t y = 0; y < height; ++y)
        for (std::size_t x = 0; x < width; ++x)
            fill(context, CGRectMake(double(x), double(y), 1, 1), double(x) / 255, double(y) / 255, 0, 1);
    return context;
}

/// Each pixel's red and green are its place.
std::unique_ptr<ZeBitmap> strip(std::size_t width, std::size_t height)
{
    const auto context = contextOf(width, height);
    return std::make_unique<ZeBitmap>(context.get(), ZeRect(double(width), double(height)), true);
}

const std::uint8_t* drawnFrom(const ZeBitmap& bitmap)
{
    return cairo_image_surface_get_data(bitmap.GetImage()->contents().surface.get());
}

/// Pixels of its own, laid out as every bitmap's.
void expectOwnPixels(const ZeBitmap& bitmap)
{
    const std::uint8_t* pixels = CGImageGetPixels(bitmap.GetImage()).data();
    const auto fromStart = pixels - static_cast<const std::uint8_t*>(bitmap.buffer);
    EXPECT_GE(fromStart, 0);
    EXPECT_LT(fromStart, 16);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(pixels) % 16, 0u);
    EXPECT_EQ(CGImageGetBytesPerRow(bitmap.GetImage()), 4 * bitmap.GetWidth());
    EXPECT_EQ(drawnFrom(bitmap), pixels);
    EXPECT_EQ(bitmap.bufferImage, bitmap.image);
    EXPECT_EQ(bitmap.GetHandle(), bitmap.image);
    EXPECT_TRUE(bitmap.ownsImage);
}

void expectEmpty(const ZeBitmap& bitmap)
{
    EXPECT_FALSE(bitmap.GetImage());
    EXPECT_FALSE(bitmap.GetHandle());
    EXPECT_FALSE(bitmap.buffer);
    EXPECT_EQ(bitmap.GetWidth(), 0u);
    EXPECT_EQ(bitmap.GetHeight(), 0u);
    EXPECT_FALSE(bitmap.ZeCreateSubBitmap(0, 0, 1, 1));
}

} // namespace

TEST(ZeBitmap, AlignsAndClearsItsMemory)
{
    for (const unsigned size : {0u, 1u, 15u, 24u, 1000u, 5000000u}) {
        if (void* used = std::malloc(size + 1)) {
            std::memset(used, 0xaa, size + 1); // what comes back is not clear by chance
            std::free(used);
        }
        void* raw = nullptr;
        auto* start = static_cast<char*>(ZeBitmap::malloc_aligned(size, &raw));
        ASSERT_TRUE(start && raw);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(start) % 16, 0u);
        EXPECT_LT(start - static_cast<char*>(raw), 16);
        EXPECT_EQ(std::count(start, start + size, 0), std::ptrdiff_t(size));
        ZeBitmap::ReleaseImageBuffer(raw, start, size);
    }
    ZeBitmap::ReleaseImageBuffer(nullptr, nullptr, 0);
}

TEST(ZeBitmap, LoadsPicturesPremultiplied)
{
    const auto png = bitmapOf(bytesOf(kPNG));
    ASSERT_TRUE(png->GetImage());
    EXPECT_EQ(png->GetWidth(), 2u);
    EXPECT_EQ(png->GetHeight(), 2u);
    static constexpr const char* kPixels[] = {"ff0000ff", "64321980", "00000101", "00000000"};
    for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(pixelOf(png->GetImage(), i % 2, i / 2), kPixels[i]);
    expectOwnPixels(*png);

    const auto jpeg = bitmapOf(bytesOf(kJPEG));
    ASSERT_TRUE(jpeg->GetImage());
    EXPECT_EQ(jpeg->GetWidth(), 16u);
    EXPECT_EQ(pixelOf(jpeg->GetImage(), 0, 0), "c86432ff");
    EXPECT_EQ(pixelOf(jpeg->GetImage(), 15, 15), "c86432ff");
    expectOwnPixels(*jpeg);

    void* handle = nullptr;
    EXPECT_EQ(jpeg->GetHandle(0x123456ff, &handle), 0u);
    EXPECT_EQ(handle, jpeg->image);
    EXPECT_EQ(jpeg->GetHandle(0, nullptr), 0u);
}

TEST(ZeBitmap, IsEmptyWithoutAPicture)
{
    expectEmpty(*bitmapOf(bytesOf(kPNG).substr(0, 60)));
    expectEmpty(*bitmapOf(bytesOf(kJPEG).substr(0, 200)));
    const auto other = bitmapOf("GIF89a and so on");
    expectEmpty(*other);
    EXPECT_FALSE(other->ownsImage || other->bufferImage);
    expectEmpty(ZeBitmap(CFURLCreateFromFileSystemRepresentation("/missing/tick.png").get()));
    expectEmpty(ZeBitmap(CFURLCreateFromFileSystemRepresentation("/dev/zero").get()));
    expectEmpty(ZeBitmap(static_cast<CFURLRef>(nullptr)));
    expectEmpty(ZeBitmap(static_cast<CGImage*>(nullptr), true));
}

TEST(ZeBitmap, TakesItsSizeFromARectangle)
{
    const ZeBitmap bitmap(nullptr, ZeRect(7.0, 9.0, 10.5, 3.49), false);
    EXPECT_EQ(bitmap.GetWidth(), 11u) << "halves go up";
    EXPECT_EQ(bitmap.GetHeight(), 3u);
    expectOwnPixels(bitmap);
    const auto pixels = CGImageGetPixels(bitmap.GetImage());
    EXPECT_EQ(std::count(pixels.begin(), pixels.end(), 0), 4 * 11 * 3);

    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    for (const auto& [width, height] : {std::pair(0.0, 5.0),
                                        {5, 0.49},
                                        {-5, 5},
                                        {kNaN, 5},
                                        {HUGE_VAL, HUGE_VAL},
                                        {1073741825, 1}, // 4 GiB and 16 bytes, 4 in its low 32 bits
                                        {40000, 1}}) {   // a side that no image has
        SCOPED_TRACE(width);
        expectEmpty(ZeBitmap(nullptr, ZeRect(7.0, 9.0, width, height), false));
    }
}

TEST(ZeBitmap, CopiesTheWholeContextScaled)
{
    const auto context = contextOf(3, 2);
    const ZeBitmap same(context.get(), ZeRect(100, 100, 3, 2), true), twice(context.get(), ZeRect(6, 4), true);
    const ZeBitmap blank(context.get(), ZeRect(3, 2), false), nothing(nullptr, ZeRect(3, 2), true);
    CGContextClearRect(context, CGRectMake(0, 0, 3, 2)); // a copy doesn't change with it
    for (std::size_t y = 0; y < 4; ++y)
        for (std::size_t x = 0; x < 6; ++x) {
            const std::string expected = "0" + std::to_string(x / 2) + "0" + std::to_string(y / 2) + "00ff";
            EXPECT_EQ(pixelOf(same.GetImage(), x / 2, y / 2), expected);
            const bool isCorner = x % 5 == 0 && y % 3 == 0; // between them pixels are mixed
            if (isCorner) {
                EXPECT_EQ(pixelOf(twice.GetImage(), x, y), expected);
            }
        }
    EXPECT_EQ(pixelOf(blank.GetImage(), 1, 1), "00000000");
    EXPECT_EQ(pixelOf(nothing.GetImage(), 1, 1), "00000000");
    expectOwnPixels(same);
    expectOwnPixels(twice);
}

TEST(ZeBitmap, PartsShareItsPixels)
{
    const auto whole = strip(6, 4);
    const auto cut = [&](int x, int y, int w, int h) -> std::string {
        const std::unique_ptr<ZeBitmap> part(whole->ZeCreateSubBitmap(x, y, w, h));
        if (!part) return "none";
        EXPECT_EQ(drawnFrom(*part), CGImageGetPixels(part->GetImage()).data());
        EXPECT_EQ(part->GetHandle(), part->image);
        EXPECT_FALSE(part->buffer);
        EXPECT_TRUE(part->ownsImage);
        const auto place = (drawnFrom(*part) - drawnFrom(*whole)) / 4;
        return std::to_string(part->GetWidth()) + "x" + std::to_string(part->GetHeight()) + " at " +
               std::to_string(place % 6) + "," + std::to_string(place / 6);
    };
    EXPECT_EQ(cut(2, 1, 3, 2), "3x2 at 2,1");
    EXPECT_EQ(cut(4, 3, 9, 9), "2x1 at 4,3") << "to the end";
    EXPECT_EQ(cut(11, 5, 4, 2), "4x2 at 0,0") << "a start beyond the end is 0";
    EXPECT_EQ(cut(6, 0, 1, 1), "none") << "a start at the end has nothing";
    EXPECT_EQ(cut(0, 0, 0, 4), "none");
    EXPECT_EQ(cut(-2, -1, 4, 3), "2x2 at 0,0") << "before the start only the rest is there";
    EXPECT_EQ(cut(1, 1, INT_MAX, INT_MAX), "5x3 at 1,1") << "sums stay within their numbers";
    EXPECT_EQ(cut(INT_MIN, INT_MIN, 1, 1), "none");
}

TEST(ZeBitmap, PixelsOutliveTheirBitmapInEveryOrder)
{
    for (const bool loaded : {false, true}) {
        auto whole = loaded ? bitmapOf(bytesOf(kJPEG)) : strip(6, 4);
        const std::string pixel = pixelOf(whole->GetImage(), 3, 2);
        ZeBitmap* part = whole->ZeCreateSubBitmap(2, 1, 3, 2);
        ASSERT_TRUE(part);
        whole.reset();
        ZeBitmap* partOfPart = part->ZeCreateSubBitmap(1, 1, 1, 1);
        ASSERT_TRUE(partOfPart);
        ZeBitmap::ZeReleaseSubBitmap(&part);
        EXPECT_FALSE(part);
        const RetainPtr<CGImage> image(partOfPart->image);
        ZeBitmap::ZeReleaseSubBitmap(&partOfPart);
        EXPECT_EQ(pixelOf(image, 0, 0), pixel);
        const auto context = CGBitmapContextCreate(1, 1);
        CGContextDrawImage(context, CGRectMake(0, 0, 1, 1), image);
        EXPECT_EQ(pixelOf(CGBitmapContextCreateImage(context).get(), 0, 0), pixel);
        ZeBitmap::ZeReleaseSubBitmap(&part);
        ZeBitmap::ZeReleaseSubBitmap(nullptr);
    }
}

TEST(ZeBitmap, ReleasesWhatItOwnsOnce)
{
    const auto context = contextOf(2, 2);
    const auto image = CGBitmapContextCreateImage(context);
    {
        const ZeBitmap borrowing(image, false);
        const ZeBitmap owning(RetainPtr<CGImage>(image).leak(), true);
        EXPECT_EQ(owning.GetHandle(), image.get());
        EXPECT_FALSE(owning.buffer);
    }
    EXPECT_EQ(pixelOf(image, 1, 1), "010100ff"); // ours is still held

    const auto bitmap = strip(2, 2);
    CGImage* own = bitmap->image; // a copy of the bitmap's pointer
    bitmap->ZeReleaseImage(&own);
    EXPECT_FALSE(own);
    expectEmpty(*bitmap);
    bitmap->ZeReleaseImage(&own);
    bitmap->ZeReleaseImage(nullptr);

    const auto other = strip(2, 2);
    CGImage* foreign = RetainPtr<CGImage>(image).leak();
    other->ZeReleaseImage(&foreign);
    EXPECT_FALSE(foreign);
    EXPECT_TRUE(other->image);
    other->ZeReleaseImage(&other->image);
    expectEmpty(*other);
}

TEST(ZeBitmap, RendersAPartIntoRowsOfItsOwn)
{
    const auto whole = strip(6, 4);
    const std::unique_ptr<ZeBitmap> part(whole->ZeCreateSubBitmap(2, 1, 3, 2));
    const RetainPtr<CGImage> rendered = part->PreRenderImage(part->GetImage());
    ASSERT_TRUE(rendered);
    EXPECT_EQ(CGImageGetBytesPerRow(rendered), 12u);
    EXPECT_EQ(pixelOf(rendered, 2, 1), "040200ff");
    EXPECT_EQ(part->bufferImage, rendered.get());
    EXPECT_NE(part->image, rendered.get());
    EXPECT_FALSE(part->PreRenderImage(nullptr));
}
