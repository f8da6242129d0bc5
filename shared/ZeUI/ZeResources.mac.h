#pragma once

/// The cache that knows bitmaps, the loader that knows bundles, and the loading of a single image file.
///
/// Programs use the handles of `ZeResources.h`; this is what stands behind them. For the thread of the user interface.

#include "ZeResourcesBase.h"

#include "CoreFoundation/CFBundle.h"
#include "CoreGraphics/CGImage.h"
#include "Foundation/WeakPtr.h"

#include <memory>

#include "ZeString.h"

class ZeBitmap;

/// The bundle of a loader that is given no name.
inline constexpr const wchar_t* kZeHostBundleIdentifier = L"org.tonaro.host";

class ZeResCacheMac final : public ZeResCacheBase {
public:
    ZeResCacheMac() = default;
    ~ZeResCacheMac() { Reset(); }

    void Reset() override;

    /// Counts down every bitmap of that name up to the first item of another kind; where that is a glyph, it is counted
    /// down as well. Then strings and data as in the base, which finds nothing while an older item of the name is left.
    void UnloadResource(const wchar_t* name) override;

    /// Adds a copy of `text` with its terminator: "ab" has the size 12. The second argument plays no part. Where there
    /// is no memory nothing is added.
    void AllocAddStringItem(const wchar_t* name, int, const ZeString& text);

    /// Adds a bitmap over `image` and takes over the caller's reference to it. `size` is only noted.
    void AllocAddBitmapItem(const wchar_t* name, int size, CGImage*& image);

    /// By the kind of `type`: a highlighted glyph becomes a bitmap over `image`, whose reference it takes over, and is
    /// answered; no kind at all adds a copy of the first `size` bytes of the variable `image`, and answers that; any
    /// other kind adds nothing and answers null.
    ZeBitmap* AllocAddGlyphItem(const wchar_t* name, int size, CGImage*& image, tResCacheType type);
};

/// Texts and images of one bundle, kept in a cache.
///
/// Failure: before Init has found a bundle, and once that bundle is gone, whatever needs it answers
/// `kZeInvalidParameter`.
class ZeResourcesMac final : public ZeResourcesBase {
public:
    ZeResourcesMac() = default;
    ~ZeResourcesMac() = default;

    /// Looks for the bundle; null or an empty name stands for the host's. The cache stays the caller's and must outlive
    /// the loader; null makes a private one. It is set up even where there is no bundle.
    /// @return 0, kZeOutOfMemory or kZeBundleNotFound
    virtual ZeResult Init(const wchar_t* bundleName, ZeResCacheMac* cache);
    virtual ZeResult Init(ZeResCacheMac* cache);

    /// Empties the cache, a shared one too; the bundle stays.
    virtual ZeResult Reset();

    /// The text of that id, from the cache or else loaded. Without a bundle `text` is left alone.
    virtual ZeResult GetResString(const wchar_t* id, ZeString& text);
    /// The image of that file name, from the cache or else loaded; null on failure. `image` may be null.
    virtual ZeResult GetResImage(const wchar_t* name, void** image);

    /// Cell `index`, from 0 at the left, of a strip of `count` cells of the same width; a count below 1 stands for
    /// square cells. The width must be a multiple of the cell's (100 in 3 cells of 33 is none). Needs a cache, no
    /// bundle.
    ///
    /// @param glyph        receives a CGImageRef, the cache's
    /// @param hiliteGlyph  may be null; receives one of the cell scaled into a blue frame on white
    /// @return 0, kZeInvalidParameter, or kZeGlyphNotMade (where only the second failed, the first stays)
    virtual ZeResult GetGlyph(void* image, int index, int count, void** glyph, void** hiliteGlyph);

    /// Loads a text into the cache: from the table "ZeCustomPlist", where that has none (or the id itself) from
    /// "ZeShared", and else it is the id. On failure `text` is empty.
    virtual ZeResult LoadResString(const wchar_t* id, ZeString& text);
    /// The name has its extension: "tick.png". A file that can't be decoded is an empty bitmap and a success.
    /// @return 0, kZeInvalidParameter or kZeImageNotFound
    ZeResult LoadResImage(const wchar_t* name, void** image) override;

private:
    void* PlainGlyph(const ZeString& name, const ZeBitmap& strip, int index, int cellWidth);
    void* HiliteGlyph(const ZeString& name, CGImageRef cell, int index);

    CFBundleRef Bundle() const { return module ? mBundle.get() : nullptr; }

    WeakPtr<NSBundle> mBundle; // another bundle of its identifier may take its place and end it
    ZeResCacheMac* mCache = nullptr;
    std::unique_ptr<ZeResCacheMac> mOwnCache; ///< null where the cache is the caller's
};

struct ZeResourceBitmap {
    /// A bitmap of an image file, not cached; null where there is no such file or no name. See CFBundleCopyResourceURL.
    static std::unique_ptr<ZeBitmap> LoadBitmap(CFBundleRef bundle, CFStringRef name, CFStringRef type,
                                                CFStringRef subDir);
};
