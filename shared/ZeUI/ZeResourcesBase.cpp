#include "ZeResourcesBase.h"

#include "ZeSafeCRT.h"
#include "ZeUIBitmap.h"

#include <cstring>
#include <memory>

namespace {

bool HasName(const _ResourceItem* item, const wchar_t* name) { return item && name && !std::wcscmp(item->name, name); }

bool HasType(const _ResourceItem& item, tResCacheType type) { return type == eResCacheAny || item.type == type; }

void FreeBuffer(const _ResourceItem& item)
{
    if (item.type == eResCacheString)
        delete[] static_cast<wchar_t*>(item.data);
    else
        delete[] static_cast<char*>(item.data);
}

} // namespace

void ZeResCacheBase::EndItem(_ResourceItem*& slot)
{
    delete slot;
    slot = nullptr;
}

void ZeResCacheBase::Reset()
{
    for (_ResourceItem*& item : items) {
        if (!item) continue;
        if (item->owned && item->type != eResCacheBitmap && item->type != eResCacheObject) FreeBuffer(*item);
        EndItem(item);
    }
    items.clear();
}

void ZeResCacheBase::UnloadResource(const wchar_t* name)
{
    for (_ResourceItem*& item : items) {
        if (!HasName(item, name)) continue;
        const bool isBuffer = item->type == eResCacheData || item->type == eResCacheString;
        if (!item->owned || !item->data || !isBuffer || --item->refCount > 0) return;
        FreeBuffer(*item);
        EndItem(item);
        return;
    }
}

void ZeResCacheBase::AddItem(const wchar_t* name, int size, void* data, bool owned, tResCacheType type)
{
    auto item = std::make_unique<_ResourceItem>(_ResourceItem{size, data, type, owned, 1, {}});
    wcscpy_s(item->name, std::size(item->name), name);
    items.push_back(item.get());
    static_cast<void>(item.release());
}

void* ZeResCacheBase::AllocAddItem(const wchar_t* name, int size, const void* src, tResCacheType type)
{
    // Each in the form in which its type is freed.
    std::unique_ptr<wchar_t[]> text;
    std::unique_ptr<char[]> bytes;
    void* copy = nullptr;
    if (size > 0 && src && type != eResCacheBitmap && type != eResCacheObject) {
        const auto count = static_cast<std::size_t>(size);
        if (type == eResCacheString)
            copy = (text = std::make_unique<wchar_t[]>(count)).get();
        else
            copy = (bytes = std::make_unique<char[]>(count)).get();
        std::memcpy(copy, src, count);
    }
    AddItem(name, size, copy, size != 0, type);
    static_cast<void>(text.release());
    static_cast<void>(bytes.release());
    return copy;
}

void* ZeResCacheBase::GetResourceFromCache(const wchar_t* name, tResCacheType type, int* outSize)
{
    if (outSize) *outSize = 0;
    for (_ResourceItem* item : items) {
        if (!HasName(item, name) || !HasType(*item, type)) continue;
        if (outSize) *outSize = item->size;
        ++item->refCount;
        return item->data;
    }
    return nullptr;
}

_ResourceItem* ZeResCacheBase::GetResourceFromCache(const void* data, tResCacheType type)
{
    for (_ResourceItem* item : items)
        if (item && item->data == data && HasType(*item, type)) return item;
    return nullptr;
}

ZeResult ZeResourcesBase::GetImageSize(void* image, tagSIZE* size)
{
    if (!image || !size) return kZeInvalidParameter;
    const auto* bitmap = static_cast<ZeBitmap*>(image);
    *size = {static_cast<std::int32_t>(bitmap->GetWidth()), static_cast<std::int32_t>(bitmap->GetHeight())};
    return kZeSuccess;
}
