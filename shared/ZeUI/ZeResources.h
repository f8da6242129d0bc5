#pragma once

/// Texts and images of a bundle for programs: fetched once, then answered from a cache.
///
///     ZeResources resources;
///     ZeString title;
///     if (resources.Init(nullptr) == kZeSuccess)             // the host's bundle, a cache of its own
///         resources.GetResString(L"IDS_OPEN", title, true);  // "&Open" is "Open"
///
/// For the thread of the user interface.
///
/// Failure: a result code; 0 is success. A text that no table has is its id. An id or a name of 64 or more elements is
/// a fatal assertion.

#include "ZeResourcesBase.h"

#include <memory>

#include "ZeString.h"

class ZeResCacheMac;
class ZeResourcesMac;

/// A cache that several loaders may share; it must outlive them. See ZeResCacheBase for what the calls do.
class ZeResCache {
public:
    ZeResCache();
    ~ZeResCache();
    ZeResCache(const ZeResCache&) = delete;
    ZeResCache& operator=(const ZeResCache&) = delete;

    void Reset();
    void AddItem(const wchar_t* name, int size, void* data, bool owned, tResCacheType type);
    void* AllocAddItem(const wchar_t* name, int size, const void* src, tResCacheType type);
    void* GetResourceFromCache(const wchar_t* name, tResCacheType type, int* outSize);
    void UnloadResource(const wchar_t* name);

private:
    friend class ZeResources;
    std::unique_ptr<ZeResCacheMac> mCache;
};

/// A loader. What it handed out as `void*` is a `ZeBitmap*` of its cache, gone when that is reset or destroyed.
class ZeResources final {
public:
    ZeResources();
    ~ZeResources();
    ZeResources(const ZeResources&) = delete;
    ZeResources& operator=(const ZeResources&) = delete;

    /// Finds a bundle by its identifier; null or empty is the host's. Null for `cache` makes one of its own. A second
    /// Init starts anew.
    /// @return 0, kZeOutOfMemory, or kZeBundleNotFound; then texts and images answer kZeInvalidParameter
    virtual ZeResult Init(const wchar_t* bundleName, ZeResCache* cache);
    virtual ZeResult Init(ZeResCache* cache);
    /// Back to before Init. @return 0
    virtual ZeResult Reset();

    /// The text of that id. @param stripMnemonics  takes the ampersands out that mark a key, a double one leaves one:
    /// "Save && &Quit" becomes "Save & Quit"
    virtual ZeResult GetResString(const wchar_t* id, ZeString& text, bool stripMnemonics);
    /// The image of that file name ("tick.png"); null on failure.
    /// @return 0, kZeInvalidParameter or kZeImageNotFound
    virtual ZeResult GetResImage(const wchar_t* name, void** image);
    /// Width and height of such an image, in pixels.
    virtual ZeResult GetImageSize(void* image, tagSIZE* size);
    /// One cell of a strip. See ZeResourcesMac::GetGlyph.
    virtual ZeResult GetGlyph(void* image, int index, int count, void** glyph, void** hiliteGlyph);

private:
    std::unique_ptr<ZeResourcesMac> impl; ///< null before Init and after Reset
};
