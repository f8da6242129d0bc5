#pragma once

/// A directory with Contents/Info.plist and Contents/Resources.
///
/// Localised resources stand in `de.lproj`, `en.lproj` ...; the first of the user's languages that the bundle has is
/// used
/// ("de_AT" finds `de_AT.lproj`, else `de.lproj`), then English, then what is not localised.
///
/// Failure: a bundle without a readable Info.plist is null, a resource that isn't there is null, a string without a
/// translation is its default; files that can't be read are named in the log.

#include "Foundation/NSDictionary.h"

#include <map>
#include <string>
#include <vector>

class NSBundle final : public NSObject {
public:
    NS_CLASS(NSBundle)

    /// The directory itself ("Tonaro.bundle"), not its contents.
    static RetainPtr<NSBundle> bundleWithPath(const std::string& path);

    static void registerBundle(NSBundle* bundle); ///< retains it; a later one of the same identifier takes its place
    static NSBundle*
    bundleWithIdentifier(std::string_view identifier); ///< among the registered ones; null when missing
    /// By the identifier in the class's table; the main bundle where that is empty or unknown.
    static NSBundle* bundleForClass(const NSClass& table);

    /// The program's own. An empty bundle without resources until one is set.
    static NSBundle* mainBundle();
    static void setMainBundle(NSBundle* bundle);

    const std::string& bundlePath() const { return mPath; }
    std::string bundleIdentifier() const;
    NSObject* objectForInfoDictionaryKey(std::string_view key) const;
    std::string resourcePath() const;               ///< ".../Contents/Resources"
    std::vector<std::string> localizations() const; ///< "de", "en" ... in alphabetical order

    /// Path of a resource, the user's language first; empty when missing. An empty extension: `name` is the whole name.
    std::string pathForResource(std::string_view name, std::string_view extension) const;
    std::string pathForImageResource(std::string_view name) const; ///< as given, else with ".png"

    /// The text under `key` in the string table (null or empty: "Localizable"), else `value`, or the key where that is
    /// null or empty.
    RetainPtr<NSString> localizedStringForKey(const NSString* key, const NSString* value, const NSString* table) const;

    /// The user's languages, first choice first: LANGUAGE, else the first non-empty of LC_ALL, LC_MESSAGES, LANG, and
    /// English behind them: "de_AT", "de", "en". Text for people is for these.
    static std::vector<std::string> preferredLanguages();
    /// Takes the place of the environment; empty goes back to it.
    static void setPreferredLanguages(const std::vector<std::string>& languages);

private:
    std::vector<std::string> folders() const; ///< where a resource may be, best first
    const NSDictionary* table(const std::string& name) const;

    std::string mPath;
    RetainPtr<NSDictionary> mInfo;
    mutable std::map<std::string, RetainPtr<NSDictionary>> mTables; ///< by name, for the languages they were read for
    mutable std::vector<std::string> mTablesLanguages;
};
