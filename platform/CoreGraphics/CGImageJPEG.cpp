// libjpeg reports an error by a jump. `decode` is the only function that the jump leaves, and nothing in it or in what
// it calls has a destructor.

#include "CoreGraphics/CGCairo.h"

#include <csetjmp>
#include <cstdio>

#include <jerror.h>
#include <jpeglib.h>

namespace {

constexpr int kMaxScans = 100;
constexpr std::uint64_t kMaxPixelsPerByte = 1024; // a block of 64 pixels takes more than half a bit
constexpr long kMaxMemory = 1L << 29;

/// What a decoding owns, freed by whoever called `decode`.
struct Decoding {
    jpeg_decompress_struct jpeg{};
    jpeg_error_mgr errors{};
    jpeg_progress_mgr progress{};
    std::jmp_buf onError{};
    std::uint8_t* pixels = nullptr;
};

[[noreturn]] void fail(j_common_ptr jpeg) { std::longjmp(static_cast<Decoding*>(jpeg->client_data)->onError, 1); }

/// Takes warnings that leave the pixels alone; a picture with damaged ones is none.
void take(j_common_ptr jpeg, int level)
{
    if (level >= 0) return; // a trace
    switch (jpeg->err->msg_code) {
    case JWRN_ADOBE_XFORM:
    case JWRN_BOGUS_ICC:
    case JWRN_EXTRANEOUS_DATA:
    case JWRN_JFIF_MAJOR:
        return;
    default:
        fail(jpeg);
    }
}

/// A small file may hold any number of scans, each of which walks through the whole picture.
void watch(j_common_ptr jpeg)
{
    if (reinterpret_cast<j_decompress_ptr>(jpeg)->input_scan_number > kMaxScans) fail(jpeg);
}

void prepare(Decoding& decoding)
{
    decoding.jpeg.err = jpeg_std_error(&decoding.errors);
    decoding.jpeg.client_data = &decoding;
    decoding.errors.error_exit = fail;
    decoding.errors.emit_message = take;
    decoding.errors.output_message = [](j_common_ptr) {};
    decoding.progress.progress_monitor = watch;
}

/// Inks to light, in place. The usual files hold them inverted, 255 for no ink.
void convertInks(std::uint8_t* pixels, std::size_t count, bool inverted)
{
    const std::uint8_t flip = inverted ? 0 : 255;
    for (std::uint8_t* pixel = pixels; pixel != pixels + 4 * count; pixel += 4) {
        const unsigned black = pixel[3] ^ flip;
        for (int k = 0; k < 3; ++k) pixel[k] = static_cast<std::uint8_t>(((pixel[k] ^ flip) * black + 127) / 255);
        pixel[3] = 255;
    }
}

void readPixels(Decoding& decoding)
{
    jpeg_decompress_struct& jpeg = decoding.jpeg;
    const bool inks = jpeg.jpeg_color_space == JCS_CMYK || jpeg.jpeg_color_space == JCS_YCCK;
    jpeg.out_color_space = inks ? JCS_CMYK : JCS_EXT_RGBA;
    jpeg_start_decompress(&jpeg);
    const std::size_t bytesPerRow = 4 * std::size_t{jpeg.output_width};
    decoding.pixels = CGBlockOfBytes(bytesPerRow * jpeg.output_height).release();
    if (!decoding.pixels) fail(reinterpret_cast<j_common_ptr>(&jpeg));
    while (jpeg.output_scanline < jpeg.output_height) {
        JSAMPROW row = decoding.pixels + bytesPerRow * jpeg.output_scanline;
        jpeg_read_scanlines(&jpeg, &row, 1);
    }
    jpeg_finish_decompress(&jpeg);
    if (inks) convertInks(decoding.pixels, bytesPerRow / 4 * jpeg.output_height, jpeg.saw_Adobe_marker);
}

/// @return success; the caller frees what `decoding` holds either way
bool decode(Decoding& decoding, std::span<const std::uint8_t> bytes)
{
    if (setjmp(decoding.onError)) return false;
    jpeg_create_decompress(&decoding.jpeg);
    decoding.jpeg.progress = &decoding.progress;
    decoding.jpeg.mem->max_memory_to_use = kMaxMemory;
    jpeg_mem_src(&decoding.jpeg, bytes.data(), bytes.size());
    jpeg_read_header(&decoding.jpeg, TRUE);
    const std::uint64_t width = decoding.jpeg.image_width, height = decoding.jpeg.image_height;
    if (!CGIsImageSize(width, height) || width * height > kCGMaxFilePixels) return false;
    if (width * height > bytes.size() * kMaxPixelsPerByte) return false;
    readPixels(decoding);
    return true;
}

} // namespace

RetainPtr<CGImage> CGImageCreateWithJPEGDataProvider(CGDataProviderRef provider)
{
    if (!provider || provider->bytes().empty()) return nullptr;
    Decoding decoding;
    prepare(decoding);
    const bool decoded = decode(decoding, provider->bytes());
    const std::size_t width = decoding.jpeg.output_width, height = decoding.jpeg.output_height;
    CGBlock pixels(decoding.pixels);
    jpeg_destroy_decompress(&decoding.jpeg);
    if (!decoded) return nullptr;
    return CGImageCreateWithBlock(width, height, std::move(pixels), true);
}
