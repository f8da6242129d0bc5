#pragma once

/// Bindings: a value of one object that follows a key of another.
///
///     slider->bind(NSValueBinding, model, "gain"_ns.get());
///
/// sends the slider `setValueForBinding(value, NSValueBinding)` at once, and again whenever the model's key changes.
/// Neither object is retained; a binding ends with either of them. `infoForBinding` tells what is bound: a dictionary
/// with the observed object and the key path under the keys below.
///
/// `bindWithInfo` takes such a dictionary as it is, and keeps it (and the object in it). One that lacks the object or
/// the path is kept all the same, and follows nothing.

#include "Foundation/NSDictionary.h"

inline constexpr const char* NSValueBinding = "value";

// Keys of the dictionary, as texts: `info->objectForKey(NSObservedKeyPathKey)`.
inline constexpr const char* NSObservedObjectKey = "NSObservedObject";
inline constexpr const char* NSObservedKeyPathKey = "NSObservedKeyPath";
