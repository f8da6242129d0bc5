#pragma once

/// The tone into a sound file.

#include "Standalone/Options.h"

/// Writes the tone of these options into `options.file`: length times sample rate samples. Shows its progress on a
/// terminal. A file that isn't whole never has that name.
/// @throw UsageError, InputError; Interrupted when a signal asked for the end, with everything tidied up
void renderTone(const Options& options);
