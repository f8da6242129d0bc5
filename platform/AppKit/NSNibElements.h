#pragma once

/// Which class each element of an interface description stands for. For sources of this folder.

#include "Foundation/NSClass.h"

struct NSNibElement {
    const char* name;
    const NSClass& (*classTable)();
    const char* cell; ///< the element of its cell; null for what has none
};

/// Null for an element that isn't an object.
const NSNibElement* NSNibElementNamed(std::string_view name);
