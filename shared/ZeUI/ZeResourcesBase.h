#pragma once

/// What the resource cache and the resource loader are on every platform, and the codes that loaders answer.
///
/// The cache is a flat list of named items, oldest first, searched from its start at every look-up; names are
/// terminated wide text of at most 63 elements. An item counts its references: 1 when it is added, one more at each
/// look-up that finds it, one less at each unload; at 0 it ends. An owned item's data ends with it, in the form that
/// its type says; data that isn't owned stays the caller's. What a look-up answers stays valid until the item ends.
///
/// For the thread of the user interface.
///
/// Failure: a name of 64 or more elements is a fatal assertion; a name that isn't there is null, or nothing happens.

#include "ZeGuiDefs.h"

#include <cstdint>
#include <vector>

enum ZeResult : std::uint32_t {
    kZeSuccess = 0,
    kZeOutOfMemory = 14,
    kZeInvalidParameter = 87, ///< also: no bundle, since Init failed or wasn't called
    kZeBundleNotFound = 126,
    kZeGlyphNotMade = 1359,
    kZeImageNotFound = 4323,
};

/// What an item's data is, and so how an owned item's data is freed. Every value not named here is raw bytes.
enum tResCacheType : std::uint32_t {
    eResCacheAny = 0,    ///< raw bytes; in a look-up it matches every type
    eResCacheData = 1,   ///< raw bytes, freed as an array of char
    eResCacheString = 2, ///< terminated wide text, freed as an array of wchar_t
    eResCacheBitmap = 3, ///< a ZeBitmap
    eResCacheObject = 4, ///< never freed
    // Bits 16 to 19 are the kind of a glyph, the low 16 bits the index of its cell. Two more kinds, 0xA0000 and
    // 0xE0000, are freed as a ZeBitmap but never made.
    eResCacheGlyph = 0x80000,
    eResCacheGlyphHilite = 0xC0000,
};
constexpr std::uint32_t kResCacheGlyphKind = 0xF0000;

struct _ResourceItem {
    int size; ///< as whoever added it says: bytes of data and strings, terminator included; -1 for loaded images
    void* data;
    tResCacheType type;
    bool owned;
    std::uint32_t refCount;
    wchar_t name[64];
};

class ZeResCacheBase {
public:
    ZeResCacheBase(const ZeResCacheBase&) = delete;
    ZeResCacheBase& operator=(const ZeResCacheBase&) = delete;

    /// Ends every item, whatever its count.
    virtual void Reset();

    /// Counts the oldest item of that name one down. Only owned strings and data: any other item stays, and hides the
    /// younger ones of its name.
    virtual void UnloadResource(const wchar_t* name);

    /// Adds an item at the end, behind older ones of the same name, which look-ups keep finding first.
    virtual void AddItem(const wchar_t* name, int size, void* data, bool owned, tResCacheType type);

    /// Adds an owned item with a copy of `size` bytes of `src`. Bitmaps and objects aren't copied, nor is a size of 0
    /// (which isn't owned then, either) or below: their data is null. @return the copy
    virtual void* AllocAddItem(const wchar_t* name, int size, const void* src, tResCacheType type);

    /// The data of the oldest item of that name, and of that type unless it is `eResCacheAny`; counts the item one up.
    /// @param outSize  may be null; the item's size, 0 where nothing is found
    virtual void* GetResourceFromCache(const wchar_t* name, tResCacheType type, int* outSize);

    /// The oldest item with that data, its count left alone.
    virtual _ResourceItem* GetResourceFromCache(const void* data, tResCacheType type);

    std::vector<_ResourceItem*> items; ///< a slot is null once its item was unloaded, until the next Reset

protected:
    ZeResCacheBase() = default;
    ~ZeResCacheBase() { ZeResCacheBase::Reset(); }

    static void EndItem(_ResourceItem*& slot); ///< the record; its data was freed before, or is somebody else's
};

/// A loader of images and texts, as far as it needs no platform. Images travel as `ZeBitmap*` through `void*`; they
/// belong to the loader's cache.
class ZeResourcesBase {
public:
    ZeResourcesBase(const ZeResourcesBase&) = delete;
    ZeResourcesBase& operator=(const ZeResourcesBase&) = delete;

    /// Loads an image into the cache. @param image  receives it; may be null
    virtual ZeResult LoadResImage(const wchar_t* name, void** image) = 0;
    /// Width and height in pixels; needs no bundle. `kZeInvalidParameter` where either is null.
    virtual ZeResult GetImageSize(void* image, tagSIZE* size);

protected:
    ZeResourcesBase() = default;
    ~ZeResourcesBase() = default;

    void* module = nullptr; ///< the bundle; null until Init found it
};
