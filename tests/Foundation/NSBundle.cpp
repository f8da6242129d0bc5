#include "Foundation/NSBundle.h"

#include "Foundation/NSStringsFile.h"
#include "Probe.h"
#include "Support/TemporaryFolder.h"

#include <random>

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

/// "key=value|key=value", or the error.
std::string Table(std::string_view bytes)
{
    std::string error, text;
    const auto table = NSReadStrings(bytes, "T", &error);
    if (!table) return error;
    const auto keys = table->allKeys();
    for (const auto& key : *keys)
        text += (text.empty() ? "" : "|") + asKind<NSString>(key.get())->utf8() + "=" +
                asKind<NSString>(table->objectForKey(key.get()))->utf8();
    return text;
}

TEST(NSStringsFile, ReadsTablesAndNamesTheLineOfAFault)
{
    using namespace std::string_literals;
    static const struct {
        const char* why;
        std::string bytes, result;
    } kRows[] = {
        {"keys with and without quotes", "\"a b\" = \"c\";\nIDS_1 = d.e;", "a b=c|IDS_1=d.e"},
        {"comments", "/* \"x\" = ; */ a = \"b // c\"; // d = e;\n", "a=b // c"},
        {"a key alone", "\"a\";", "a=a"},
        {"the last of equal keys", "a=b;a=c;", "a=c"},
        {"escapes", R"("a" = "\"\\\n\t\U00e4\Ud83d\UDE00\x";)", "a=\"\\\n\tä😀x"},
        {"several lines", "\"a\" = \"b\nc\";", "a=b\nc"},
        {"nothing", "", ""},
        {"UTF-8 with a mark", "\xEF\xBB\xBFä = ö;", "T:1: expected a key"},
        {"UTF-8 with a mark, quoted", "\xEF\xBB\xBF\"ä\" = \"ö\";", "ä=ö"},
        {"UTF-16, big end first", "\xFE\xFF\0a\0=\0\"\x20\xAC\0\"\0;"s, "a=€"},
        {"UTF-16, cut in the middle", "\xFF\xFE\x61\0=\0b\0;\0x"s, "a=b"},
        {"XML",
         "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>a</key><string>b&amp;c</string></dict></plist>",
         "a=b&c"},
        {"XML of something else", "<?xml version=\"1.0\"?><plist version=\"1.0\"><array/></plist>",
         "T: is no property list of texts"},
        {"XML that is cut", "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>a</key>",
         "T: is no property list of texts"},
        {"no semicolon", "a = b;\n\nc = d\ne = f;", "T:4: expected “;”"},
        {"no value", "a = b;\nc = ;", "T:2: expected a value"},
        {"no key", "\n= b;", "T:2: expected a key"},
        {"no closing quote names the line it opened in", "a = b;\nc = \"d\n\n", "T:2: a text has no closing quote"},
        {"a backslash at the end", "\"a\\", "T:1: a text has no closing quote"},
        {"too few digits", "\"\\U00g1\";", "T:1: “\\U” needs four hexadecimal digits"},
        {"a comment without end", "a;\n/* b", "T:2: a comment has no end"},
    };
    for (const auto& row : kRows) EXPECT_EQ(Table(row.bytes), row.result) << row.why;
}

TEST(NSStringsFile, SurvivesAnyBytes)
{
    std::mt19937 random(7);
    const std::string_view pieces[] = {"\"", "\\",   "=",    ";",        "/*",       "*/",    "//", "\n",
                                       "a",  "\\U0", "\xC3", "\xFF\xFE", "bplist00", "<?xml", "\0"};
    for (int i = 0; i < 3000; ++i) {
        std::string bytes;
        for (std::size_t n = random() % 12; n > 0; --n) bytes += pieces[random() % std::size(pieces)];
        std::string error;
        const bool reads = bool(NSReadStrings(bytes, "T", &error));
        EXPECT_EQ(reads, error.empty()) << bytes;
    }
}

struct NSBundleTest : testing::Test {
    NSBundleTest()
    {
        write("Info.plist", "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>CFBundleIdentifier</key>"
                            "<string>org.tonaro.probe</string></dict></plist>");
    }
    ~NSBundleTest() override { NSBundle::setPreferredLanguages({}); }
    void write(const std::string& name, std::string_view bytes) { folder.write("Contents/" + name, bytes); }
    /// The resource behind ".../Resources/".
    std::string found(std::string_view name, std::string_view extension)
    {
        const std::string path = NSBundle::bundleWithPath(root)->pathForResource(name, extension);
        return path.empty() ? path : path.substr(root.size() + sizeof "/Contents/Resources");
    }
    TemporaryFolder folder;
    const std::string root = folder.path();
};

TEST_F(NSBundleTest, FindsResourcesInTheUsersLanguageFirst)
{
    for (const char* file :
         {"en.lproj/a.png", "de.lproj/a.png", "de-AT.lproj/a.png", "a.png", "fr.lproj/b.png", "b.png"})
        write(std::string("Resources/") + file, "");
    static const struct {
        std::vector<std::string> languages;
        const char* path;
    } kRows[] = {
        {{"de_AT.UTF-8"}, "de-AT.lproj/a.png"},
        {{"de_CH"}, "de.lproj/a.png"},
        {{"pl", "de"}, "de.lproj/a.png"},
        {{"pl"}, "en.lproj/a.png"},
        {{"fr"}, "en.lproj/a.png"},
        {{"C"}, "en.lproj/a.png"},
    };
    for (const auto& row : kRows) {
        NSBundle::setPreferredLanguages(row.languages);
        EXPECT_EQ(found("a", "png"), row.path) << row.languages[0];
    }
    EXPECT_EQ(found("b", "png"), "b.png"); // French is not asked for
    EXPECT_EQ(found("b.png", ""), "b.png");
    EXPECT_EQ(found("c", "png"), "");
    EXPECT_EQ(found("", ""), "");
    EXPECT_EQ(found("en.lproj", ""), ""); // a folder is no resource
    const auto bundle = NSBundle::bundleWithPath(root + "/");
    EXPECT_EQ(bundle->pathForImageResource("b"), bundle->pathForImageResource("b.png"));
    EXPECT_THAT(bundle->localizations(), ElementsAre("de", "de-AT", "en", "fr"));
}

TEST_F(NSBundleTest, TextsFallBackOneByOne)
{
    write("Resources/en.lproj/Main.strings", "a = English; b = English;");
    write("Resources/de.lproj/Main.strings", "a = Deutsch;");
    write("Resources/fr.lproj/Main.strings", "a = \"open");
    const auto bundle = NSBundle::bundleWithPath(root);
    const auto text = [&](const char* key, const char* value) {
        const auto keyText = NSString::string(key), valueText = NSString::string(value), table = "Main"_ns;
        return bundle->localizedStringForKey(keyText, valueText, table)->utf8();
    };
    NSBundle::setPreferredLanguages({"de"});
    EXPECT_EQ(text("a", ""), "Deutsch");
    EXPECT_EQ(text("b", "unused"), "English");
    EXPECT_EQ(text("c", "given"), "given");
    EXPECT_EQ(text("c", ""), "c");
    CaughtLog log;
    NSBundle::setPreferredLanguages({"fr"});
    EXPECT_EQ(text("a", "") + text("a", ""), "EnglishEnglish");
    EXPECT_THAT(log.text(), HasSubstr("fr.lproj/Main.strings:1: "));
    EXPECT_EQ(log.lines.size(), 1U) << "said once, not for each text";
    EXPECT_EQ(bundle->localizedStringForKey("a"_ns.get(), nullptr, nullptr)->utf8(), "a");
}

TEST_F(NSBundleTest, IsFoundByIdentifierAndClass)
{
    const auto bundle = NSBundle::bundleWithPath(root);
    EXPECT_EQ(NSBundle::bundleForClass(Probe::staticClass()), NSBundle::mainBundle());
    NSBundle::registerBundle(bundle);
    EXPECT_EQ(NSBundle::bundleWithIdentifier("org.tonaro.probe"), bundle.get());
    EXPECT_EQ(NSBundle::bundleForClass(Probe::staticClass()), bundle.get());
    EXPECT_EQ(NSBundle::bundleForClass(NSObject::staticClass()), NSBundle::mainBundle());
    EXPECT_EQ(NSBundle::bundleWithIdentifier("org.tonaro.other"), nullptr);
    EXPECT_EQ(NSBundle::mainBundle()->pathForResource("passwd", ""), "");
}

TEST_F(NSBundleTest, BrokenBundlesAreNamedInTheLog)
{
    for (const char* bytes :
         {"", "no list", "<?xml version=\"1.0\"?><plist version=\"1.0\"><string>a</string></plist>"}) {
        CaughtLog log;
        write("Info.plist", bytes);
        EXPECT_FALSE(NSBundle::bundleWithPath(root));
        EXPECT_THAT(log.text(), HasSubstr(root + "/Contents/Info.plist"));
    }
    CaughtLog log;
    EXPECT_FALSE(NSBundle::bundleWithPath(root + "/none"));
    EXPECT_THAT(log.text(), HasSubstr("/none/Contents/Info.plist"));
}

TEST_F(NSBundleTest, LanguagesComeFromTheEnvironment)
{
    setenv("LANGUAGE", "de_AT:fr:de", 1);
    EXPECT_THAT(NSBundle::preferredLanguages(), ElementsAre("de_AT", "de", "fr", "en"));
    setenv("LANGUAGE", "", 1);
    setenv("LC_ALL", "C.UTF-8", 1);
    EXPECT_THAT(NSBundle::preferredLanguages(), ElementsAre("en"));
    setenv("LC_ALL", "sv_SE.UTF-8@x", 1);
    EXPECT_THAT(NSBundle::preferredLanguages(), ElementsAre("sv_SE", "sv", "en"));
    unsetenv("LANGUAGE");
    unsetenv("LC_ALL");
}

} // namespace
