#pragma once

/// Sentences in the user's language, from the main bundle's string table.

#include "Foundation/NSString.h"

#include <initializer_list>

/// The sentence of a key, which is the English one, with "%1$@", "%2$@" ... replaced by the arguments:
/// `TonaroText("%1$@ is out of range.", {"30000"})`.
RetainPtr<NSString> TonaroText(const char* key, std::initializer_list<std::string> arguments = {});
