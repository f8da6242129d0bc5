#pragma once

/// The values that `--set` gives a unit.

#include "ToneUnit/ToneUnit.h"

#include <string>
#include <utility>
#include <vector>

/// Gives the unit each NAME and VALUE, the sample rate first, since the frequencies' range follows it.
/// @throw UsageError for a name that doesn't exist or a value that can't be read, InputError for one outside its range
void applySettings(ToneUnit& unit, const std::vector<std::pair<std::string, std::string>>& settings);
