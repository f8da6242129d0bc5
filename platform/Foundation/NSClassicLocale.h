#pragma once

/// Printing and scanning that never follow the locale the program (or its host) has set. For sources of this folder.

#include <clocale>
#include <cstdarg>
#include <locale.h>
#include <string>

/// '.' as decimal point, UTF-8 as character set; lives as long as the process.
locale_t NSClassicLocale();

/// What vsnprintf would write in that locale; empty for a format that it refuses.
[[gnu::format(printf, 1, 0)]] std::string NSFormatClassic(const char* format, std::va_list arguments);
