#include "Foundation/NSPropertyList.h"

#include "Foundation/NSString.h"

#include <gtest/gtest.h>

namespace {

using namespace std::string_literals;

/// A binary list of these objects, none longer than 200 bytes; the first is the root.
std::string BinaryList(const std::vector<std::string>& objects)
{
    std::string list = "bplist00", offsets;
    for (const std::string& object : objects) {
        offsets += static_cast<char>(list.size());
        list += object;
    }
    const auto bigEndian = [](std::size_t number) { return std::string(7, '\0') + static_cast<char>(number); };
    const std::size_t table = list.size();
    return list + offsets + "\0\0\0\0\0\0\1\1"s + bigEndian(objects.size()) + bigEndian(0) + bigEndian(table);
}

TEST(NSPropertyList, RefusesTextsWithANul)
{
    static const struct {
        const char* why;
        std::vector<std::string> objects;
        bool isRead;
    } kRows[] = {
        {"text", {"\x53"s + "abc"}, true},
        {"text with a NUL", {"\x53"s + "a\0b"s}, false},
        {"UTF-16", {"\x62\0a\0b"s}, true},
        {"UTF-16 with a NUL", {"\x63\0a\0\0\0b"s}, false},
        {"a length of its own", {"\x5F\x10\x10"s + "0123456789abcdef"}, true},
        {"NUL at the end of such a text", {"\x5F\x10\x10"s + "0123456789abcde\0"s}, false},
        {"key", {"\xD1\1\2"s, "\x51k", "\x51v"}, true},
        {"key with a NUL", {"\xD1\1\2"s, "\x52k\0"s, "\x51v"}, false},
        {"zeros in a number are none", {"\x11\0\0"s}, true},
        {"cut text", {"\x5F\x13\xFF\xFF\xFF\xFF"s}, false},
    };
    EXPECT_TRUE(NSReadPropertyList("<plist><dict><key>a</key><true/></dict></plist>"));
    EXPECT_FALSE(NSReadPropertyList("<plist><dict><key>a\0b</key><true/></dict></plist>"s));
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(NSReadPropertyList(BinaryList(row.objects)) != nullptr, row.isRead);
    }
}

} // namespace
