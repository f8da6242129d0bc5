#include "CoreText/CTPango.h"

namespace {

constexpr bool isLead(char16_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
constexpr bool isTrail(char16_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

/// What is shaped in place of `character`, so that nothing breaks the line and indices still correspond.
constexpr char32_t drawable(char32_t character)
{
    constexpr char32_t kZeroWidthSpace = 0x200B, kReplacement = 0xFFFD;
    if (character == U'\t') return U' ';
    if (character < 0x20 || (character >= 0x7F && character < 0xA0)) return kZeroWidthSpace;
    if (character == 0x2028 || character == 0x2029) return kZeroWidthSpace;
    if (character >= 0xD800 && character < 0xE000) return kReplacement;
    return character;
}

void append(std::string& utf8, char32_t c)
{
    auto tail = [&](int shift) { utf8 += static_cast<char>(0x80 | ((c >> shift) & 0x3F)); };
    if (c < 0x80) {
        utf8 += static_cast<char>(c);
    } else if (c < 0x800) {
        utf8 += static_cast<char>(0xC0 | (c >> 6));
        tail(0);
    } else if (c < 0x10000) {
        utf8 += static_cast<char>(0xE0 | (c >> 12));
        tail(6), tail(0);
    } else {
        utf8 += static_cast<char>(0xF0 | (c >> 18));
        tail(12), tail(6), tail(0);
    }
}

} // namespace

CTShapedText::CTShapedText(std::u16string_view units)
{
    byteOfUnit.reserve(units.size() + 1);
    for (std::size_t i = 0; i < units.size(); ++i) {
        const int start = static_cast<int>(utf8.size());
        byteOfUnit.push_back(start);
        char32_t character = units[i];
        if (isLead(units[i]) && i + 1 < units.size() && isTrail(units[i + 1])) {
            character = 0x10000 + ((character & 0x3FF) << 10) + (units[++i] & 0x3FFu);
            byteOfUnit.push_back(start);
        }
        append(utf8, drawable(character));
    }
    byteOfUnit.push_back(static_cast<int>(utf8.size()));
}

std::size_t CTShapedText::unitAt(int byte) const
{
    const auto unit = std::lower_bound(byteOfUnit.begin(), byteOfUnit.end(), byte);
    return std::min(static_cast<std::size_t>(unit - byteOfUnit.begin()), length());
}
