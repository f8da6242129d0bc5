#include "ZeResources.mac.h"

#include "ZeUIBitmap.h"

#include <algorithm>
#include <new>

namespace {

/// 0x80000, 0xA0000, 0xC0000 and 0xE0000.
bool IsGlyph(tResCacheType type)
{
    const std::uint32_t kind = type & kResCacheGlyphKind;
    return kind >= eResCacheGlyph && kind % 0x20000 == 0;
}

void AddBitmap(ZeResCacheMac& cache, const wchar_t* name, int size, std::unique_ptr<ZeBitmap> bitmap,
               tResCacheType type)
{
    cache.AddItem(name, size, bitmap.get(), true, type);
    static_cast<void>(bitmap.release());
}

/// Null for text that isn't Unicode.
RetainPtr<const NSString> TextOf(const wchar_t* text)
{
    if (!text) return nullptr;
    const auto count = static_cast<CFIndex>(std::wcslen(text) * sizeof(wchar_t));
    return CFStringCreateWithBytes(reinterpret_cast<const std::uint8_t*>(text), count, kCFStringEncodingUTF32LE, false);
}

} // namespace

void ZeResCacheMac::Reset()
{
    for (_ResourceItem*& item : items) {
        if (!item || !item->owned || (item->type != eResCacheBitmap && !IsGlyph(item->type))) continue;
        delete static_cast<ZeBitmap*>(item->data);
        EndItem(item);
    }
    ZeResCacheBase::Reset();
}

void ZeResCacheMac::UnloadResource(const wchar_t* name)
{
    if (!name) return;
    const ZeString wanted = name; // it may be the name inside an item that ends here
    for (_ResourceItem*& item : items) {
        if (!item || wanted != item->name) continue;
        const bool isGlyph = IsGlyph(item->type);
        if (!item->owned || !item->data || (item->type != eResCacheBitmap && !isGlyph)) break;
        if (--item->refCount == 0) {
            delete static_cast<ZeBitmap*>(item->data);
            EndItem(item);
        }
        if (isGlyph) break;
    }
    ZeResCacheBase::UnloadResource(wanted.c_str());
}

void ZeResCacheMac::AllocAddStringItem(const wchar_t* name, int, const ZeString& text)
{
    const std::size_t count = text.size() + 1;
    std::unique_ptr<wchar_t[]> copy(new (std::nothrow) wchar_t[count]);
    if (!copy) return;
    text.strcpy_s(copy.get(), count);
    AddItem(name, static_cast<int>(count * sizeof(wchar_t)), copy.get(), true, eResCacheString);
    static_cast<void>(copy.release());
}

void ZeResCacheMac::AllocAddBitmapItem(const wchar_t* name, int size, CGImage*& image)
{
    AddBitmap(*this, name, size, std::make_unique<ZeBitmap>(image, true), eResCacheBitmap);
}

ZeBitmap* ZeResCacheMac::AllocAddGlyphItem(const wchar_t* name, int size, CGImage*& image, tResCacheType type)
{
    const std::uint32_t kind = type & kResCacheGlyphKind;
    if (kind == 0) { // no more than there is of the variable
        const int known = std::min(size, static_cast<int>(sizeof image));
        return static_cast<ZeBitmap*>(AllocAddItem(name, known, &image, type));
    }
    if (kind != eResCacheGlyphHilite) return nullptr;
    auto bitmap = std::make_unique<ZeBitmap>(image, true);
    ZeBitmap* const added = bitmap.get();
    AddBitmap(*this, name, sizeof(ZeBitmap), std::move(bitmap), type);
    return added;
}

ZeResult ZeResourcesMac::Init(const wchar_t* bundleName, ZeResCacheMac* cache)
{
    mOwnCache.reset(cache ? nullptr : new (std::nothrow) ZeResCacheMac);
    mCache = cache ? cache : mOwnCache.get();
    mBundle = nullptr;
    module = nullptr;
    if (!mCache) return kZeOutOfMemory;
    const auto identifier = TextOf(bundleName && *bundleName ? bundleName : kZeHostBundleIdentifier);
    mBundle = CFBundleGetBundleWithIdentifier(identifier);
    module = mBundle.get();
    return module ? kZeSuccess : kZeBundleNotFound;
}

ZeResult ZeResourcesMac::Init(ZeResCacheMac* cache) { return Init(nullptr, cache); }

ZeResult ZeResourcesMac::Reset()
{
    if (mCache) mCache->Reset();
    return kZeSuccess;
}

ZeResult ZeResourcesMac::GetResString(const wchar_t* id, ZeString& text)
{
    if (!Bundle()) return kZeInvalidParameter;
    const void* const cached = mCache->GetResourceFromCache(id, eResCacheString, nullptr);
    if (!cached) return LoadResString(id, text);
    zeassign(text, static_cast<const wchar_t*>(cached));
    return kZeSuccess;
}

ZeResult ZeResourcesMac::LoadResString(const wchar_t* id, ZeString& text)
{
    const auto key = Bundle() ? TextOf(id) : nullptr;
    ZeString found; // not `text` itself, which the id may be a part of
    if (key) {
        auto value = CFBundleCopyLocalizedString(Bundle(), key, nullptr, "ZeCustomPlist"_ns.get());
        // Its own key is how a table says that it has no such text.
        if (value && CFStringCompare(value, key) == kCFCompareEqualTo)
            value = CFBundleCopyLocalizedString(Bundle(), key, nullptr, "ZeShared"_ns.get());
        zeassign(found, value.get());
        mCache->AllocAddStringItem(id, 0, found);
    }
    text = std::move(found);
    return key ? kZeSuccess : kZeInvalidParameter;
}

ZeResult ZeResourcesMac::GetResImage(const wchar_t* name, void** image)
{
    void* found = nullptr;
    ZeResult result = kZeInvalidParameter;
    if (Bundle() && name) {
        found = mCache->GetResourceFromCache(name, eResCacheBitmap, nullptr);
        result = found ? kZeSuccess : LoadResImage(name, &found);
    }
    if (image) *image = found;
    return result;
}

ZeResult ZeResourcesMac::LoadResImage(const wchar_t* name, void** image)
{
    if (!Bundle() || !name) return kZeInvalidParameter;
    const auto url = CFBundleCopyResourceURL(Bundle(), TextOf(name).get(), nullptr, nullptr);
    if (!url) return kZeImageNotFound;
    auto bitmap = std::make_unique<ZeBitmap>(static_cast<CFURLRef>(url));
    if (image) *image = bitmap.get();
    AddBitmap(*mCache, name, -1, std::move(bitmap), eResCacheBitmap);
    return kZeSuccess;
}

std::unique_ptr<ZeBitmap> ZeResourceBitmap::LoadBitmap(CFBundleRef bundle, CFStringRef name, CFStringRef type,
                                                       CFStringRef subDir)
{
    const auto url = CFBundleCopyResourceURL(bundle, name, type, subDir);
    return url ? std::make_unique<ZeBitmap>(static_cast<CFURLRef>(url)) : nullptr;
}
