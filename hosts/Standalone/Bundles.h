#pragma once

#include <filesystem>

/// Registers the host's own bundle as the main one, and the editor's, both in that folder. What is missing is told in
/// the log, and shows when it is asked for.
void registerBundles(const std::filesystem::path& folder);
/// The folder of a program's bundles: "../lib/tonaro" beside its own folder, in the build tree and once installed.
std::filesystem::path bundlesOfProgram();
