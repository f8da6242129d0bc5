#pragma once

/// What is measured of an editor, each in a process of its own. Every function prints lines of a name and a number.

#include "EditorFacts.h"

void measureOpening(const EditorFacts& facts);  ///< time to the first pixels, memory, threads, a second editor
void measureClosing(const EditorFacts& facts);  ///< what stays after many openings
void measureIdling(const EditorFacts& facts);   ///< processor time, traffic and drawing while nothing happens
void measureChanging(const EditorFacts& facts); ///< one value that the host tells
void measureWheel(const EditorFacts& facts);    ///< a notch of the wheel to pixels
