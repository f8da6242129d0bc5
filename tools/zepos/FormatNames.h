#pragma once

/// The formats that have a text, by the names that people type.

#include "PosFmt.h"

#include <optional>
#include <span>
#include <string_view>

struct FormatName {
    std::string_view name; ///< "smpte-drop"
    _qvposfmt_format format;
    std::string_view meaning;
};

/// All 13, in the order of their numbers.
std::span<const FormatName> formatNames();

std::optional<_qvposfmt_format> formatNamed(std::string_view name);
