#pragma once

/// String tables in the classic text form:
///
///     /* a comment */  // and another
///     "key" = "value";
///     key = "value with \"quotes\", \n and \U00e4";
///
/// UTF-8, or UTF-16 with a byte order mark. A key alone (`key;`) is its own value. Text may go over several lines.

#include "Foundation/NSDictionary.h"

/// @param bytes  the whole file
/// @param file   its name for the error message
/// @param error  on failure "Main.strings:3: expected “;”"
/// @return texts by key, the last of equal keys winning; null on failure
RetainPtr<NSDictionary> NSReadStrings(std::string_view bytes, const std::string& file, std::string* error);
