#include "Foundation/NSPropertyList.h"

#include "Foundation/NSDictionary.h"
#include "Foundation/NSNumber.h"

#include <cstdlib>
#include <fstream>
#include <memory>
#include <plist/plist.h>

namespace {

template <auto Release> struct Releaser {
    void operator()(auto* object) const { Release(object); }
};
using Node = std::unique_ptr<void, Releaser<plist_free>>;
using Text = std::unique_ptr<char, Releaser<std::free>>;
using Iterator = std::unique_ptr<void, Releaser<std::free>>;

constexpr int kDeepest = 64;
constexpr std::size_t kLargestFile = std::size_t{16} << 20;

/// A big-endian number of `size` bytes at `offset`; the largest there is where they aren't all there.
std::uint64_t NumberAt(std::string_view bytes, std::uint64_t offset, std::size_t size)
{
    if (size > 8 || offset > bytes.size() || size > bytes.size() - offset) return UINT64_MAX;
    std::uint64_t number = 0;
    for (const char byte : bytes.substr(offset, size)) number = number << 8 | static_cast<unsigned char>(byte);
    return number;
}

/// Whether the object at `offset` of a binary list is a text with a NUL.
bool IsTextWithNul(std::string_view bytes, std::uint64_t offset)
{
    const std::uint64_t marker = NumberAt(bytes, offset, 1);
    const std::size_t unit = marker >> 4 == 5 ? 1 : marker >> 4 == 6 ? 2 : 0; // bytes, or UTF-16
    if (unit == 0 || marker > 0xFF) return false;
    std::uint64_t count = marker & 0xF;
    if (count == 0xF) { // a number follows, of 1, 2, 4 or 8 bytes
        const std::size_t size = std::size_t{1} << (NumberAt(bytes, ++offset, 1) & 3);
        count = NumberAt(bytes, offset + 1, size);
        offset += size;
    }
    for (std::uint64_t at = offset + 1; count != 0 && at < bytes.size(); at += unit, --count)
        if (NumberAt(bytes, at, unit) == 0) return true;
    return false;
}

/// libplist ends the process when it is asked for a text or a key with a NUL.
bool HasTextWithNul(std::string_view bytes)
{
    constexpr std::size_t kTrailer = 32;
    if (!bytes.starts_with("bplist")) return bytes.find('\0') != bytes.npos;
    if (bytes.size() < kTrailer) return false;
    const std::string_view trailer = bytes.substr(bytes.size() - kTrailer);
    const std::uint64_t offsetSize = NumberAt(trailer, 6, 1), count = NumberAt(trailer, 8, 8);
    std::uint64_t entry = NumberAt(trailer, 24, 8);
    for (std::uint64_t i = 0; i < count && entry < bytes.size() && offsetSize > 0; ++i, entry += offsetSize)
        if (IsTextWithNul(bytes, NumberAt(bytes, entry, offsetSize))) return true;
    return false;
}

RetainPtr<NSObject> ObjectOf(plist_t node, int depth);

RetainPtr<NSObject> DictionaryOf(plist_t node, int depth)
{
    auto dictionary = make<NSMutableDictionary>();
    plist_dict_iter raw = nullptr;
    plist_dict_new_iter(node, &raw);
    const Iterator iterator(raw);
    for (;;) {
        char* rawKey = nullptr;
        plist_t item = nullptr;
        plist_dict_next_item(node, raw, &rawKey, &item);
        const Text key(rawKey);
        if (!item) return dictionary;
        const RetainPtr<NSObject> object = ObjectOf(item, depth + 1);
        if (key && object) dictionary->setObject(object, NSString::string(key.get()).get());
    }
}

RetainPtr<NSObject> ArrayOf(plist_t node, int depth)
{
    std::vector<RetainPtr<NSObject>> objects;
    for (std::uint32_t i = 0; i < plist_array_get_size(node); ++i)
        if (RetainPtr<NSObject> object = ObjectOf(plist_array_get_item(node, i), depth + 1))
            objects.push_back(std::move(object));
    return NSArray::array(std::move(objects));
}

RetainPtr<NSObject> StringOf(plist_t node)
{
    char* raw = nullptr;
    plist_get_string_val(node, &raw);
    const Text text(raw);
    return text ? NSString::string(text.get()) : nullptr;
}

RetainPtr<NSObject> ObjectOf(plist_t node, int depth)
{
    if (depth > kDeepest) return nullptr;
    std::uint8_t truth = 0;
    std::uint64_t integer = 0;
    double real = 0.0;
    switch (plist_get_node_type(node)) {
    case PLIST_DICT:
        return DictionaryOf(node, depth);
    case PLIST_ARRAY:
        return ArrayOf(node, depth);
    case PLIST_STRING:
        return StringOf(node);
    case PLIST_BOOLEAN:
        plist_get_bool_val(node, &truth);
        return NSNumber::numberWithBool(truth != 0);
    case PLIST_UINT:
        plist_get_uint_val(node, &integer);
        return NSNumber::numberWithLongLong(static_cast<std::int64_t>(integer));
    case PLIST_REAL:
        plist_get_real_val(node, &real);
        return NSNumber::numberWithDouble(real);
    default:
        return nullptr;
    }
}

} // namespace

RetainPtr<NSObject> NSReadPropertyList(std::string_view bytes)
{
    if (bytes.size() > kLargestFile || HasTextWithNul(bytes)) return nullptr;
    plist_t raw = nullptr;
    plist_from_memory(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &raw);
    const Node root(raw);
    return root ? ObjectOf(raw, 0) : nullptr;
}

bool NSReadFile(const std::string& path, std::string& bytes)
{
    std::ifstream file(path, std::ios::binary);
    char chunk[16384];
    bytes.clear();
    do {
        file.read(chunk, sizeof chunk);
        bytes.append(chunk, static_cast<std::size_t>(file.gcount()));
    } while (file && bytes.size() <= kLargestFile);
    return file.is_open() && !file.bad() && bytes.size() <= kLargestFile;
}
