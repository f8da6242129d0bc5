#pragma once

// Pixels that compare and print as text: "80000080" is half transparent red.

#include "CoreGraphics/CGContext.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <ostream>
#include <string>

inline std::string hexOf(std::span<const std::uint8_t> pixels, std::size_t index)
{
    if (4 * index + 3 >= pixels.size()) return "outside";
    const std::uint8_t* p = &pixels[4 * index];
    char text[9];
    std::snprintf(text, sizeof text, "%02x%02x%02x%02x", p[0], p[1], p[2], p[3]);
    return text;
}

inline std::string pixelOf(CGContextRef context, std::size_t x, std::size_t y)
{
    return hexOf(CGBitmapContextGetPixels(context), y * CGBitmapContextGetWidth(context) + x);
}

/// One character a pixel, by the map's pairs of pixel and character; '?' for others.
template <std::size_t N> std::string drawingOf(CGContextRef context, const std::pair<const char*, char> (&map)[N])
{
    std::string drawing;
    for (std::size_t y = 0; y < CGBitmapContextGetHeight(context); ++y) {
        for (std::size_t x = 0; x < CGBitmapContextGetWidth(context); ++x) {
            char seen = '?';
            for (const auto& [pixel, character] : map)
                if (pixelOf(context, x, y) == pixel) seen = character;
            drawing += seen;
        }
        drawing += '\n';
    }
    return drawing;
}

/// The coverage of all pixels together.
inline double inkOf(CGContextRef context)
{
    double ink = 0;
    const auto pixels = CGBitmapContextGetPixels(context);
    for (std::size_t i = 3; i < pixels.size(); i += 4) ink += pixels[i] / 255.0;
    return ink;
}

/// Of any byte of two pictures of one size.
inline int largestDifference(CGContextRef a, CGContextRef b)
{
    const auto some = CGBitmapContextGetPixels(a), others = CGBitmapContextGetPixels(b);
    int largest = 0;
    for (std::size_t i = 0; i < some.size(); ++i) largest = std::max(largest, std::abs(some[i] - others[i]));
    return largest;
}

/// The pixels that have ink; right and bottom lie behind.
struct InkBox {
    std::size_t left = SIZE_MAX, top = SIZE_MAX, right = 0, bottom = 0;
    friend bool operator==(const InkBox&, const InkBox&) = default;
    friend std::ostream& operator<<(std::ostream& out, const InkBox& b)
    {
        return out << b.left << "," << b.top << " to " << b.right << "," << b.bottom;
    }
};

inline InkBox inkBoxOf(CGContextRef context)
{
    InkBox box;
    const auto pixels = CGBitmapContextGetPixels(context);
    const std::size_t width = CGBitmapContextGetWidth(context);
    for (std::size_t i = 0; i < pixels.size() / 4; ++i) {
        if (pixels[4 * i + 3] == 0) continue;
        const std::size_t x = i % width, y = i / width;
        box.left = std::min(box.left, x), box.right = std::max(box.right, x + 1);
        box.top = std::min(box.top, y), box.bottom = std::max(box.bottom, y + 1);
    }
    return box;
}

inline void fill(CGContextRef context, CGRect rect, CGFloat r, CGFloat g, CGFloat b, CGFloat a)
{
    const auto color = CGColorCreateRGBA(r, g, b, a);
    CGContextSetFillColorWithColor(context, color);
    CGContextFillRect(context, rect);
}

/// White F on black, 4 by 5: no turn or mirror image of it looks the same.
inline RetainPtr<CGImage> letterF()
{
    const auto context = CGBitmapContextCreate(4, 5);
    fill(context, CGRectMake(0, 0, 4, 5), 0, 0, 0, 1);
    fill(context, CGRectMake(0, 0, 1, 5), 1, 1, 1, 1);
    fill(context, CGRectMake(0, 0, 4, 1), 1, 1, 1, 1);
    fill(context, CGRectMake(0, 2, 3, 1), 1, 1, 1, 1);
    return CGBitmapContextCreateImage(context);
}
