#pragma once

/// Names of notes in equal temperament, A4 = 440 Hz. C4 is the middle C, about 261.63 Hz.

#include <optional>
#include <string>
#include <string_view>

/// The frequency that a note's name stands for: a letter from A to G, in capitals or not, sharps (# or ♯) or flats
/// (b or ♭), the octave, and cents with their sign: "A4" is 440 Hz, "C#5+20c" 20 cents above C sharp 5, "Bb-1" 14.57
/// Hz. Nothing for any other text.
std::optional<double> HzFromNote(std::u16string_view text);

/// The nearest note and the distance in whole cents: 450 Hz gives "A4 +39 ct", 440 Hz "A4". Empty below 1 Hz, above
/// 1 MHz and for not-a-number.
std::string NoteFromHz(double hz);
