#pragma once

/// Windows on an X server.

#include "AppKit/NSWindowBackend.h"

#include <string>

/// Connects to an X server and to the calling thread's run loop, which from then on delivers the windows' events.
///
/// Windows may outlive the display. When the connection breaks, every window's client hears `backendDestroyed`, the log
/// gets one line, and the process goes on.
///
/// @param displayName  ":1" and the like; null takes the environment's DISPLAY
/// @param error        where the reason of a failure goes; may be null
/// @return null when there is no server, or one that shows fewer than 24 bits a pixel
std::unique_ptr<NSDisplay> NSMakeX11Display(const char* displayName, std::string* error);
