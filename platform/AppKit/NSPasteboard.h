#pragma once

/// The clipboard of the desktop, as far as text goes. Without a display there is none: nothing is stored, reading
/// answers null.

#include "Foundation/NSString.h"

#include <functional>

namespace NSPasteboard {

void setString(const NSString* text);

/// Calls back once, at once or much later (another program owns the text): with null where there is no text. Whoever
/// asks must check in the callback that it still wants the answer.
void readString(std::function<void(const NSString* text)> callback);

} // namespace NSPasteboard
