#pragma once

/// Bundles as plain functions see them; a `CFBundleRef` is an `NSBundle`.
///
/// Failure: what isn't there is null, and so is every answer to a null bundle, key or name.

#include "CoreFoundation/CFString.h"
#include "CoreFoundation/CFURL.h"
#include "Foundation/NSBundle.h"

using CFBundleRef = NSBundle*;

/// The registered bundle of that identifier, else the main bundle where that has it. Not retained for the caller: a
/// bundle lives until another of its identifier is registered.
CFBundleRef CFBundleGetBundleWithIdentifier(CFStringRef identifier);

/// The text under `key` in the string table `table` (null or empty: "Localizable"), in the user's first language that
/// has it; without one `value`, or the key itself where `value` is null or empty.
RetainPtr<const NSString> CFBundleCopyLocalizedString(CFBundleRef bundle, CFStringRef key, CFStringRef value,
                                                      CFStringRef table);

/// The file of a resource, searched in the folders of the user's languages, first choice first, then among what isn't
/// localised.
///
/// @param type             the extension without its dot; null or empty: `name` has it already
/// @param subdirectory     a folder below each folder that is searched; null or empty for none
///
/// ("tick", "png", "themes/dark") finds ".../Resources/de.lproj/themes/dark/tick.png".
RetainPtr<const CFURL> CFBundleCopyResourceURL(CFBundleRef bundle, CFStringRef name, CFStringRef type,
                                               CFStringRef subdirectory);
