#include "BundleOnDisk.h"
#include "ZeResources.h"
#include "ZeResources.mac.h"
#include "ZeUIBitmap.h"

#include <gmock/gmock.h>
#include <new>

namespace {
bool refusesMemory = false;
}

/// Memory that a caller can do without.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return refusesMemory ? nullptr : ::operator new(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return refusesMemory ? nullptr : ::operator new[](size);
}

namespace {

struct ZeResourcesTest : testing::Test {
    ZeResourcesTest()
    {
        NSBundle::setMainBundle(host.bundle);
        NSBundle::setPreferredLanguages({"de"});
    }
    ~ZeResourcesTest() override
    {
        NSBundle::setMainBundle(nullptr);
        NSBundle::setPreferredLanguages({});
    }
    /// The text of that id; what went wrong where the code isn't 0.
    static ZeString textOf(ZeResources& resources, const wchar_t* id, bool stripMnemonics = false)
    {
        ZeString text = L"old";
        const ZeResult result = resources.GetResString(id, text, stripMnemonics);
        return result == kZeSuccess ? text : L"error " + std::to_wstring(result);
    }

    BundleOnDisk host{"org.tonaro.host"};
    ZeResources resources;
};

TEST_F(ZeResourcesTest, TextsComeFromTwoTablesAndElseAreTheirIds)
{
    host.write(
        "de.lproj/ZeCustomPlist.strings",
        "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>custom</key><string>Eigenes &amp; mehr</string>"
        "<key>both</key><string>aus Custom</string><key>itself</key><string>itself</string>"
        "<key>wide</key><string>-\U0001F600-</string><key>none</key><string></string>"
        "</dict></plist>");
    host.write("de.lproj/ZeShared.strings",
               "\"both\" = \"aus Shared\"; shared = \"Gemeinsam\\n\\U00e4\"; itself = \"aus Shared\";");
    host.write("en.lproj/ZeShared.strings", "shared = Shared; english = English;");
    host.write("de.lproj/Localizable.strings", "elsewhere = no;");
    ASSERT_EQ(resources.Init(nullptr), kZeSuccess);
    static const struct {
        const wchar_t *id, *text;
    } kRows[] = {
        {L"custom", L"Eigenes & mehr"},
        {L"both", L"aus Custom"},
        {L"shared", L"Gemeinsam\n\u00e4"},
        {L"itself", L"aus Shared"}, // a text like its key counts as missing
        {L"english", L"English"},
        {L"none", L""},
        {L"wide", L"-\xD83D\xDE00-"}, // two halves
        {L"elsewhere", L"elsewhere"},
        {L"\U0001F600", L"\xD83D\xDE00"},
        {L"", L""},
    };
    for (const auto& row : kRows) {
        EXPECT_EQ(textOf(resources, row.id), row.text) << row.id;
        EXPECT_EQ(textOf(resources, row.id), row.text) << row.id << ", from the cache";
    }
}

TEST_F(ZeResourcesTest, MnemonicsAreTakenOutOnRequest)
{
    ASSERT_EQ(resources.Init(nullptr), kZeSuccess);
    const auto stripped = [this](const wchar_t* text) { // without a table the id is the text
        const ZeString result = textOf(resources, text, true);
        EXPECT_EQ(textOf(resources, text, false), text) << "the cache keeps them";
        return result;
    };
    EXPECT_EQ(stripped(L"&Samples"), L"Samples");
    EXPECT_EQ(stripped(L"Save && Quit"), L"Save & Quit");
    EXPECT_EQ(stripped(L"A&"), L"A");
    EXPECT_EQ(stripped(L"&&&A"), L"&A");
    EXPECT_EQ(stripped(L"&"), L"");
    EXPECT_EQ(stripped(L""), L"");
    EXPECT_EQ(stripped(L"&A&B"), L"AB");
}

TEST_F(ZeResourcesTest, TheCacheAnswersUntilItIsReset)
{
    host.write("de.lproj/ZeShared.strings", "a = Deutsch;");
    host.write("en.lproj/ZeShared.strings", "a = English;");
    ZeResCacheMac cache;
    ZeResourcesMac loader;
    EXPECT_EQ(loader.Reset(), kZeSuccess); // nothing there yet
    ASSERT_EQ(loader.Init(&cache), kZeSuccess);
    ZeString text;
    loader.GetResString(L"a", text);
    NSBundle::setPreferredLanguages({"en"});
    loader.GetResString(L"a", text);
    EXPECT_EQ(text, L"Deutsch");
    ASSERT_EQ(cache.items.size(), 1U);
    EXPECT_EQ(cache.items[0]->refCount, 2U);
    EXPECT_EQ(cache.items[0]->size, 32);
    loader.Reset();
    EXPECT_TRUE(cache.items.empty());
    EXPECT_EQ(loader.GetResString(L"a", text), kZeSuccess);
    EXPECT_EQ(text, L"English");
    host.writePNG("tick.png", 1, 1);
    EXPECT_EQ(loader.LoadResImage(L"tick.png", nullptr), kZeSuccess); // into the cache alone
    EXPECT_EQ(cache.items.size(), 2U);
}

TEST_F(ZeResourcesTest, AnIdMayBePartOfItsText)
{
    host.write("ZeShared.strings", "id = \"a text too long to stand in the object\";");
    ASSERT_EQ(resources.Init(nullptr), kZeSuccess);
    ZeString text = L"id";
    EXPECT_EQ(resources.GetResString(text.c_str(), text, false), kZeSuccess);
    EXPECT_EQ(text, L"a text too long to stand in the object");
    EXPECT_EQ(textOf(resources, L"id"), text); // cached under its id
}

TEST_F(ZeResourcesTest, SaysWhatIsMissing)
{
    const auto code = [this](const wchar_t* id) {
        ZeString text = L"old";
        void* image = &text;
        const ZeResult texts = resources.GetResString(id, text, true), images = resources.GetResImage(id, &image);
        EXPECT_EQ(image, nullptr);
        EXPECT_EQ(resources.GetResImage(id, nullptr), images);
        const char* const left = text == L"old" ? " kept" : text.empty() ? " empty" : "";
        return std::to_string(texts) + " " + std::to_string(images) + left;
    };
    EXPECT_EQ(code(L"id"), "87 87 kept"); // before Init
    EXPECT_EQ(resources.Init(L"org.tonaro.none", nullptr), kZeBundleNotFound);
    EXPECT_EQ(code(L"id"), "87 87 kept");
    EXPECT_EQ(resources.Init(L"\xD800", nullptr), kZeBundleNotFound);
    EXPECT_EQ(resources.Init(L"", nullptr), kZeSuccess); // the host's
    EXPECT_EQ(code(L"id"), "0 4323");
    EXPECT_EQ(code(nullptr), "87 87 empty");
    EXPECT_EQ(code(L"\xD800"), "87 4323 empty");
    EXPECT_EQ(code(L""), "0 4323 empty");
    EXPECT_EQ(code(L"de.lproj"), "0 4323");
    EXPECT_EQ(resources.Reset(), kZeSuccess);
    EXPECT_EQ(code(L"id"), "87 87 kept");
    NSBundle::setMainBundle(nullptr);
    EXPECT_EQ(resources.Init(nullptr), kZeBundleNotFound);
}

TEST_F(ZeResourcesTest, WithoutMemoryThereIsNoLoader)
{
    ZeResourcesMac loader;
    ZeResCacheMac cache;
    refusesMemory = true;
    EXPECT_EQ(resources.Init(nullptr), kZeOutOfMemory);
    EXPECT_EQ(loader.Init(nullptr, nullptr), kZeOutOfMemory);
    EXPECT_EQ(loader.Init(&cache), kZeSuccess); // needs none of its own
    EXPECT_EQ(loader.Init(nullptr, nullptr), kZeOutOfMemory);
    refusesMemory = false;
    ZeString text = L"old";
    EXPECT_EQ(loader.GetResString(L"id", text), kZeInvalidParameter); // what it had is gone
    EXPECT_EQ(loader.LoadResImage(L"tick.png", nullptr), kZeInvalidParameter);
    EXPECT_EQ(loader.Reset(), kZeSuccess);
    EXPECT_EQ(textOf(resources, L"id"), L"error 87");
}

TEST_F(ZeResourcesTest, ImagesAreLoadedOnceInTheUsersLanguage)
{
    host.writePNG("de.lproj/flag.png", 3, 2);
    host.writePNG("en.lproj/flag.png", 5, 4);
    host.writePNG("tick.png", 7, 6);
    host.write("broken.png", "\x89PNG\r\n");
    ASSERT_EQ(resources.Init(nullptr), kZeSuccess);
    static const struct {
        const wchar_t* name;
        const char* file;
        std::int32_t width, height;
    } kRows[] = {
        {L"flag.png", "de.lproj/flag.png", 3, 2},
        {L"tick.png", "tick.png", 7, 6},
        {L"broken.png", "broken.png", 0, 0},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.name);
        void *image = nullptr, *again = nullptr;
        tagSIZE size{-1, -1};
        EXPECT_EQ(resources.GetResImage(row.name, &image), kZeSuccess);
        EXPECT_EQ(resources.GetImageSize(image, &size), kZeSuccess);
        EXPECT_EQ(size.width, row.width);
        EXPECT_EQ(size.height, row.height);
        NSBundle::setPreferredLanguages({"en"});
        host.remove(row.file);
        EXPECT_EQ(resources.GetResImage(row.name, &again), kZeSuccess);
        EXPECT_EQ(image, again);
        NSBundle::setPreferredLanguages({"de"});
    }
}

TEST_F(ZeResourcesTest, AHighlightThatCannotBeMadeLeavesTheCell)
{
    ASSERT_EQ(resources.Init(nullptr), kZeSuccess);
    host.writePNG("strip.png", 8, 4);
    void *strip = nullptr, *glyph = nullptr, *again = nullptr, *hilite = &strip;
    ASSERT_EQ(resources.GetResImage(L"strip.png", &strip), kZeSuccess);
    refusesMemory = true;
    EXPECT_EQ(resources.GetGlyph(strip, 0, 2, &glyph, &hilite), kZeGlyphNotMade);
    refusesMemory = false;
    EXPECT_EQ(hilite, nullptr);
    EXPECT_EQ(resources.GetGlyph(strip, 0, 2, &again, &hilite), kZeSuccess);
    EXPECT_TRUE(glyph && again == glyph && hilite);
}

TEST_F(ZeResourcesTest, CellsOutliveTheLoadedStrip)
{
    host.writePNG("strip.png", 8, 4);
    ZeResCache cache;
    ASSERT_EQ(resources.Init(&cache), kZeSuccess);
    void *strip = nullptr, *cell = nullptr, *again = nullptr;
    ASSERT_EQ(resources.GetResImage(L"strip.png", &strip), kZeSuccess);
    ASSERT_EQ(resources.GetGlyph(strip, 1, 2, &cell, nullptr), kZeSuccess);
    const auto pixels = CGImageGetPixels(static_cast<CGImageRef>(cell));
    const auto* const buffer = static_cast<const std::uint8_t*>(static_cast<ZeBitmap*>(strip)->buffer);
    EXPECT_TRUE(pixels.data() > buffer && pixels.data() < buffer + 4 * 8 * 4) << "it is the strip's";
    cache.UnloadResource(L"strip.png");
    EXPECT_EQ(cache.GetResourceFromCache(L"strip.png", eResCacheAny, nullptr), nullptr);
    EXPECT_EQ(std::count(pixels.begin(), pixels.end(), 0), 4 * (8 * 3 + 4)); // still there

    ASSERT_EQ(resources.GetResImage(L"strip.png", &strip), kZeSuccess); // a new one with cells of its own
    ASSERT_EQ(resources.GetGlyph(strip, 1, 2, &again, nullptr), kZeSuccess);
    EXPECT_NE(again, cell);
    EXPECT_EQ(resources.GetImageSize(nullptr, nullptr), kZeInvalidParameter);
    EXPECT_EQ(resources.GetImageSize(strip, nullptr), kZeInvalidParameter);
    tagSIZE size{-1, -1};
    EXPECT_EQ(resources.GetImageSize(nullptr, &size), kZeInvalidParameter);
    EXPECT_EQ(size, (tagSIZE{-1, -1}));
}

TEST_F(ZeResourcesTest, LoadersShareACacheThatOutlivesThem)
{
    const BundleOnDisk other("org.tonaro.other");
    NSBundle::registerBundle(other.bundle);
    other.write("ZeShared.strings", "a = other;");
    host.write("ZeShared.strings", "a = host;");
    host.writePNG("tick.png", 7, 6);
    ZeResCache cache;
    {
        ZeResources second;
        ASSERT_EQ(resources.Init(&cache), kZeSuccess);
        ASSERT_EQ(second.Init(L"org.tonaro.other", &cache), kZeSuccess);
        EXPECT_EQ(resources.GetResImage(L"tick.png", nullptr), kZeSuccess);
        EXPECT_EQ(second.GetResImage(L"tick.png", nullptr), kZeSuccess); // which its own bundle lacks
        EXPECT_EQ(textOf(second, L"a"), L"other");
        EXPECT_EQ(textOf(resources, L"a"), L"other");
    }
    ASSERT_EQ(resources.Init(nullptr), kZeSuccess); // with a cache of its own from here on
    EXPECT_EQ(textOf(resources, L"a"), L"host");
    int size = 0;
    EXPECT_NE(cache.GetResourceFromCache(L"tick.png", eResCacheBitmap, &size), nullptr);
    EXPECT_EQ(size, -1);
}

TEST_F(ZeResourcesTest, ABundleThatEndedIsNoBundle)
{
    BundleOnDisk first("org.tonaro.replaced"), second("org.tonaro.replaced");
    NSBundle::registerBundle(first.bundle);
    first.bundle = nullptr;
    ASSERT_EQ(resources.Init(L"org.tonaro.replaced", nullptr), kZeSuccess);
    EXPECT_EQ(textOf(resources, L"id"), L"id");
    NSBundle::registerBundle(second.bundle);
    EXPECT_EQ(textOf(resources, L"id"), L"error 87");
    EXPECT_EQ(resources.GetResImage(L"tick.png", nullptr), kZeInvalidParameter);
}

TEST_F(ZeResourcesTest, SingleBitmapsAreLoadedByNameTypeAndFolder)
{
    host.writePNG("tick.png", 1, 1);
    host.writePNG("dark/tick.png", 2, 1);
    host.writePNG("de.lproj/dark/cross.png", 3, 1);
    static const struct {
        const char *name, *type, *folder;
        std::size_t width; ///< 0: none
    } kRows[] = {
        {"tick", "png", "", 1},      {"tick.png", "", "", 1}, {"tick", "png", "dark", 2}, {"cross.png", "", "dark", 3},
        {"tick", "png", "light", 0}, {"tick", "jpg", "", 0},  {"", "png", "", 0},         {"dark", "", "", 0},
    };
    for (const auto& row : kRows) {
        const auto text = [](const char* utf8) { return *utf8 ? NSString::string(utf8) : nullptr; };
        const auto bitmap = ZeResourceBitmap::LoadBitmap(host.bundle, text(row.name).get(), text(row.type).get(),
                                                         text(row.folder).get());
        EXPECT_EQ(bitmap ? bitmap->GetWidth() : 0, row.width) << row.name << " " << row.type << " " << row.folder;
    }
}

} // namespace
