#include "CoreGraphics/CGPathMasks.h"

#include <algorithm>
#include <cmath>
#include <list>
#include <span>

namespace {

constexpr std::size_t kMostElements = 32, kMostShapes = 192;
constexpr std::size_t kLargestMask = 1 << 16, kMostBytes = 1 << 19;

struct Shape {
    std::vector<std::int32_t> numbers; // of the elements, relative to a whole pixel, and of the pen
    std::size_t hash = 0;
    bool operator==(const Shape&) const = default;
};

struct Known {
    Shape shape;
    CairoSurface mask; // null for a large shape
    int x = 0, y = 0;  // of the mask, from the shape's whole pixel
    std::size_t bytes = 0;
};

/// Newest first.
struct Masks {
    std::list<Known> known;
    std::size_t bytes = 0;
};

Masks& OwnMasks()
{
    static thread_local Masks masks;
    return masks;
}

std::int32_t InCairosUnits(double value) { return static_cast<std::int32_t>(std::lround(value * 256)); }

bool IsWithinReach(const CGPathElements& elements)
{
    constexpr CGFloat kFarthest = 1 << 15;
    return std::all_of(elements.begin(), elements.end(), [](const CGPathElement& element) {
        return std::all_of(element.points.begin(), element.points.end(),
                           [](CGPoint p) { return std::abs(p.x) < kFarthest && std::abs(p.y) < kFarthest; });
    });
}

/// Rectangles are drawn fast as they are.
bool IsWorthAMask(const CGPathElements& elements, bool isStroke)
{
    if (elements.empty() || elements.size() > kMostElements) return false;
    return isStroke || std::any_of(elements.begin(), elements.end(),
                                   [](const CGPathElement& element) { return element.kind == CGPathElement::CurveTo; });
}

/// Whether nothing is set that the shape's numbers don't tell.
bool HasPlainState(cairo_t* cairo)
{
    return cairo_get_operator(cairo) == CAIRO_OPERATOR_OVER && cairo_get_antialias(cairo) == CAIRO_ANTIALIAS_DEFAULT &&
           cairo_get_dash_count(cairo) == 0 && cairo_get_fill_rule(cairo) == CAIRO_FILL_RULE_WINDING;
}

CGPoint WholePixelOf(const CGPathElements& elements)
{
    return {std::floor(elements.front().points[0].x), std::floor(elements.front().points[0].y)};
}

std::size_t PointCountOf(CGPathElement::Kind kind)
{
    constexpr std::size_t kCounts[] = {1, 1, 2, 3, 0}; // as the kinds stand in their list
    return kCounts[kind];
}

Shape ShapeOf(cairo_t* cairo, const CGPathElements& elements, CGPoint origin, const std::optional<CGPen>& pen)
{
    Shape shape;
    shape.numbers.reserve(elements.size() * 7 + 7);
    const auto add = [&](std::int32_t number) {
        shape.numbers.push_back(number);
        shape.hash = (shape.hash ^ static_cast<std::uint32_t>(number)) * 0x100000001B3U;
    };
    for (const CGPathElement& element : elements) {
        add(static_cast<std::int32_t>(element.kind));
        for (const CGPoint& p : std::span(element.points).first(PointCountOf(element.kind))) {
            add(InCairosUnits(p.x - origin.x));
            add(InCairosUnits(p.y - origin.y));
        }
    }
    if (!pen) return shape;
    for (const CGFloat number : {pen->ctm.a, pen->ctm.b, pen->ctm.c, pen->ctm.d})
        add(InCairosUnits(std::clamp(pen->width * number, -1e6, 1e6)));
    add(cairo_get_line_cap(cairo));
    add(cairo_get_line_join(cairo));
    return shape;
}

/// The shape's coverage; nothing where it would be large.
void MakeMask(Known& known, cairo_t* cairo, const CGPathElements& elements, CGPoint origin, bool isStroke)
{
    double left = 0, top = 0, right = 0, bottom = 0;
    CGReplay(cairo, elements);
    (isStroke ? cairo_stroke_extents : cairo_fill_extents)(cairo, &left, &top, &right, &bottom);
    // the extents are in user space, which is never turned
    cairo_user_to_device(cairo, &left, &top);
    cairo_user_to_device(cairo, &right, &bottom);
    cairo_new_path(cairo);
    const double x = std::floor(std::min(left, right)) - 1, y = std::floor(std::min(top, bottom)) - 1;
    const double width = std::ceil(std::max(left, right)) + 1 - x, height = std::ceil(std::max(top, bottom)) + 1 - y;
    if (!(width * height <= static_cast<double>(kLargestMask))) return;

    CairoSurface mask(cairo_image_surface_create(CAIRO_FORMAT_A8, static_cast<int>(width), static_cast<int>(height)));
    if (cairo_surface_status(mask.get()) != CAIRO_STATUS_SUCCESS) return;
    cairo_surface_set_device_offset(mask.get(), -x, -y);
    {
        const CairoContext drawing(cairo_create(mask.get()));
        cairo_matrix_t matrix;
        cairo_get_matrix(cairo, &matrix);
        cairo_set_matrix(drawing.get(), &matrix);
        cairo_set_tolerance(drawing.get(), cairo_get_tolerance(cairo));
        cairo_set_line_width(drawing.get(), cairo_get_line_width(cairo));
        cairo_set_line_cap(drawing.get(), cairo_get_line_cap(cairo));
        cairo_set_line_join(drawing.get(), cairo_get_line_join(cairo));
        CGReplay(drawing.get(), elements);
        isStroke ? cairo_stroke(drawing.get()) : cairo_fill(drawing.get());
    }
    cairo_surface_set_device_offset(mask.get(), 0, 0);
    known.x = static_cast<int>(x - origin.x);
    known.y = static_cast<int>(y - origin.y);
    known.bytes =
        static_cast<std::size_t>(cairo_image_surface_get_stride(mask.get())) * static_cast<std::size_t>(height);
    known.mask = std::move(mask);
}

void ForgetOldest(Masks& masks)
{
    while (masks.known.size() > kMostShapes || masks.bytes > kMostBytes) {
        masks.bytes -= masks.known.back().bytes;
        masks.known.pop_back();
    }
}

void Copy(cairo_t* cairo, const Known& known, CGPoint origin)
{
    cairo_identity_matrix(cairo);
    cairo_mask_surface(cairo, known.mask.get(), origin.x + known.x, origin.y + known.y);
}

} // namespace

bool CGDrawByMask(cairo_t* cairo, const CGPathElements& elements, const std::optional<CGPen>& pen)
{
    if (!IsWorthAMask(elements, pen.has_value()) || !IsWithinReach(elements) || !HasPlainState(cairo)) return false;
    Masks& masks = OwnMasks();
    const CGPoint origin = WholePixelOf(elements);
    Shape shape = ShapeOf(cairo, elements, origin, pen);
    const auto found = std::find_if(masks.known.begin(), masks.known.end(), [&](const Known& known) {
        return known.shape.hash == shape.hash && known.shape == shape;
    });
    if (found != masks.known.end()) {
        masks.known.splice(masks.known.begin(), masks.known, found);
    } else {
        Known& made = masks.known.emplace_front();
        made.shape = std::move(shape);
        MakeMask(made, cairo, elements, origin, pen.has_value());
        masks.bytes += made.bytes;
        ForgetOldest(masks);
    }
    const Known& newest = masks.known.front();
    if (newest.mask) Copy(cairo, newest, origin);
    return newest.mask != nullptr;
}
