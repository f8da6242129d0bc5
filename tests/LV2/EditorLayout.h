#pragma once

/// Where the editor's controls are: from an editor that nobody sees.

#include "CoreGraphics/CGGeometry.h"

#include <string>

/// Points from the editor's top left: on the control's middle line, at that part of its width.
/// @param control  an outlet of the editor, or an action ("onHelp:")
/// @throw std::runtime_error when there is none
CGPoint placeInEditor(const std::string& control, double part);
/// How wide the editor is, in points.
CGFloat editorWidth();
