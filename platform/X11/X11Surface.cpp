#include "X11/X11Surface.h"

#include <cmath>
#include <cstring>

#include <sys/mman.h>
#include <unistd.h>

namespace {

constexpr std::uint32_t kBytesOfRequest = 64; // more than the head of any request

/// Exchanges red and blue; `rgba` as it lies in memory.
std::uint32_t PixelOf(std::uint32_t rgba)
{
    return 0xFF000000U | (rgba & 0xFFU) << 16 | (rgba & 0xFF00U) | (rgba >> 16 & 0xFFU);
}

void CopyRow(const std::uint8_t* rgba, std::uint32_t* to, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i) {
        std::uint32_t pixel = 0;
        std::memcpy(&pixel, rgba + 4 * i, sizeof pixel);
        to[i] = PixelOf(pixel);
    }
}

int ClampToInt(double value, int low, int high)
{
    if (!(value > low)) return low;
    return value < high ? static_cast<int>(value) : high;
}

} // namespace

X11Surface::X11Surface(X11Connection& connection, xcb_window_t window)
    : mConnection(connection), mWindow(window), mGraphics(xcb_generate_id(connection.get()))
{
    xcb_create_gc(mConnection.get(), mGraphics, mWindow, 0, nullptr);
}

X11Surface::~X11Surface()
{
    release();
    xcb_free_gc(mConnection.get(), mGraphics);
}

void X11Surface::present(CGContextRef bitmap, std::span<const CGRect> pixelRects)
{
    const int width = static_cast<int>(CGBitmapContextGetWidth(bitmap));
    const int height = static_cast<int>(CGBitmapContextGetHeight(bitmap));
    if (width <= 0 || height <= 0) return;
    std::vector<PixelRect> rects;
    if (width != mWidth || height != mHeight) {
        resize(width, height);
        rects.push_back({0, 0, width, height});
    } else {
        for (const CGRect& r : pixelRects)
            rects.push_back(clipped(ClampToInt(std::floor(CGRectGetMinX(r)), 0, mWidth),
                                    ClampToInt(std::floor(CGRectGetMinY(r)), 0, mHeight),
                                    ClampToInt(std::ceil(CGRectGetMaxX(r)), 0, mWidth),
                                    ClampToInt(std::ceil(CGRectGetMaxY(r)), 0, mHeight)));
        std::erase_if(rects, [](const PixelRect& r) { return r.isEmpty(); });
    }
    if (rects.empty()) return;
    waitUntilRead();
    const auto pixels = CGBitmapContextGetPixels(bitmap);
    for (const PixelRect& rect : rects) copy(pixels, rect);
    for (const PixelRect& rect : rects) send(rect, &rect == &rects.back());
    mConnection.flush();
}

bool X11Surface::showAgain(int x, int y, int width, int height)
{
    if (!mPixels) return false;
    const PixelRect rect = clipped(x, y, x + width, y + height);
    if (!rect.isEmpty()) send(rect, true);
    mConnection.flush();
    return true;
}

void X11Surface::completed(std::uint32_t sequence)
{
    if (static_cast<std::int32_t>(sequence - mLastRead) > 0) mLastRead = sequence;
}

void X11Surface::resize(int width, int height)
{
    release();
    mWidth = width;
    mHeight = height;
    const std::size_t count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    if (mConnection.hasSharedMemory() && shareMemory(count * sizeof *mPixels)) return;
    mOwnPixels.assign(count, 0);
    mPixels = mOwnPixels.data();
}

bool X11Surface::shareMemory(std::size_t bytes)
{
    const int descriptor = memfd_create("tonaro-window", MFD_CLOEXEC);
    if (descriptor < 0) return false;
    void* memory = MAP_FAILED;
    if (ftruncate(descriptor, static_cast<off_t>(bytes)) == 0)
        memory = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
    if (memory == MAP_FAILED) {
        close(descriptor);
        return false;
    }
    const xcb_shm_seg_t segment = xcb_generate_id(mConnection.get());
    // the request closes the descriptor
    if (mConnection.check(xcb_shm_attach_fd_checked(mConnection.get(), segment, descriptor, 1)) != 0) {
        munmap(memory, bytes);
        mConnection.forbidSharedMemory();
        return false;
    }
    mSegment = segment;
    mSharedBytes = bytes;
    mPixels = static_cast<std::uint32_t*>(memory);
    return true;
}

void X11Surface::release()
{
    if (mSegment) {
        xcb_shm_detach(mConnection.get(), mSegment);
        munmap(mPixels, mSharedBytes);
    }
    mSegment = 0;
    mOwnPixels = {};
    mPixels = nullptr;
    mLastSent = mLastRead = 0;
}

void X11Surface::waitUntilRead()
{
    if (!mSegment || mLastSent == mLastRead) return;
    mConnection.synchronize();
    mLastRead = mLastSent;
}

X11Surface::PixelRect X11Surface::clipped(int x, int y, int right, int bottom) const
{
    x = std::max(x, 0);
    y = std::max(y, 0);
    return {x, y, std::min(right, mWidth) - x, std::min(bottom, mHeight) - y};
}

void X11Surface::copy(std::span<const std::uint8_t> rgba, const PixelRect& rect)
{
    for (int y = rect.y; y < rect.y + rect.height; ++y) {
        const std::size_t start =
            static_cast<std::size_t>(y) * static_cast<std::size_t>(mWidth) + static_cast<std::size_t>(rect.x);
        CopyRow(rgba.data() + start * 4, mPixels + start, static_cast<std::size_t>(rect.width));
    }
}

void X11Surface::send(const PixelRect& rect, bool isLast)
{
    if (!mSegment) {
        sendStrips(rect);
        return;
    }
    mLastSent = xcb_shm_put_image(mConnection.get(), mWindow, mGraphics, static_cast<std::uint16_t>(mWidth),
                                  static_cast<std::uint16_t>(mHeight), static_cast<std::uint16_t>(rect.x),
                                  static_cast<std::uint16_t>(rect.y), static_cast<std::uint16_t>(rect.width),
                                  static_cast<std::uint16_t>(rect.height), static_cast<std::int16_t>(rect.x),
                                  static_cast<std::int16_t>(rect.y), mConnection.depth(), XCB_IMAGE_FORMAT_Z_PIXMAP,
                                  isLast, mSegment, 0)
                    .sequence;
}

void X11Surface::sendStrips(const PixelRect& rect)
{
    const std::size_t width = static_cast<std::size_t>(rect.width);
    const std::size_t limit = std::size_t{xcb_get_maximum_request_length(mConnection.get())} * 4;
    if (limit <= kBytesOfRequest) return; // the connection is lost
    const int rowsAtOnce = static_cast<int>(std::clamp<std::size_t>((limit - kBytesOfRequest) / (width * 4), 1, 256));
    std::vector<std::uint32_t> strip;
    for (int y = rect.y; y < rect.y + rect.height; y += rowsAtOnce) {
        const int rows = std::min(rowsAtOnce, rect.y + rect.height - y);
        strip.clear();
        for (int row = y; row < y + rows; ++row) {
            const std::uint32_t* from = mPixels + std::ptrdiff_t{row} * mWidth + rect.x;
            strip.insert(strip.end(), from, from + width);
        }
        xcb_put_image(mConnection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, mWindow, mGraphics,
                      static_cast<std::uint16_t>(rect.width), static_cast<std::uint16_t>(rows),
                      static_cast<std::int16_t>(rect.x), static_cast<std::int16_t>(y), 0, mConnection.depth(),
                      static_cast<std::uint32_t>(strip.size() * 4),
                      reinterpret_cast<const std::uint8_t*>(strip.data()));
    }
}
