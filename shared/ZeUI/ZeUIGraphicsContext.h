#pragma once

/// Drawing with plain numbers: 32-bit colours, rectangles, bitmaps, and fonts by number.
///
/// A `ZeGraphicsContext` stands for a platform context that it wraps, a view's for example, or for an off-screen bitmap
/// of its own. It lives for one drawing. Coordinates are the context's user space, y downward; whatever copies from a
/// context works in that context's pixels. Colours, line width, dash, blend mode and text matrix stay in the platform
/// context as an operation left them.
///
/// For the thread of the user interface.
///
/// Failure: without a context every operation does nothing and answers null or (0, 0); the same where something that
/// it needs can't be made or is null.

#include "CoreGraphics/CGContext.h"
#include "CoreText/CTFont.h"
#include "ZeGuiDefs.h"
#include "ZeUIRect.h"

#include "ZeString.h"

class ZeBitmap;

struct ZePoint {
    double x = 0, y = 0;
};

class ZeGraphicsContext {
public:
    /// What the three numbers of a level or upright line are.
    enum _eGCDL : int {
        eGCDLHorz = 0,      ///< x1, x2, y
        eGCDLHorzLen = 1,   ///< x, length, y
        eGCDLHorzXYLen = 2, ///< x, y, length
        eGCDLVert = 3,      ///< y1, y2, x
        eGCDLVertLen = 4,   ///< y, length, x: (10, 5, 3) is from (3, 10) to (3, 15)
        eGCDLVertXYLen = 5, ///< x, y, length
    };
    enum _eHAlign : int { eHAlignLeft = 0, eHAlignCenter = 2 }; ///< any other value is left
    enum _eVAlign : int {
        eVAlignTop = 0,
        eVAlignMiddle = 1,
        eVAlignBottom = 2,
        eVAlignDescent = 3, ///< this and any other value: the descent ends at the rectangle's bottom
    };
    /// What becomes of text that is too long. 2 and values above 5 are as 1, 4 is as 3.
    enum _eTrim : int {
        eTrimNone = 0,           ///< drawn whole
        eTrimEnd = 1,            ///< cut at the end
        eTrimEndEllipsis = 3,    ///< cut at the end, an ellipsis there
        eTrimMiddleEllipsis = 5, ///< cut in the middle, an ellipsis there
    };

    CGContextRef context = nullptr; ///< null where none could be made
    bool ownsContext = false;       ///< `context` and its pixels end with this object

    /// Wraps a context of somebody else, who keeps it alive.
    explicit ZeGraphicsContext(CGContext* wrapped) : context(wrapped) {}
    /// A bitmap of the image's size; with the image in it where `drawImage`, else transparent. No context for null.
    ZeGraphicsContext(CGImageRef image, bool drawImage);
    ~ZeGraphicsContext() { ZeCleanupGraphicsContext(); }
    ZeGraphicsContext(const ZeGraphicsContext&) = delete;
    ZeGraphicsContext& operator=(const ZeGraphicsContext&) = delete;

    /// Ends a context of its own; from here on there is none. A wrapped one stays.
    void ZeCleanupGraphicsContext();
    /// A snapshot of the pixels, which the caller releases.
    CGImage* ZeCreateImageFromContext() const;
    /// Releases the image and clears the caller's pointer.
    void ZeImageRelease(CGImage** image) const;
    void ShiftOrigin(int, int, bool) {} ///< does nothing
    /// Dashes for the lines that follow: line and gap lengths in turn, from `phase` into them. Solid for null or none.
    void ZeSetLineStyle(double phase, const double* lengths, unsigned long count);

    // --- rectangles

    void ZeFillRectSolid(ZeGuiDefs::Color color, ZeRect rect);
    /// From `first` at the top left to `second` at the bottom right, over everything between the two perpendiculars:
    /// it isn't clipped to the rectangle.
    void ZeFillRectGradient(ZeGuiDefs::Color first, ZeGuiDefs::Color second, ZeRect rect);
    /// A frame inside the rectangle; a width of 1 on (0, 0, 20, 10) strokes along (1, 1, 18.5, 8.5).
    void ZeDrawRectangle(ZeGuiDefs::Color color, ZeRect rect, double lineWidth);

    // --- lines, 1 wide

    void ZeDrawLine(ZeGuiDefs::Color color, int x1, int y1, int x2, int y2);
    void ZeDrawLine(ZeGuiDefs::Color color, double x1, double y1, double x2, double y2);
    /// Nothing for another layout.
    void ZeDrawLine(ZeGuiDefs::Color color, int a, int b, int c, _eGCDL layout);
    void ZeDrawLine(ZeGuiDefs::Color color, double a, double b, double c, _eGCDL layout);
    /// Inverts what is under the line between the centres of two pixels, of those two half. The blend mode
    /// is "copy" from here on.
    void ZeDrawXorLine(int x1, int y1, int x2, int y2);

    // --- paths

    /// Strokes a closed polygon. The last three arguments play no part.
    void ZeDrawPath(ZeGuiDefs::Color color, const ZeFPoint* points, int n, double lineWidth, int, float, int);
    /// Fills the current path with the curve of `ZeCalcCurve` added.
    void ZeFillPath(ZeGuiDefs::Color color, const ZeFPoint* points, int n, int mode, float tension, int chordEnds);
    /// Strokes the current path with that curve added, 1 wide and without smooth edges.
    void ZeDrawCurve(ZeGuiDefs::Color color, const ZeFPoint* points, int n, int mode, float tension);
    /// Adds a curve through points of increasing x to the current path.
    ///
    /// @param mode       0 takes quadratic pieces, 1 cubic ones, 2 straight lines, any other none
    /// @param tension    how far the controls reach, 1 for a third of a piece's x; with 0 all is straight
    /// @param chordEnds  1: each piece ends with the slope of its own chord, not of the next
    ///
    /// Mode 1, tension 1 through (0, 0), (3, 3), (6, 0) has the controls (1, 1), (2, 4) and (4, 4), (5, 1).
    void ZeCalcCurve(const ZeFPoint* points, unsigned int n, int mode, float tension, int chordEnds);

    // --- images; the bitmap arguments play no part

    /// Scales all of the source's pixels into `rect`.
    void ZeDrawImageToFit(ZeRect rect, const ZeGraphicsContext* source, ZeBitmap*);
    /// A bitmap of the part `rect` of the source's pixels, rounded. A width or height that rounds to 0 becomes all of
    /// the source's, in `rect` too.
    /// @param whole  receives the bitmap that the part was cut from; both are the caller's
    ZeBitmap* ZeCreateSubBitmap(const ZeGraphicsContext* source, ZeRect& rect, ZeBitmap** whole);
    /// Draws `sub` at `at`, as large as `rect`, all rounded; then destroys both bitmaps, if there is a whole one, and
    /// clears `whole`.
    void ZeCopySubBitmap(ZePoint at, ZeBitmap* sub, const ZeRect& rect, ZeBitmap** whole);
    /// Copies the part `rect` of the source's pixels to `at`.
    void ZeCopyBitmap(ZePoint at, const ZeGraphicsContext* source, ZeBitmap*, ZeRect rect);
    /// The same to where it was.
    void ZeDrawImage1to1(ZeRect rect, const ZeGraphicsContext* source, ZeBitmap*);

    // --- text; fonts by their numbers in ZeFontManager

    /// Draws one line, placed by its inked size. Where it is cut, it is cut to the rectangle's width and 2 more;
    /// nothing is drawn where the first character alone is as wide as the rectangle, or an element is no character.
    void ZeDrawString(const ZeString& text, ZeRect rect, ZeGuiDefs::Color color, int fontId, _eHAlign hAlign,
                      _eVAlign vAlign, _eTrim trim);
    static CTFontRef GetFont(int fontId);                            ///< null for an unknown number
    static tagSIZE GetFontSize(int fontId);                          ///< of the font's "0"
    tagSIZE GetSizeWithFont(const ZeString& text, int fontId) const; ///< of the inked area, rounded up
    /// A guess: 1.2 times the width of as many "0", and the height of one. 10 characters of 7 by 12 give 84 by 12.
    static tagSIZE GetSizeWithFontForScreen(const ZeString& text, int fontId);

private:
    void strokeSegment(ZeFPoint from, ZeFPoint to);
    void setStroke(ZeGuiDefs::Color color, double lineWidth);
    void setFill(ZeGuiDefs::Color color);
};
