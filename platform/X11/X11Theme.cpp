#include "X11/X11Theme.h"

#include <algorithm>
#include <string_view>

namespace {

enum SettingKind : unsigned { kInteger = 0, kText = 1, kColor = 2 };
constexpr std::size_t kBytesOfColor = 8;
constexpr std::string_view kThemeName = "Net/ThemeName";
constexpr std::string_view kPrefersDark = "Gtk/ApplicationPreferDarkTheme";

/// Reads numbers and texts one after the other; once the bytes are at their end, everything is zero and empty.
class Reader {
public:
    Reader(std::span<const std::uint8_t> bytes, bool bigEndian) : mBytes(bytes), mBigEndian(bigEndian) {}

    bool isWhole() const { return mWhole; } ///< nothing was asked for beyond the end

    std::uint32_t number(std::size_t size)
    {
        const auto bytes = take(size);
        std::uint32_t number = 0;
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            const std::uint32_t byte = bytes[mBigEndian ? i : bytes.size() - 1 - i];
            number = number << 8 | byte;
        }
        return number;
    }
    /// With the bytes that fill its last group of four.
    std::string_view text(std::size_t size)
    {
        const auto bytes = take(size);
        take((4 - size % 4) % 4);
        return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
    }
    void skip(std::size_t size) { take(size); }

private:
    std::span<const std::uint8_t> take(std::size_t size)
    {
        mWhole = mWhole && size <= mBytes.size();
        if (!mWhole) return {};
        const auto taken = mBytes.first(size);
        mBytes = mBytes.subspan(size);
        return taken;
    }

    std::span<const std::uint8_t> mBytes;
    bool mBigEndian, mWhole = true;
};

/// @return whether the setting is of a kind that is known
bool ReadSetting(Reader& reader, X11Theme& theme)
{
    const unsigned kind = reader.number(1);
    reader.skip(1);
    const std::string_view name = reader.text(reader.number(2));
    reader.skip(4); // when it was changed
    if (kind == kInteger) {
        const std::uint32_t value = reader.number(4);
        if (name == kPrefersDark) theme.prefersDark = value != 0;
    } else if (kind == kText) {
        const std::string_view value = reader.text(reader.number(4));
        if (name == kThemeName) theme.name = value;
    } else if (kind == kColor) {
        reader.skip(kBytesOfColor);
    }
    return kind <= kColor;
}

bool IsDark(std::string_view word)
{
    constexpr std::string_view kDark = "dark";
    return std::equal(word.begin(), word.end(), kDark.begin(), kDark.end(),
                      [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a - 'A' + 'a' : a) == b; });
}

} // namespace

NSAppearanceName X11Theme::appearance() const
{
    constexpr std::string_view kBetweenWords = "-_: ";
    std::string_view rest = name;
    bool dark = prefersDark;
    while (!dark && !rest.empty()) {
        const std::size_t end = std::min(rest.find_first_of(kBetweenWords), rest.size());
        dark = IsDark(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return dark ? NSAppearanceName::dark : NSAppearanceName::light;
}

std::optional<X11Theme> X11ReadTheme(std::span<const std::uint8_t> bytes)
{
    if (bytes.empty() || bytes[0] > 1) return std::nullopt;
    Reader reader(bytes, bytes[0] == 1);
    reader.skip(8); // the byte order and what fills its group of four; how often the list was changed
    X11Theme theme;
    for (std::uint32_t left = reader.number(4); left > 0; --left)
        if (!ReadSetting(reader, theme) || !reader.isWhole()) return std::nullopt;
    return reader.isWhole() ? std::optional(theme) : std::nullopt;
}
