#pragma once

/// The gallery's sections, in the order they are drawn in; each stands in a source of its name.

#include "Sheet.h"

Section rectangles();
Section lines();
Section paths();
Section images();
Section text();
Section glyphs();
