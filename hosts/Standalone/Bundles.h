#pragma once

/// Finds the bundles that the program needs, beside its own folder: "../lib/tonaro" of the executable, in the build
/// tree and once installed.

/// Registers them; what is missing is told in the log, and shows when it is asked for.
void registerBundles();
