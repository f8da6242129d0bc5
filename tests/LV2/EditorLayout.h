#pragma once

/// Where the editor's controls are, from an editor that nobody sees, and what one on the screen shows there.

#include "ui/XClient.h"

#include <string>

/// Points from the editor's top left: on the control's middle line, at that part of its width.
/// @param control  an outlet of the editor, or an action ("onHelp:")
/// @throw std::runtime_error when there is none
CGPoint placeInEditor(const std::string& control, double part);
/// How wide the editor is, in points.
CGFloat editorWidth();

/// Where the knob of a slider is seen, 0 to 1: the grey part of the track begins at its right edge.
/// @param origin  of the editor, on the screen
double knobOnScreen(XClient& person, CGPoint origin, const std::string& slider);
/// Where the editor's sliders have a frequency, 0 to 1.
double partOfHz(double hz);
double hzOfPart(double part);
