#include "Foundation/NSBundle.h"
#include "Sections.h"
#include "ZeResources.mac.h"

#include <memory>
#include <stdexcept>

namespace {

constexpr double kPictureWidth = 96, kPictureHeight = 64;

/// The picture as something to copy from.
struct Source : ZeGraphicsContext {
    explicit Source(const Samples& samples) : ZeGraphicsContext(samples.picture->GetImage(), true) {}
};

void drawQuarters(ZeGraphicsContext& context, Samples& samples)
{
    constexpr int kWidth = 48, kHeight = 32, kApart = 6;
    for (int i = 0; i < 4; ++i) {
        const int x = i % 2, y = i / 2;
        const std::unique_ptr<ZeBitmap> part(
            samples.picture->ZeCreateSubBitmap(x * kWidth, y * kHeight, kWidth, kHeight));
        drawImage(context, part->GetImage(), 24 + x * (kWidth + kApart), 7 + y * (kHeight + kApart));
    }
}

void drawChequers(ZeGraphicsContext& context)
{
    for (int y = 0; y < 84; y += 12)
        for (int x = y % 24; x < 150; x += 24) context.ZeFillRectSolid(kPale, ZeRect(x, y, 12, 12));
}

void drawThumbnail(ZeGraphicsContext& context, Samples& samples)
{
    drawImage(context, samples.picture->GetImage(), 4, 4);
    context.ZeDrawRectangle(kRed, ZeRect(60, 30, 50, 40), 4);
    const ZeBitmap copy(context.context, ZeRect(50, 28), true);
    context.ZeFillRectSolid(kGrey, ZeRect(94, 50, 54, 32));
    drawImage(context, copy.GetImage(), 96, 52);
}

void drawSnapshot(ZeGraphicsContext& context, Samples&)
{
    context.ZeFillRectSolid(kPale, ZeRect(kFieldWidth, kFieldHeight));
    context.ZeDrawRectangle(kBlue, ZeRect(kFieldWidth, kFieldHeight), 2);
    context.ZeFillRectSolid(kRed, ZeRect(8, 6, 12, 5));
    CGImage* image = context.ZeCreateImageFromContext();
    for (int i = 1; i <= 5; ++i) drawImage(context, image, 22 * i, 13 * i);
    context.ZeImageRelease(&image);
}

void drawOffScreen(ZeGraphicsContext& context, Samples& samples)
{
    ZeGraphicsContext canvas(samples.picture->GetImage(), true);
    canvas.ZeFillRectSolid(colorOf(0xFFFFFF, 0xB0), ZeRect(10, 20, 76, 24));
    canvas.ZeDrawRectangle(kRed, ZeRect(10, 20, 76, 24), 1);
    context.ZeDrawImage1to1(ZeRect(), &canvas, nullptr);
}

void drawLoaded(ZeGraphicsContext& context, Samples&)
{
    const auto name = NSString::string("picture"), type = NSString::string("png");
    const auto loaded =
        ZeResourceBitmap::LoadBitmap(NSBundle::bundleWithIdentifier("org.tonaro.gallery"), name, type, nullptr);
    if (!loaded) throw std::runtime_error("picture.png: not in the bundle");
    drawImage(context, loaded->GetImage(), 27, 10);
}

constexpr Field kFields[] = {
    {L"ZeDrawImageToFit", L"into 114 by 76",
     [](ZeGraphicsContext& context, Samples& samples) {
         const Source source(samples);
         context.ZeDrawImageToFit(ZeRect(18, 4, 114, 76), &source, nullptr);
     }},
    {L"ZeDrawImageToFit", L"48 by 32, 24 by 64, 48 by 16",
     [](ZeGraphicsContext& context, Samples& samples) {
         const Source source(samples);
         context.ZeDrawImageToFit(ZeRect(8, 26, 48, 32), &source, nullptr);
         context.ZeDrawImageToFit(ZeRect(64, 10, 24, 64), &source, nullptr);
         context.ZeDrawImageToFit(ZeRect(96, 34, 48, 16), &source, nullptr);
     }},
    {L"ZeDrawImageToFit", L"what is transparent stays so",
     [](ZeGraphicsContext& context, Samples& samples) {
         drawChequers(context);
         const Source source(samples);
         context.ZeDrawImageToFit(ZeRect(27.0, 10.0, kPictureWidth, kPictureHeight), &source, nullptr);
     }},
    {L"ZeDrawImage1to1", L"(20, 10, 60, 44), in place",
     [](ZeGraphicsContext& context, Samples& samples) {
         const Source source(samples);
         context.ZeFillRectSolid(kPale, ZeRect(kPictureWidth, kPictureHeight));
         context.ZeDrawImage1to1(ZeRect(20, 10, 60, 44), &source, nullptr);
     },
     On::pixels},
    {L"ZeCopyBitmap", L"that part, to two places",
     [](ZeGraphicsContext& context, Samples& samples) {
         const Source source(samples);
         context.ZeCopyBitmap({8, 20}, &source, nullptr, ZeRect(20, 10, 60, 44));
         context.ZeCopyBitmap({82, 20}, &source, nullptr, ZeRect(20, 10, 60, 44));
     },
     On::pixels},
    {L"ZeCopyBitmap", L"from the context to itself",
     [](ZeGraphicsContext& context, Samples& samples) {
         const Source source(samples);
         context.ZeCopyBitmap({4, 10}, &source, nullptr, ZeRect(2, 4, 36, 56));
         for (int i = 1; i < 4; ++i) context.ZeCopyBitmap({4.0 + 36 * i, 10}, &context, nullptr, ZeRect(4, 10, 36, 56));
     },
     On::pixels},
    {L"ZeCopySubBitmap", L"what ZeCreateSubBitmap cut",
     [](ZeGraphicsContext& context, Samples& samples) {
         const Source source(samples);
         ZeRect rect(10, 20, 30, 30);
         ZeBitmap* whole = nullptr;
         ZeBitmap* const part = context.ZeCreateSubBitmap(&source, rect, &whole);
         context.ZeCopySubBitmap({60, 27}, part, rect, &whole);
     },
     On::pixels},
    {L"ZeCreateSubBitmap", L"a bitmap's four quarters", drawQuarters, On::pixels},
    {L"ZeBitmap of a context", L"all of it, scaled into 50 by 28", drawThumbnail, On::pixels},
    {L"ZeCreateImageFromContext", L"a snapshot, drawn five times", drawSnapshot, On::pixels},
    {L"ZeGraphicsContext", L"of an image, drawn over", drawOffScreen, On::pixels},
    {L"ZeResourceBitmap", L"a file by name and type", drawLoaded, On::pixels},
};

} // namespace

Section images() { return {L"Images", kFields}; }
