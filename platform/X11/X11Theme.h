#pragma once

/// The part of a desktop's settings that says how programs look, read from what a settings manager publishes.

#include "AppKit/NSAppearance.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>

struct X11Theme {
    std::string name;         ///< "Adwaita-dark"; empty where the desktop names none
    bool prefersDark = false; ///< the desktop asks programs for the dark variant, whatever the theme is named

    /// Dark where it is preferred, or where "dark" is a word of the name: "Yaru-blue-dark", "Adwaita:dark", but not
    /// "Arc-Darker", whose windows are light.
    NSAppearanceName appearance() const;
};

/// Reads the list of settings that a manager keeps in a property: of its 32-bit integers
/// "Gtk/ApplicationPreferDarkTheme", of its texts "Net/ThemeName". All others are skipped; of settings with the same
/// name, the last one counts.
///
/// @param bytes  from anybody; the first one tells the byte order of all others
/// @return no value when the list ends early or has a setting of an unknown kind; what stands behind its end is ignored
std::optional<X11Theme> X11ReadTheme(std::span<const std::uint8_t> bytes);
