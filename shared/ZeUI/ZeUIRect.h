#pragma once

/// Rectangles in drawing units: origin and extent, y downward.
///
/// Nothing turns a negative extent around unless it says so. No call fails; a value outside an enumeration changes
/// nothing.

#include "CoreGraphics/CGGeometry.h"
#include "CoreGraphics/QDRect.h"

#include <concepts>

struct ZeFPoint {
    double x = 0, y = 0;
    friend bool operator==(const ZeFPoint&, const ZeFPoint&) = default;
};

/// What four numbers stand for.
enum _tPt2Coord : int {
    ePtSize = 0, ///< x, y, width, height
    ePt2Pt = 1,  ///< left, top, right, bottom
};

enum _tEdge : int { eEdgeLeft = 0, eEdgeRight = 1, eEdgeTop = 2, eEdgeBottom = 3 };
enum _tDirection : int { eDirHorz = 0, eDirVert = 1, eDirBoth = 2 };
/// Top or bottom, left or right.
enum _tCorner : int { eCornerTL = 0, eCornerTR = 1, eCornerBL = 2, eCornerBR = 3 };

template <typename T>
concept ZeCoordinate =
    std::same_as<T, int> || std::same_as<T, float> || std::same_as<T, double> || std::same_as<T, long long>;

class ZeRect {
public:
    double x = 0, y = 0, width = 0, height = 0; ///< laid out as a CGRect

    ZeRect() = default;
    template <ZeCoordinate T> ZeRect(T w, T h) : width(static_cast<double>(w)), height(static_cast<double>(h)) {}
    /// (10, 20, 30, 50, ePt2Pt) is at (10, 20) and 20 by 30.
    template <ZeCoordinate T> ZeRect(T a, T b, T c, T d, _tPt2Coord coord = ePtSize)
    {
        Set(static_cast<double>(a), static_cast<double>(b), static_cast<double>(c), static_cast<double>(d), coord);
    }
    ZeRect(Rect r, _tPt2Coord coord = ePtSize) { Set(r, coord); }
    ZeRect(CGRect r, _tPt2Coord coord = ePtSize) { Set(r, coord); }

    void Set(double a, double b, double c, double d, _tPt2Coord coord = ePtSize);
    void Set(const ZeRect& other) { *this = other; }
    /// ePtSize: the rectangle between r's edges. ePt2Pt: r's right and bottom are an extent, as `GetRect(ePtSize)`
    /// stores it.
    void Set(Rect r, _tPt2Coord coord = ePtSize);
    /// ePt2Pt: r's size is a second corner.
    void Set(CGRect r, _tPt2Coord coord = ePtSize);

    /// ePt2Pt: the right and bottom edges stand in the size.
    CGRect GetCGRect(_tPt2Coord coord = ePtSize) const;
    /// Each number rounded, halves away from zero, and its low 16 bits kept: 40000 becomes -25536. ePtSize: the extent
    /// stands in the right and bottom fields.
    Rect GetRect(_tPt2Coord coord = ePtSize) const;
    /// The rounded edges.
    Rect GetSRect() const { return GetRect(ePt2Pt); }

    /// Moves the left edge by dx + 0.5 and the right one by dx, outward; likewise top and bottom by dy.
    void Inflate(double dx, double dy);
    /// The same inward: (2, 2) makes (2.5, 2.5, 11.5, 11.5) of (0, 0, 16, 16).
    void Deflate(double dx, double dy);
    /// Moves one edge right or down; the others stay.
    void EdgeAdj(double d, _tEdge edge);
    void Shift(double d, _tDirection direction);
    void Shift(double dx, double dy);
    /// Moves one corner outward on both axes; the opposite one stays.
    void CornerAdj(double d, _tCorner corner);
    /// Moves the top left to the whole numbers toward zero, without the bits of `mask`; right and bottom stay. 7 makes
    /// (8, 8, 15.7, 11.2) of (13.7, 9.2, 10, 10).
    void AlignTL4Brush(int mask);

    /// Whether the two meet. What they have in common is stored, an edge or a corner without extent too; CGRectNull
    /// where they are apart. `result` may be null or one of the two. A negative extent counts from its other end here.
    bool Intersects(const ZeRect& other, ZeRect* result) const;
    /// The smallest rectangle around both, stored. One without width or height doesn't count: then it is the other, and
    /// this one where neither counts. `result` may be null or one of the two.
    /// @return whether the rectangle around both has width and height
    bool SuperRect(const ZeRect& other, ZeRect* result) const;
    /// Three corners of the half that a diagonal cuts off, into points[0..2]. `kind` 0 to 3: the half at the top left,
    /// top right, bottom left, bottom right. Nothing for another kind or n below 3.
    void TriPtsFromRect(ZeFPoint* points, int n, int kind) const;
};
