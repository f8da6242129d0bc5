#pragma once

/// Asks whoever hosts the editor to show a help topic.
///
/// The request is a notification without an object, delivered to its observers before the call returns. Its user info
/// has two entries: "anchor", a number with the topic (-1 is the home page), and "parent", a pointer value that is
/// passed through unchanged and may hold null. Nothing happens where nobody observes.

#include "ZeString.h"

/// Name of the notification: "ZeHelpNotification".
extern ZeString ssHelpNotification;

namespace ZeHelp {

/// Asks for topic `anchor`.
void Goto(int anchor, void* parent);
/// Asks for the home page: `Goto(-1, nullptr)`.
void GotoHome();

} // namespace ZeHelp
