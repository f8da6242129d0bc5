#include "Foundation/NSClass.h"
#include "Foundation/NSException.h"
#include "Foundation/NSNumber.h"

#include <cstring>
#include <functional>

NS_CLASS_TABLE(NSValue, NSObject, "")
NS_CLASS_TABLE_END

namespace {

struct Layout {
    std::size_t size = 0, alignment = 1;
};

/// Reads a type encoding from its start. Limits keep any text from exhausting the stack or the arithmetic.
class EncodingReader {
public:
    explicit EncodingReader(std::string_view text) : mRest(text) {}

    /// @return false for text that is no encoding, or one without a size
    bool readWhole(Layout& layout) { return readType(layout, 0) && mRest.empty() && layout.size > 0; }

private:
    static constexpr int kDeepest = 32;
    static constexpr std::size_t kLargest = std::size_t{1} << 30;

    bool take(char expected)
    {
        if (mRest.empty() || mRest.front() != expected) return false;
        mRest.remove_prefix(1);
        return true;
    }

    void skipQuoted()
    {
        if (mRest.empty() || mRest.front() != '"') return;
        const std::size_t end = mRest.find('"', 1);
        mRest.remove_prefix(end == mRest.npos ? mRest.size() : end + 1);
    }

    bool readType(Layout& layout, int depth)
    {
        static constexpr std::string_view kQualifiers = "rnNoORV";
        while (!mRest.empty() && kQualifiers.find(mRest.front()) != mRest.npos) mRest.remove_prefix(1);
        if (mRest.empty() || depth > kDeepest) return false;
        const char kind = mRest.front();
        mRest.remove_prefix(1);
        if (kind == '{') return readFields(layout, '}', depth);
        if (kind == '(') return readFields(layout, ')', depth);
        if (kind == '[') return readArray(layout, depth);
        return readScalar(kind, layout, depth);
    }

    bool readScalar(char kind, Layout& layout, int depth)
    {
        static constexpr struct {
            std::string_view kinds;
            std::size_t size;
        } kSizes[] = {{"cCB", 1}, {"sS", 2}, {"iIlLf", 4}, {"qQd", 8}, {"@#:*^", sizeof(void*)}};
        for (const auto& row : kSizes) {
            if (row.kinds.find(kind) == row.kinds.npos) continue;
            layout = {row.size, row.size};
            if (kind == '@' && !take('?')) skipQuoted();
            return kind != '^' || skipPointed(depth);
        }
        return false;
    }

    // What a pointer points at has no bearing on its size, and may be nameless or unknown ("^v", "^{Name}", "^?").
    bool skipPointed(int depth)
    {
        Layout unused;
        if (take('v') || take('?')) return true;
        return readType(unused, depth + 1);
    }

    bool readFields(Layout& layout, char end, int depth)
    {
        const std::size_t name = mRest.find_first_of("={}()[]");
        if (name == mRest.npos) return false;
        mRest.remove_prefix(name);
        layout = {};
        if (take(end)) return true; // only named: no fields, no size
        if (!take('=')) return false;
        while (!take(end)) {
            Layout field;
            skipQuoted();
            if (!readType(field, depth + 1) || field.size == 0) return false;
            layout.alignment = std::max(layout.alignment, field.alignment);
            const std::size_t start = end == '}' ? RoundUp(layout.size, field.alignment) : 0;
            layout.size = std::max(layout.size, start + field.size);
            if (layout.size > kLargest) return false;
        }
        layout.size = RoundUp(layout.size, layout.alignment);
        return true;
    }

    bool readArray(Layout& layout, int depth)
    {
        std::size_t count = 0;
        for (; !mRest.empty() && mRest.front() >= '0' && mRest.front() <= '9'; mRest.remove_prefix(1)) {
            count = count * 10 + static_cast<std::size_t>(mRest.front() - '0');
            if (count > kLargest) return false;
        }
        if (!readType(layout, depth + 1) || !take(']')) return false;
        if (layout.size > 0 && count > kLargest / layout.size) return false;
        layout.size *= count;
        return true;
    }

    static std::size_t RoundUp(std::size_t size, std::size_t alignment)
    {
        return (size + alignment - 1) / alignment * alignment;
    }

    std::string_view mRest;
};

} // namespace

std::size_t NSGetSizeOfEncoding(const char* objCType)
{
    Layout layout;
    return objCType && EncodingReader(objCType).readWhole(layout) ? layout.size : 0;
}

RetainPtr<NSValue> NSValue::value(const void* bytes, const char* objCType)
{
    const std::size_t size = NSGetSizeOfEncoding(objCType);
    if (size == 0)
        throw NSException(NSInvalidArgumentException,
                          std::string("“") + (objCType ? objCType : "") + "” is no type encoding with a size");
    auto value = RetainPtr<NSValue>::adopt(new NSValue);
    value->mType = objCType;
    const auto* first = static_cast<const unsigned char*>(bytes);
    value->mBytes.assign(first, first + size);
    return value;
}

RetainPtr<NSValue> NSValue::valueWithPointer(const void* pointer) { return value(&pointer, "^v"); }

void NSValue::getValue(void* buffer) const { std::memcpy(buffer, mBytes.data(), mBytes.size()); }

void* NSValue::pointerValue() const
{
    void* pointer = nullptr;
    if (mType.starts_with('^')) std::memcpy(&pointer, mBytes.data(), sizeof pointer);
    return pointer;
}

bool NSValue::isEqual(const NSObject* other) const
{
    if (this == other) return true;
    const auto* value = asKind<NSValue>(other);
    return value && !mType.empty() && mType == value->mType && mBytes == value->mBytes;
}

std::size_t NSValue::hash() const
{
    return std::hash<std::string_view>()({reinterpret_cast<const char*>(mBytes.data()), mBytes.size()});
}
