#pragma once

/// The fonts of drawing code, by number. Each is made once and kept while the process lives, with the size of its "0",
/// from which widths are guessed without measuring.
///
/// | number | font | size |
/// |---|---|---|
/// | 0 | Lucida Grande | 12 |
/// | 1 | Lucida Grande-Bold | 12 |
/// | 2 | Monaco | 12 |
/// | 3 | Lucida Grande | 10 |
/// | 4 | Monaco | 10 |
/// | 5 | Times Roman | 16 |
///
/// For the thread of the user interface.
///
/// Failure: a number outside the table has no font, and the size (0, 0).

#include "CoreGraphics/CGContext.h"
#include "CoreText/CTFont.h"
#include "ZeGuiDefs.h"

#include <map>

#include "ZeString.h"

class ZeFontManagerMacImpl;

class ZeFontManager {
public:
    /// By number: the font, and the size of its "0"; (0, 0) where that wasn't measured yet.
    std::map<int, std::pair<RetainPtr<CTFont>, tagSIZE>> fonts;

    ZeFontManager() = default;
    virtual ~ZeFontManager() = default;
    ZeFontManager(const ZeFontManager&) = delete;
    ZeFontManager& operator=(const ZeFontManager&) = delete;

    /// Makes, measures and stores the font of that number; one that is stored already stays and is answered.
    virtual CTFontRef createFontFor(int fontId) = 0;
    /// The size of "0" in that font.
    virtual void fontSize(CTFontRef font, tagSIZE* size) = 0;

    /// The process's one.
    static ZeFontManagerMacImpl& sharedFontManager();
    /// The stored font of that number, else a new one; null for an unknown number.
    CTFontRef fontFor(int fontId);
    /// The stored size of the "0" of that font, which is made or measured first where it has to be: (7, 10) for 0.
    tagSIZE fontSize(int fontId);
};

class ZeFontManagerMacImpl : public ZeFontManager {
public:
    using ZeFontManager::fontSize;
    CTFontRef createFontFor(int fontId) override;
    void fontSize(CTFontRef font, tagSIZE* size) override;

    /// Width and height of the inked area, rounded up, as the application's current context would draw it; without one
    /// at scale 1. The context argument plays no part. The text ends at a NUL, and of each element the low 16 bits
    /// count. Nothing where `size` is null; (0, 0) without a font.
    virtual void sizeWithFont(const ZeString& text, CTFontRef font, CGContextRef context, tagSIZE* size);
};
