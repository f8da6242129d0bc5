#pragma once

/// A picture of labelled fields, six to a row, in sections with a heading.
///
/// Failure: a label that is wider than its field is a std::runtime_error that names it.

#include "Samples.h"

#include <span>

constexpr double kFieldWidth = 150,
                 kFieldHeight = 84; ///< of what a field's function draws into, (0, 0) at its top left

/// Where a field is drawn.
enum class On {
    sheet,  ///< straight onto it
    pixels, ///< off screen at scale 1, for what copies from its own context; then scaled onto the sheet
};

struct Field {
    const wchar_t* operation;
    const wchar_t* note; ///< the second line of the label
    void (*draw)(ZeGraphicsContext& context, Samples& samples);
    On on = On::sheet;
};

struct Section {
    const wchar_t* heading;
    std::span<const Field> fields;
};

/// @param scale  pixels a unit
/// @return null where the picture would be too large
RetainPtr<CGImage> drawSheet(std::span<const Section> sections, Samples& samples, double scale);
