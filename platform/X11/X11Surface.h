#pragma once

/// The pixels that a window shows, kept in memory that the X server reads, or sent over the connection where it can't.

#include "CoreGraphics/CGContext.h"
#include "X11/X11Connection.h"

#include <vector>

class X11Surface {
public:
    X11Surface(X11Connection& connection, xcb_window_t window);
    ~X11Surface();
    X11Surface(const X11Surface&) = delete;
    X11Surface& operator=(const X11Surface&) = delete;

    /// Copies these rectangles (pixels) of `bitmap` and shows them. A bitmap of another size than before is taken
    /// whole.
    void present(CGContextRef bitmap, std::span<const CGRect> pixelRects);
    /// Shows again what was presented before. @return false when there is nothing
    bool showAgain(int x, int y, int width, int height);
    /// The server has read the request with that number.
    void completed(std::uint32_t sequence);
    xcb_shm_seg_t segment() const { return mSegment; } ///< 0 without shared memory

private:
    struct PixelRect {
        int x, y, width, height;
        bool isEmpty() const { return width <= 0 || height <= 0; }
    };

    void resize(int width, int height);
    bool shareMemory(std::size_t bytes);
    void release();
    void waitUntilRead();
    PixelRect clipped(int x, int y, int right, int bottom) const;
    void copy(std::span<const std::uint8_t> rgba, const PixelRect& rect);
    void send(const PixelRect& rect, bool isLast);
    void sendStrips(const PixelRect& rect);

    X11Connection& mConnection;
    xcb_window_t mWindow;
    xcb_gcontext_t mGraphics;
    xcb_shm_seg_t mSegment = 0;
    std::size_t mSharedBytes = 0;
    std::uint32_t* mPixels = nullptr; // 0xXXRRGGBB, rows of mWidth; in mSegment or in mOwnPixels
    std::vector<std::uint32_t> mOwnPixels;
    int mWidth = 0, mHeight = 0;
    std::uint32_t mLastSent = 0, mLastRead = 0; // numbers of requests
};
