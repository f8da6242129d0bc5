#pragma once

/// The shapes that the pointer takes over a view.
enum class NSCursorShape { arrow, text, hand };
