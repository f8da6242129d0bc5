#pragma once

/// The editor's controls as data, for tests and for people who drive the editor by program.

#include "TonaroCocoaView.h"

#include <string>

/// A JSON array in Tab order, an object for each control that the keyboard can reach when it is enabled: `outlet`
/// (empty when it is none), `class`, `frame` ([x, y, width, height] in points from the top left of the window),
/// `value` (null where it isn't finite, as a gain of "-Inf"), `text`, `enabled`, `action`, and for a menu `items`.
std::string controlList(const TonaroCocoaView& editor);
