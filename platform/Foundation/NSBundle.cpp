#include "Foundation/NSBundle.h"

#include "Foundation/NSLog.h"
#include "Foundation/NSPropertyList.h"
#include "Foundation/NSStringsFile.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <ranges>

NS_CLASS_TABLE(NSBundle, NSObject, "")
NS_CLASS_TABLE_END

namespace {

namespace fs = std::filesystem;

/// What every bundle of the process shares; never destroyed, since bundles are asked for until the very end.
struct Shared {
    std::map<std::string, RetainPtr<NSBundle>, std::less<>> registered;
    RetainPtr<NSBundle> main;
    std::vector<std::string> languages; ///< in place of the environment's, if any
};

Shared& TheShared()
{
    static Shared& shared = *new Shared;
    return shared;
}

bool IsFile(const fs::path& path)
{
    std::error_code error;
    return fs::is_regular_file(path, error);
}

bool IsFolder(const fs::path& path)
{
    std::error_code error;
    return fs::is_directory(path, error);
}

void AddOnce(std::vector<std::string>& list, std::string text)
{
    if (!text.empty() && std::find(list.begin(), list.end(), text) == list.end()) list.push_back(std::move(text));
}

/// "de_AT.UTF-8@euro" adds "de_AT" and "de"; the locales of the C library add nothing.
void AddLanguage(std::vector<std::string>& list, std::string_view locale)
{
    const std::string name(locale.substr(0, locale.find_first_of(".@")));
    if (name == "C" || name == "POSIX") return;
    AddOnce(list, name);
    AddOnce(list, name.substr(0, name.find_first_of("_-")));
}

std::string_view FirstOf(std::initializer_list<const char*> variables)
{
    for (const char* variable : variables)
        if (const char* value = std::getenv(variable); value && *value) return value;
    return {};
}

} // namespace

RetainPtr<NSBundle> NSBundle::bundleWithPath(const std::string& path)
{
    std::error_code error;
    auto bundle = make<NSBundle>();
    bundle->mPath = fs::absolute(path, error).lexically_normal().string();
    const std::string file = bundle->mPath + "/Contents/Info.plist";
    std::string bytes;
    if (!IsFile(file) || !NSReadFile(file, bytes)) {
        NSLog("%s: can't be read", file.c_str());
        return nullptr;
    }
    bundle->mInfo = asKind<NSDictionary>(NSReadPropertyList(bytes).get());
    if (bundle->mInfo) return bundle;
    NSLog("%s: is no property list with a dictionary", file.c_str());
    return nullptr;
}

void NSBundle::registerBundle(NSBundle* bundle)
{
    if (bundle) TheShared().registered[bundle->bundleIdentifier()] = bundle;
}

NSBundle* NSBundle::bundleWithIdentifier(std::string_view identifier)
{
    const auto found = TheShared().registered.find(identifier);
    return found == TheShared().registered.end() ? nullptr : found->second.get();
}

NSBundle* NSBundle::bundleForClass(const NSClass& table)
{
    const std::string_view identifier = table.bundleIdentifier;
    NSBundle* const bundle = identifier.empty() ? nullptr : bundleWithIdentifier(identifier);
    return bundle ? bundle : mainBundle();
}

NSBundle* NSBundle::mainBundle()
{
    RetainPtr<NSBundle>& main = TheShared().main;
    if (!main) main = make<NSBundle>();
    return main;
}

void NSBundle::setMainBundle(NSBundle* bundle) { TheShared().main = bundle; }

NSObject* NSBundle::objectForInfoDictionaryKey(std::string_view key) const
{
    return mInfo ? mInfo->objectForKey(key) : nullptr;
}

std::string NSBundle::bundleIdentifier() const
{
    const auto* text = asKind<NSString>(objectForInfoDictionaryKey("CFBundleIdentifier"));
    return text ? text->utf8() : std::string();
}

std::string NSBundle::resourcePath() const { return mPath.empty() ? std::string() : mPath + "/Contents/Resources"; }

std::vector<std::string> NSBundle::localizations() const
{
    std::vector<std::string> names;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(resourcePath(), error))
        if (entry.path().extension() == ".lproj") names.push_back(entry.path().stem().string());
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<std::string> NSBundle::folders() const
{
    std::vector<std::string> folders;
    if (mPath.empty()) return folders;
    for (std::string language : preferredLanguages()) {
        for (const auto& [from, to] : {std::pair('-', '_'), std::pair('_', '-')}) { // both spellings are in use
            std::replace(language.begin(), language.end(), from, to);
            if (const std::string folder = resourcePath() + "/" + language + ".lproj"; IsFolder(folder))
                AddOnce(folders, folder);
        }
    }
    folders.push_back(resourcePath());
    return folders;
}

std::string NSBundle::pathForResource(std::string_view name, std::string_view extension) const
{
    if (name.empty()) return {};
    std::string file("/");
    file.append(name);
    if (!extension.empty()) file.append(".").append(extension);
    for (std::string path : folders())
        if (IsFile(path.append(file))) return path;
    return {};
}

std::string NSBundle::pathForImageResource(std::string_view name) const
{
    const std::string path = pathForResource(name, "");
    return path.empty() ? pathForResource(name, "png") : path;
}

const NSDictionary* NSBundle::table(const std::string& name) const
{
    if (std::vector<std::string> languages = preferredLanguages(); languages != mTablesLanguages) {
        mTables.clear();
        mTablesLanguages = std::move(languages);
    }
    const auto [found, isNew] = mTables.try_emplace(name);
    if (!isNew) return found->second;
    // Choice: a text that the best language lacks comes from the next one. Test: NSBundle.TextsFallBackOneByOne
    auto merged = make<NSMutableDictionary>();
    const std::vector<std::string> all = folders();
    for (std::string file : std::views::reverse(all)) {
        file.append("/").append(name).append(".strings");
        std::string bytes, error = file + ": can't be read";
        if (!IsFile(file)) continue;
        const auto texts = NSReadFile(file, bytes) ? NSReadStrings(bytes, file, &error) : nullptr;
        if (texts)
            merged->addEntriesFromDictionary(texts);
        else
            NSLog("%s", error.c_str());
    }
    found->second = merged;
    return found->second;
}

RetainPtr<NSString> NSBundle::localizedStringForKey(const NSString* key, const NSString* value,
                                                    const NSString* table) const
{
    const std::string name = table && table->length() > 0 ? table->utf8() : "Localizable";
    if (auto* text = asKind<NSString>(this->table(name)->objectForKey(key))) return text;
    const NSString* const fallback = value && value->length() > 0 ? value : key;
    return NSString::string(fallback ? fallback->units() : std::u16string());
}

std::vector<std::string> NSBundle::preferredLanguages()
{
    if (!TheShared().languages.empty()) return TheShared().languages;
    std::vector<std::string> languages;
    const std::string_view list = FirstOf({"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"});
    for (std::size_t from = 0; from < list.size();) {
        const std::size_t colon = std::min(list.find(':', from), list.size());
        AddLanguage(languages, list.substr(from, colon - from));
        from = colon + 1;
    }
    AddOnce(languages, "en");
    return languages;
}

void NSBundle::setPreferredLanguages(const std::vector<std::string>& languages)
{
    std::vector<std::string>& all = TheShared().languages;
    all.clear();
    if (languages.empty()) return;
    for (const std::string& language : languages) AddLanguage(all, language);
    AddOnce(all, "en");
}
