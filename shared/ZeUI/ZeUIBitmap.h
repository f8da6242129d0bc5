#pragma once

/// One picture and, where the bitmap made the pixels itself, the buffer that they are in.
///
/// Pixels that a bitmap makes are premultiplied R, G, B, A bytes, rows of exactly 4 * width, the first on a 16-byte
/// boundary, at most 32767 pixels a side. A buffer lives as long as any image that draws from it: bitmaps and what was
/// cut out of them may go in any order.
///
/// Failure: what can't be read, made or held is an empty bitmap, or null; nothing is reported.

#include "CoreFoundation/CFURL.h"
#include "CoreGraphics/CGContext.h"
#include "ZeGuiDefs.h"
#include "ZeUIRect.h"

class ZeBitmap {
public:
    CGImage* image = nullptr;
    bool ownsImage = false;      ///< the destructor releases `image`
    void* handle = nullptr;      ///< what GetHandle answers: the image
    void* buffer = nullptr;      ///< the allocator's block with the pixels, null for those of others; `image` keeps it
    void* bufferImage = nullptr; ///< the image that draws from `buffer`

    /// Takes over the caller's reference to `image` where `owns`, else only borrows it.
    ZeBitmap(CGImage* image, bool owns);
    /// Reads a PNG or JPEG file, converted once to the pixels above.
    explicit ZeBitmap(CFURLRef url);
    /// A bitmap of `rect`'s size, rounded (10.5 gives 11), transparent or, where `copyContents`, with all of the
    /// context's pixels scaled into it. Empty for sizes that round to 0 or less. The rectangle's place doesn't matter.
    ZeBitmap(CGContextRef context, ZeRect rect, bool copyContents);
    ~ZeBitmap();
    ZeBitmap(const ZeBitmap&) = delete;
    ZeBitmap& operator=(const ZeBitmap&) = delete;

    CGImageRef GetImage() const { return image; }
    std::size_t GetWidth() const { return CGImageGetWidth(image); } ///< pixels; 0 for an empty bitmap
    std::size_t GetHeight() const { return CGImageGetHeight(image); }
    void* GetHandle() const { return handle; }
    /// Stores the handle, unless `out` is null. @return 0; the colour plays no role
    std::uint32_t GetHandle(ZeGuiDefs::Color color, void** out) const;

    /// Releases `*image` and clears the pointer; a bitmap whose own image that is becomes empty. Null is allowed.
    void ZeReleaseImage(CGImage** image);
    /// A copy of `image` in the pixels above, recorded in `buffer` and `bufferImage`; null where it can't be made.
    RetainPtr<CGImage> PreRenderImage(CGImageRef image);
    /// The part of this bitmap at (x, y), cut where it passes the right and bottom edges. A start beyond them counts as
    /// 0. It shares pixels with this bitmap and outlives it.
    /// @return the caller's, to be deleted or given to ZeReleaseSubBitmap; null where nothing of the image is covered
    ZeBitmap* ZeCreateSubBitmap(int x, int y, int w, int h) const;
    /// Deletes `*bitmap` and clears the pointer. Null is allowed.
    static void ZeReleaseSubBitmap(ZeBitmap** bitmap);

    /// `size` zero bytes from a 16-byte boundary on. `raw` receives the allocator's block, which `std::free` takes;
    /// null for both where there is no memory.
    static void* malloc_aligned(unsigned int size, void** raw);
    /// Frees `info`: what a data provider over a block of `malloc_aligned` calls.
    static void ReleaseImageBuffer(void* info, const void* data, std::size_t size);

private:
    class Canvas;
    RetainPtr<CGImage> imageOf(Canvas& canvas);
};
