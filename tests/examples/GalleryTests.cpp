#include "CoreGraphics/CGImage.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <set>
#include <sys/wait.h>

namespace {

int statusOfGallery(const std::string& arguments)
{
    const int status = std::system(("'" GALLERY "' " + arguments + " 2>/dev/null").c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string textOf(const std::filesystem::path& file)
{
    std::ifstream stream(file);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// The words that a parenthesis follows, behind one of the characters `before`.
std::set<std::string> callsIn(const std::string& text, std::string_view before)
{
    const auto isLetter = [](unsigned char c) { return std::isalnum(c) != 0; };
    std::set<std::string> words;
    for (std::size_t end = text.find('('); end != text.npos; end = text.find('(', end + 1)) {
        std::size_t start = end;
        while (start > 0 && isLetter(static_cast<unsigned char>(text[start - 1]))) --start;
        if (start > 0 && start < end && before.find(text[start - 1]) != before.npos)
            words.insert(text.substr(start, end - start));
    }
    return words;
}

/// Different pixels of the part.
std::size_t coloursIn(CGImageRef picture, CGRect part)
{
    const auto cut = CGImageCreateWithImageInRect(picture, part);
    std::set<std::uint32_t> colours;
    for (std::size_t y = 0; y < CGImageGetHeight(cut); ++y)
        for (std::size_t x = 0; x < CGImageGetWidth(cut); ++x) {
            std::uint32_t pixel = 0;
            std::memcpy(&pixel, CGImageGetPixels(cut).data() + y * CGImageGetBytesPerRow(cut) + 4 * x, sizeof pixel);
            colours.insert(pixel);
        }
    return colours.size();
}

} // namespace

TEST(Gallery, FillsAPictureOfEitherScale)
{
    const std::string small = FOLDER "/gallery.png", large = FOLDER "/gallery@2x.png";
    ASSERT_EQ(statusOfGallery("'" + small + "'"), 0);
    ASSERT_EQ(statusOfGallery("--scale 2 '" + large + "'"), 0);
    const auto picture = CGImageCreateWithPNGFile(small), twice = CGImageCreateWithPNGFile(large);
    ASSERT_TRUE(picture && twice);
    EXPECT_EQ(CGImageGetWidth(twice), 2 * CGImageGetWidth(picture));
    EXPECT_EQ(CGImageGetHeight(twice), 2 * CGImageGetHeight(picture));

    // a band of an empty sheet would have its colour and those of frames, labels and white fields
    const auto width = static_cast<double>(CGImageGetWidth(picture));
    const auto height = static_cast<double>(CGImageGetHeight(picture));
    for (int band = 0; band < 6; ++band) {
        SCOPED_TRACE(band);
        EXPECT_GT(coloursIn(picture, CGRectMake(0, band * height / 6, width, height / 6)), 300U);
    }
}

TEST(Gallery, LeavesNoOperationOut)
{
    static constexpr const char* kOperations[] = {
        "ZeDraw",  "ZeFill",  "ZeCalc",  "ZeCopy",    "ZeCreate", "ZeSet",      "GetSize",   "GetFontSize", "Inflate",
        "Deflate", "EdgeAdj", "AlignTL", "CornerAdj", "Shift",    "Intersects", "SuperRect", "TriPts",      "GetGlyph"};
    std::string gallery;
    for (const auto& entry : std::filesystem::directory_iterator(TREE "/examples/gallery"))
        if (entry.path().extension() == ".cpp") gallery += textOf(entry.path());
    std::string headers;
    for (const char* header : {"ZeUIGraphicsContext.h", "ZeUIRect.h", "ZeResources.h"})
        headers += textOf(TREE "/shared/ZeUI/" + std::string(header));
    const std::set<std::string> called = callsIn(gallery, ".:");
    std::size_t declared = 0;
    for (const std::string& name : callsIn(headers, " ")) {
        const auto starts = [&](const char* operation) { return name.starts_with(operation); };
        if (std::ranges::none_of(kOperations, starts) || name == "ShiftOrigin") continue; // which does nothing
        EXPECT_TRUE(called.contains(name)) << name;
        ++declared;
    }
    EXPECT_GE(declared, 27U);
}

TEST(Gallery, RefusesWhatItCannotDo)
{
    static const struct {
        const char *why, *arguments;
        int status;
    } kRows[] = {
        {"no file", "", 2},
        {"two files", "one.png two.png", 2},
        {"a scale that is no number", "--scale 2x one.png", 2},
        {"a scale out of range", "--scale 0 one.png", 2},
        {"a folder that isn't there", "'" FOLDER "/missing/one.png'", 1},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(statusOfGallery(row.arguments), row.status);
    }
}
