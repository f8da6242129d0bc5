#pragma once

#include "CoreGraphics/CGColor.h"
#include "ZeGuiDefs.h"

/// The platform's colour; each channel is a 255th, in single precision.
inline RetainPtr<CGColor> ZeColorFromWord(ZeGuiDefs::Color word)
{
    const auto channel = [&](int shift) { return static_cast<float>((word >> shift) & 0xFF) / 255.0F; };
    return CGColorCreateRGBA(channel(8), channel(16), channel(24), channel(0));
}
