#include "ZeResources.h"

#include "ZeResources.mac.h"

#include <new>

namespace {

/// Ampersands go; of two in a row the second stays.
void RemoveMnemonics(ZeString& text)
{
    for (std::size_t at = text.find(L'&'); at != ZeString::npos; at = text.find(L'&', at)) {
        text.erase(at, 1);
        if (at < text.size() && text[at] == L'&') ++at;
    }
}

} // namespace

ZeResCache::ZeResCache() : mCache(std::make_unique<ZeResCacheMac>()) {}
ZeResCache::~ZeResCache() = default;

void ZeResCache::Reset() { mCache->Reset(); }

void ZeResCache::AddItem(const wchar_t* name, int size, void* data, bool owned, tResCacheType type)
{
    mCache->AddItem(name, size, data, owned, type);
}

void* ZeResCache::AllocAddItem(const wchar_t* name, int size, const void* src, tResCacheType type)
{
    return mCache->AllocAddItem(name, size, src, type);
}

void* ZeResCache::GetResourceFromCache(const wchar_t* name, tResCacheType type, int* outSize)
{
    return mCache->GetResourceFromCache(name, type, outSize);
}

void ZeResCache::UnloadResource(const wchar_t* name) { mCache->UnloadResource(name); }

ZeResources::ZeResources() = default;
ZeResources::~ZeResources() = default;

ZeResult ZeResources::Init(const wchar_t* bundleName, ZeResCache* cache)
{
    impl.reset(new (std::nothrow) ZeResourcesMac);
    return impl ? impl->Init(bundleName, cache ? cache->mCache.get() : nullptr) : kZeOutOfMemory;
}

ZeResult ZeResources::Init(ZeResCache* cache) { return Init(nullptr, cache); }

ZeResult ZeResources::Reset()
{
    impl.reset();
    return kZeSuccess;
}

ZeResult ZeResources::GetResString(const wchar_t* id, ZeString& text, bool stripMnemonics)
{
    if (!impl) return kZeInvalidParameter;
    const ZeResult result = impl->GetResString(id, text);
    if (stripMnemonics) RemoveMnemonics(text);
    return result;
}

ZeResult ZeResources::GetResImage(const wchar_t* name, void** image)
{
    if (impl) return impl->GetResImage(name, image);
    if (image) *image = nullptr;
    return kZeInvalidParameter;
}

ZeResult ZeResources::GetImageSize(void* image, tagSIZE* size)
{
    return impl ? impl->GetImageSize(image, size) : kZeInvalidParameter;
}

ZeResult ZeResources::GetGlyph(void* image, int index, int count, void** glyph, void** hiliteGlyph)
{
    return impl ? impl->GetGlyph(image, index, count, glyph, hiliteGlyph) : kZeInvalidParameter;
}
