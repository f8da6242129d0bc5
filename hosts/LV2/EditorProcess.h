#pragma once

/// What all editors of the process share: the connection to the display, the resources, the help window, and where
/// failures go.

#include "AppKit/NSWindow.h"

#include <string>

/// Held by every editor; the connection lasts from the first to the last one.
class EditorProcess {
public:
    /// @param bundlePath  of the plug-in's bundle, where the resource bundles are
    /// @param scale       of the help window: pixels per point; 0 asks the desktop
    /// @throw std::runtime_error when there is no display
    EditorProcess(const std::string& bundlePath, double scale);
    ~EditorProcess();
    EditorProcess(const EditorProcess&) = delete;
    EditorProcess& operator=(const EditorProcess&) = delete;
};
