#include "Pixels.h"
#include "Support/TemporaryFolder.h"

#include <unistd.h>

namespace {

std::string bytesOf(std::string_view hex)
{
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
        bytes += char(std::stoi(std::string(hex.substr(i, 2)), nullptr, 16));
    return bytes;
}

RetainPtr<CGImage> imageOf(const TemporaryFolder& folder, const std::string& bytes)
{
    folder.write("in.png", bytes);
    return CGImageCreateWithPNGFile(folder / "in.png");
}

constexpr const char* kRGBA8 = "89504e470d0a1a0a0000000d4948445200000002000000020806000000"
                               "72b60d24000000194944415478da63f8cfc0f0ff448a5103039066e4e4e46400003b4104f8"
                               "fc92ab140000000049454e44ae426082";

} // namespace

TEST(CGImagePNG, ReadsEveryKindAsPremultipliedRGBA)
{
    static const struct {
        const char* why;
        const char* file;
        std::array<const char*, 4> pixels; // 2 by 2
    } kRows[] = {
        {"8 bits with alpha", kRGBA8, {"ff0000ff", "64321980", "00000101", "00000000"}},
        {"palette of 2 bits with alpha",
         "89504e470d0a1a0a0000000d49484452000000020000000202030000000fd8e5b70000000c504c5445ff000000ff000000ff"
         "c86432ad447e3f0000000274524e53ff80080fb36a0000000c4944415478da631060d8000000e400c119553bfb0000000049"
         "454e44ae426082",
         {"ff0000ff", "00800080", "0000ffff", "c86432ff"}},
        {"grey of 1 bit",
         "89504e470d0a1a0a0000000d49484452000000020000000201000000005acd30890000000c4944415478da63706068000001"
         "4400c10487cffa0000000049454e44ae426082",
         {"000000ff", "ffffffff", "ffffffff", "000000ff"}},
        {"grey of 16 bits with alpha",
         "89504e470d0a1a0a0000000d4948445200000002000000021004000000882f19ec000000154944415478da63f80f040d0dff"
         "ff3380280620000073b009f9f5c5176c0000000049454e44ae426082",
         {"ffffffff", "808080ff", "80808080", "00000000"}},
        {"16 bits, interlaced",
         "89504e470d0a1a0a0000000d4948445200000002000000021002000001da4376a6000000124944415478da63f8ff9f010290"
         "180e60000067f8077b549f7b550000000049454e44ae426082",
         {"ff0000ff", "00ff00ff", "0000ffff", "404040ff"}},
    };
    const TemporaryFolder folder;
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        const auto image = imageOf(folder, bytesOf(row.file));
        ASSERT_TRUE(image);
        ASSERT_EQ(CGImageGetWidth(image), 2u);
        ASSERT_EQ(CGImageGetHeight(image), 2u);
        for (std::size_t i = 0; i < 4; ++i) EXPECT_EQ(hexOf(CGImageGetPixels(image), i), row.pixels[i]) << i;
    }
}

TEST(CGImagePNG, KnowsWhetherAnythingShowsThrough)
{
    const TemporaryFolder folder;
    for (const CGFloat alpha : {1.0, 0.996}) {
        const auto context = CGBitmapContextCreate(5, 4);
        fill(context, CGRectMake(0, 0, 5, 4), 0.2, 0.4, 0.6, 1);
        CGContextClearRect(context, CGRectMake(4, 3, 1, 1));
        fill(context, CGRectMake(4, 3, 1, 1), 0.2, 0.4, 0.6, alpha);
        const auto image = CGBitmapContextCreateImage(context);
        ASSERT_TRUE(CGImageWritePNGFile(image, folder / "out.png"));
        const auto read = CGImageCreateWithPNGFile(folder / "out.png");
        EXPECT_EQ(CGImageIsOpaque(read), alpha == 1) << alpha;
        const auto cut = CGImageCreateWithImageInRect(read, CGRectMake(1, 1, 3, 2));
        EXPECT_EQ(CGImageIsOpaque(cut), alpha == 1) << alpha;
        const auto copy = CGBitmapContextCreate(5, 4);
        fill(copy, CGRectMake(0, 0, 5, 4), 1, 1, 1, alpha == 1 ? 0.5 : 0);
        CGContextDrawImage(copy, CGRectMake(0, 0, 5, 4), read);
        EXPECT_EQ(pixelOf(copy, 4, 3), pixelOf(context, 4, 3)) << "what was there is replaced";
    }
    EXPECT_FALSE(CGImageIsOpaque(nullptr));
}

TEST(CGImagePNG, EveryColourAtEveryAlphaComesBack)
{
    const auto context = CGBitmapContextCreate(52, 255);
    for (int alpha = 1; alpha <= 255; ++alpha)
        for (int red = 0; red <= 255; red += 5)
            fill(context, CGRectMake(red / 5, alpha - 1, 1, 1), red / 255.0, 1 - red / 255.0, 0.5, alpha / 255.0);
    const auto image = CGBitmapContextCreateImage(context);
    const TemporaryFolder folder;
    ASSERT_TRUE(CGImageWritePNGFile(image, folder / "out.png"));
    EXPECT_EQ(folder.files().size(), 1u); // nothing unfinished stays beside it
    const auto again = CGImageCreateWithPNGFile(folder / "out.png");
    ASSERT_TRUE(again);
    EXPECT_EQ(CGImageGetWidth(again), 52u);
    EXPECT_TRUE(std::ranges::equal(CGImageGetPixels(image), CGImageGetPixels(again)));
}

TEST(CGImagePNG, RefusesWhatIsNoWholePicture)
{
    const TemporaryFolder folder;
    const std::string whole = bytesOf(kRGBA8);
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_FALSE(imageOf(folder, whole.substr(0, length))) << length;
    for (std::size_t i = 0; i < whole.size(); ++i) { // checksums find every change before the end of the pixels
        std::string changed = whole;
        changed[i] = char(changed[i] ^ 0x41);
        const auto image = imageOf(folder, changed);
        EXPECT_TRUE(!image || i >= 0x21) << i;
    }
    EXPECT_FALSE(imageOf(folder, "GIF89a and so on"));
    EXPECT_FALSE(CGImageCreateWithPNGFile(folder / "missing.png"));
    EXPECT_FALSE(CGImageCreateWithPNGFile(folder / ""));
}

TEST(CGImagePNG, RefusesSizesThatTheFileCannotHold)
{
    const TemporaryFolder folder;
    static const struct {
        const char* why;
        const char* file;
    } kRows[] = {
        {"30000 by 30000 in 68 bytes",
         "89504e470d0a1a0a0000000d49484452000075300000753008060000006627f8ba0000000b4944415478da6360800100000a"
         "0001ec2403b90000000049454e44ae426082"},
        {"40000 wide",
         "89504e470d0a1a0a0000000d4948445200009c40000000010100000000951bf6290000001c4944415478daedc13101000000"
         "c2a0f54f6d0a3fa00000000080bb0113890001a09866dd0000000049454e44ae426082"},
        {"0 wide",
         "89504e470d0a1a0a0000000d4948445200000000000000010806000000f0d7afb7000000094944415478da63000000010001"
         "b10db6930000000049454e44ae426082"},
    };
    for (const auto& row : kRows) EXPECT_FALSE(imageOf(folder, bytesOf(row.file))) << row.why;
}

TEST(CGImagePNG, WritesThroughAPipeAndLeavesItThere)
{
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const auto context = CGBitmapContextCreate(2, 2);
    const std::string path = "/proc/self/fd/" + std::to_string(ends[1]);
    EXPECT_TRUE(CGImageWritePNGFile(CGBitmapContextCreateImage(context).get(), path));
    char signature[4] = {};
    EXPECT_EQ(read(ends[0], signature, sizeof signature), 4);
    EXPECT_EQ(std::string(signature + 1, 3), "PNG");
    for (const int end : ends) close(end);
}

TEST(CGImagePNG, SaysWhenAFileCannotBeWritten)
{
    const TemporaryFolder folder;
    const auto f = letterF();
    EXPECT_FALSE(CGImageWritePNGFile(f, folder / "missing/out.png"));
    EXPECT_FALSE(CGImageWritePNGFile(nullptr, folder / "out.png"));
    std::filesystem::create_directory(folder / "taken");
    EXPECT_FALSE(CGImageWritePNGFile(f, folder / "taken"));
    EXPECT_EQ(folder.files().size(), 1u);
}
