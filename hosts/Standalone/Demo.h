#pragma once

/// What the program does where there is no display: it shows that the editor works.

#include "Standalone/Session.h"

#include <string>

/// Draws the editor, drags its start-frequency slider, draws it again into `file`. The session's trace prints what
/// reached the unit.
/// @throw InputError when the file can't be written
void runDemo(const Options& options);

/// Draws the editor into `file`, and ends. @throw as above
void takeScreenshot(const Options& options);

/// Prints the list of the editor's controls.
void printControls(const Options& options);
