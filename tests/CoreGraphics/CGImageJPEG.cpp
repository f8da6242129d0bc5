#include "Pixels.h"

#include <cstdio>
#include <functional>
#include <vector>

#include <jpeglib.h>

namespace {

using Bytes = std::vector<std::uint8_t>;
using Pixel = std::array<std::uint8_t, 4>;

struct Shape {
    unsigned width = 16, height = 16;
    J_COLOR_SPACE space = JCS_RGB; ///< of the pixels given
    int components = 3;
    J_COLOR_SPACE stored = JCS_YCbCr;
    bool progressive = false;
    std::vector<jpeg_scan_info> scans{};
};

/// A file of one colour on the left half and another on the right.
Bytes jpegOf(const Shape& shape, Pixel left, Pixel right)
{
    jpeg_compress_struct jpeg{};
    jpeg_error_mgr errors{};
    jpeg.err = jpeg_std_error(&errors);
    jpeg_create_compress(&jpeg);
    unsigned char* file = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&jpeg, &file, &size);
    jpeg.image_width = shape.width;
    jpeg.image_height = shape.height;
    jpeg.input_components = shape.components;
    jpeg.in_color_space = shape.space;
    jpeg_set_defaults(&jpeg);
    jpeg_set_colorspace(&jpeg, shape.stored);
    jpeg_set_quality(&jpeg, 100, TRUE);
    for (int k = 0; k < jpeg.num_components; ++k) jpeg.comp_info[k].h_samp_factor = jpeg.comp_info[k].v_samp_factor = 1;
    if (shape.progressive) jpeg_simple_progression(&jpeg);
    if (!shape.scans.empty()) {
        jpeg.scan_info = shape.scans.data();
        jpeg.num_scans = static_cast<int>(shape.scans.size());
    }
    jpeg_start_compress(&jpeg, TRUE);
    Bytes row;
    for (unsigned x = 0; x < shape.width; ++x)
        for (int k = 0; k < shape.components; ++k)
            row.push_back((x < shape.width / 2 ? left : right)[static_cast<std::size_t>(k)]);
    for (JSAMPROW pointer = row.data(); jpeg.next_scanline < jpeg.image_height;)
        jpeg_write_scanlines(&jpeg, &pointer, 1);
    jpeg_finish_compress(&jpeg);
    jpeg_destroy_compress(&jpeg);
    Bytes bytes(file, file + size);
    std::free(file);
    return bytes;
}

RetainPtr<CGImage> imageOf(const Bytes& bytes)
{
    const auto provider = CGDataProviderCreateWithData(nullptr, bytes.data(), bytes.size(), nullptr);
    return CGImageCreateWithJPEGDataProvider(provider);
}

/// Where the frame's header stands: marker, length, bits, then height and width.
std::size_t frameOf(const Bytes& bytes)
{
    for (std::size_t i = 2; i + 9 < bytes.size(); i += 2u + bytes[i + 2] * 256u + bytes[i + 3])
        if (bytes[i + 1] >= 0xc0 && bytes[i + 1] <= 0xc2) return i;
    return 0;
}

const Bytes& smallFile()
{
    static const Bytes bytes = jpegOf({}, {255, 0, 0}, {0, 0, 255});
    return bytes;
}

} // namespace

TEST(CGImageJPEG, ReadsEveryKindAsOpaqueRGBA)
{
    static const struct {
        const char* why;
        Shape shape;
        Pixel left, right;
        const char *leftPixel, *rightPixel;
    } kRows[] = {
        {"colour", {}, {255, 0, 0}, {0, 0, 255}, "fe0000ff", "0000feff"},
        {"progressive", {.progressive = true}, {255, 0, 0}, {0, 0, 255}, "fe0000ff", "0000feff"},
        {"not transformed", {.stored = JCS_RGB}, {200, 100, 50}, {1, 2, 3}, "c86432ff", "010203ff"},
        {"grey",
         {.space = JCS_GRAYSCALE, .components = 1, .stored = JCS_GRAYSCALE},
         {77},
         {255},
         "4d4d4dff",
         "ffffffff"},
        {"inks, inverted as marked files have them: 200 * 128 / 255 is 100",
         {.space = JCS_CMYK, .components = 4, .stored = JCS_CMYK},
         {255, 200, 0, 128},
         {255, 255, 255, 255},
         "806400ff",
         "ffffffff"},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        const auto image = imageOf(jpegOf(row.shape, row.left, row.right));
        ASSERT_TRUE(image);
        EXPECT_EQ(CGImageGetWidth(image), 16u);
        EXPECT_EQ(CGImageGetHeight(image), 16u);
        EXPECT_EQ(hexOf(CGImageGetPixels(image), 0), row.leftPixel);
        EXPECT_EQ(hexOf(CGImageGetPixels(image), 255), row.rightPixel);
    }
}

TEST(CGImageJPEG, RefusesFilesThatAreCutShort)
{
    for (const bool progressive : {false, true}) {
        const Bytes whole = jpegOf({.progressive = progressive}, {255, 0, 0}, {0, 0, 255});
        ASSERT_TRUE(imageOf(whole));
        for (std::size_t length = 0; length < whole.size(); ++length) {
            Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
            EXPECT_FALSE(imageOf(cut)) << length;
            cut.insert(cut.end(),
                       {0xff, 0xd9}); // an end; but scans are missing, which a progressive file may leave out
            EXPECT_FALSE(!progressive && length + 2 < whole.size() && imageOf(cut)) << length;
        }
    }
    EXPECT_FALSE(CGImageCreateWithJPEGDataProvider(nullptr));
    EXPECT_FALSE(imageOf({'G', 'I', 'F', '8', '9', 'a'}));
}

TEST(CGImageJPEG, SurvivesEveryChangedByte)
{
    for (std::size_t i = 0; i < smallFile().size(); ++i) {
        for (const int change : {0x01, 0x41, 0xff}) {
            Bytes changed = smallFile();
            changed[i] = static_cast<std::uint8_t>(changed[i] ^ change);
            const auto image = imageOf(changed);
            EXPECT_EQ(CGImageGetPixels(image).size(), 4 * CGImageGetWidth(image) * CGImageGetHeight(image));
        }
    }
}

TEST(CGImageJPEG, RefusesMoreThanTheFileCanHold)
{
    static const struct {
        const char* why;
        std::uint8_t height[2], width[2];
        bool taken;
    } kRows[] = {
        {"its own size", {0, 16}, {0, 16}, true},
        {"32768 wide", {0, 1}, {0x80, 0}, false},
        {"30000 by 30000", {0x75, 0x30}, {0x75, 0x30}, false},
        {"no height", {0, 0}, {0, 16}, false},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        Bytes bytes = smallFile();
        const std::size_t frame = frameOf(bytes);
        ASSERT_GT(frame, 0u);
        std::copy_n(row.height, 2, &bytes[frame + 5]);
        std::copy_n(row.width, 2, &bytes[frame + 7]);
        EXPECT_EQ(imageOf(bytes) != nullptr, row.taken);
    }
}

TEST(CGImageJPEG, RefusesScansWithoutEnd)
{
    // one scan for each coefficient but its last bit, then one for each last bit
    std::vector<jpeg_scan_info> scans{{1, {0}, 0, 0, 0, 0}};
    for (const int bit : {1, 0})
        for (int k = 1; k < 64; ++k) scans.push_back({1, {0}, k, k, bit ? 0 : 1, bit});
    Shape shape{.space = JCS_GRAYSCALE, .components = 1, .stored = JCS_GRAYSCALE};
    for (const std::size_t count : {std::size_t{100}, std::size_t{101}, scans.size()}) {
        shape.scans.assign(scans.begin(), scans.begin() + static_cast<std::ptrdiff_t>(count));
        EXPECT_EQ(imageOf(jpegOf(shape, {10}, {200})) != nullptr, count <= 100) << count;
    }
}
