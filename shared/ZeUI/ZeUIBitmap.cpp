#include "ZeUIBitmap.h"

#include "ZeTruncate.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace {

constexpr std::uintptr_t kAlignment = 16;

void* AlignedUp(void* block)
{
    const std::uintptr_t past = reinterpret_cast<std::uintptr_t>(block) % kAlignment;
    return static_cast<char*>(block) + (past == 0 ? 0 : kAlignment - past);
}

/// Pixels for a rounded extent; 0 for one that rounds to nothing or less.
std::uint64_t SideOf(double extent)
{
    return static_cast<std::uint64_t>(std::max(0LL, ZeTruncate(std::round(extent))));
}

/// Bytes of so many pixels; 0 where they don't fit into 32 bits.
unsigned int BufferSize(std::uint64_t width, std::uint64_t height)
{
    constexpr std::uint64_t kMost = std::numeric_limits<unsigned int>::max() / 4;
    if (height == 0 || width > kMost / height) return 0;
    return static_cast<unsigned int>(4 * width * height);
}

} // namespace

/// A zeroed buffer and a context that draws into it. Without `context` there is none.
class ZeBitmap::Canvas {
public:
    Canvas(std::uint64_t width, std::uint64_t height) : size(BufferSize(width, height))
    {
        if (size == 0) return;
        pixels = malloc_aligned(size, &raw);
        context = CGBitmapContextCreate(pixels, width, height);
    }
    ~Canvas() { std::free(raw); }
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    void draw(CGImageRef picture)
    {
        CGContextDrawImage(context,
                           CGRectMake(0, 0, static_cast<CGFloat>(CGBitmapContextGetWidth(context)),
                                      static_cast<CGFloat>(CGBitmapContextGetHeight(context))),
                           picture);
    }

    unsigned int size;
    void* raw = nullptr;
    void* pixels = nullptr;
    RetainPtr<CGContext> context;
};

ZeBitmap::ZeBitmap(CGImage* wrapped, bool owns) : image(wrapped), ownsImage(owns), handle(wrapped) {}

ZeBitmap::ZeBitmap(CFURLRef url)
{
    RetainPtr<CGImage> decoded;
    {
        const auto provider = CGDataProviderCreateWithURL(url);
        decoded = CGImageCreateWithPNGDataProvider(provider);
        if (!decoded) decoded = CGImageCreateWithJPEGDataProvider(provider);
    }
    image = PreRenderImage(decoded).leak();
    ownsImage = image != nullptr;
    // Choice: the handle is the image, as with the other constructors. Test: ZeBitmap.LoadsPicturesPremultiplied
    handle = image;
}

ZeBitmap::ZeBitmap(CGContextRef source, ZeRect rect, bool copyContents) : ownsImage(true)
{
    Canvas canvas(SideOf(rect.width), SideOf(rect.height));
    if (!canvas.context) return;
    if (copyContents) canvas.draw(CGBitmapContextCreateImage(source).get());
    image = imageOf(canvas).leak();
    handle = image;
}

ZeBitmap::~ZeBitmap()
{
    if (ownsImage) CGImageRelease(image);
}

std::uint32_t ZeBitmap::GetHandle(ZeGuiDefs::Color, void** out) const
{
    if (out) *out = handle;
    return 0;
}

void ZeBitmap::ZeReleaseImage(CGImage** released)
{
    if (!released || !*released) return;
    CGImage* const which = *released;
    *released = nullptr;
    if (bufferImage == which) buffer = bufferImage = nullptr;
    if (handle == which) handle = nullptr;
    if (image == which) image = nullptr;
    CGImageRelease(which);
}

RetainPtr<CGImage> ZeBitmap::PreRenderImage(CGImageRef source)
{
    Canvas canvas(CGImageGetWidth(source), CGImageGetHeight(source));
    if (!canvas.context) return nullptr;
    canvas.draw(source);
    return imageOf(canvas);
}

/// The image takes the buffer with it: it, and whatever is cut out of it, keep the provider, which frees the block.
RetainPtr<CGImage> ZeBitmap::imageOf(Canvas& canvas)
{
    const std::size_t width = CGBitmapContextGetWidth(canvas.context),
                      height = CGBitmapContextGetHeight(canvas.context);
    canvas.context = nullptr; // what is drawn is in the pixels from here on
    buffer = std::exchange(canvas.raw, nullptr);
    const auto provider = CGDataProviderCreateWithData(buffer, canvas.pixels, canvas.size, ReleaseImageBuffer);
    auto made = CGImageCreate(width, height, 4 * width, provider);
    bufferImage = made;
    if (!made) buffer = nullptr;
    return made;
}

ZeBitmap* ZeBitmap::ZeCreateSubBitmap(int x, int y, int w, int h) const
{
    const auto start = [](long long from, long long whole) { return from > whole ? 0 : from; };
    const auto extent = [](long long from, long long wanted, long long whole) {
        return from + wanted > whole ? whole - from : wanted;
    };
    const auto wholeWidth = static_cast<long long>(GetWidth()), wholeHeight = static_cast<long long>(GetHeight());
    const long long left = start(x, wholeWidth), top = start(y, wholeHeight);
    const ZeRect part(left, top, extent(left, w, wholeWidth), extent(top, h, wholeHeight));
    auto cut = CGImageCreateWithImageInRect(image, part.GetCGRect());
    return cut ? std::make_unique<ZeBitmap>(cut.leak(), true).release() : nullptr;
}

void ZeBitmap::ZeReleaseSubBitmap(ZeBitmap** bitmap)
{
    if (bitmap) std::unique_ptr<ZeBitmap>(std::exchange(*bitmap, nullptr)).reset();
}

void* ZeBitmap::malloc_aligned(unsigned int size, void** raw)
{
    *raw = nullptr;
    void* block = std::calloc(std::max(size, 1u), 1); // zero already, and cheaper where the memory is new
    if (!block) return nullptr;
    if (AlignedUp(block) != block) {
        void* grown = std::realloc(block, size + kAlignment - 1);
        if (!grown) std::free(block);
        if (!grown) return nullptr;
        block = grown;
        std::memset(AlignedUp(block), 0, size);
    }
    *raw = block;
    return AlignedUp(block);
}

void ZeBitmap::ReleaseImageBuffer(void* info, const void*, std::size_t) { std::free(info); }
