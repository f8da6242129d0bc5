#pragma once

/// Property lists, XML or binary. For sources of this folder.

#include "Foundation/NSObject.h"

/// Dictionaries, lists, texts, numbers and truth values; what else stands in the file is left out. Null for bytes that
/// are no property list, and for a list with a NUL in a text or a key.
RetainPtr<NSObject> NSReadPropertyList(std::string_view bytes);

/// The file's bytes. @return false when it can't be read or has more than 16 MB
bool NSReadFile(const std::string& path, std::string& bytes);
