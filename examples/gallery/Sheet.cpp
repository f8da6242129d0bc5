#include "Sheet.h"

#include <cmath>
#include <filesystem>
#include <stdexcept>

namespace {

constexpr int kColumns = 6;
constexpr double kGap = 14, kHeadingHeight = 34, kLabelHeight = 34, kLineHeight = 13;
constexpr double kWidth = kColumns * (kFieldWidth + kGap) + kGap;
constexpr double kRowHeight = kFieldHeight + kLabelHeight;
enum Font { kLabelFont = 3, kHeadingFont = 5 };

double heightOf(const Section& section)
{
    const std::size_t rows = (section.fields.size() + kColumns - 1) / kColumns;
    return kHeadingHeight + static_cast<double>(rows) * kRowHeight;
}

double heightOf(std::span<const Section> sections)
{
    double height = kGap;
    for (const Section& section : sections) height += heightOf(section);
    return height;
}

void drawText(ZeGraphicsContext& sheet, const wchar_t* text, ZeRect rect, ZeGuiDefs::Color color, Font font)
{
    if (sheet.GetSizeWithFont(text, font).width > rect.width)
        throw std::runtime_error("a label is too long: " + std::filesystem::path(text).string());
    sheet.ZeDrawString(text, rect, color, font, ZeGraphicsContext::eHAlignLeft, ZeGraphicsContext::eVAlignDescent,
                       ZeGraphicsContext::eTrimNone);
}

void drawOn(ZeGraphicsContext& context, const Field& field, Samples& samples)
{
    context.ZeFillRectSolid(kWhite, ZeRect(kFieldWidth, kFieldHeight));
    field.draw(context, samples);
}

void drawInPixels(ZeGraphicsContext& sheet, const Field& field, Samples& samples)
{
    const ZeRect all(kFieldWidth, kFieldHeight);
    const ZeBitmap blank(sheet.context, all, false);
    ZeGraphicsContext canvas(blank.GetImage(), false);
    drawOn(canvas, field, samples);
    sheet.ZeDrawImageToFit(all, &canvas, nullptr);
}

void drawField(ZeGraphicsContext& sheet, const Field& field, Samples& samples, double x, double y)
{
    sheet.ZeFillRectSolid(colorOf(0xC4CCD4), ZeRect(x - 1, y - 1, kFieldWidth + 2, kFieldHeight + 2));
    {
        const ScopedGState state(sheet.context);
        CGContextTranslateCTM(sheet.context, x, y);
        CGContextClipToRect(sheet.context, CGRectMake(0, 0, kFieldWidth, kFieldHeight));
        field.on == On::pixels ? drawInPixels(sheet, field, samples) : drawOn(sheet, field, samples);
    }
    const double label = y + kFieldHeight + 2;
    drawText(sheet, field.operation, ZeRect(x, label, kFieldWidth, kLineHeight), kBlack, kLabelFont);
    drawText(sheet, field.note, ZeRect(x, label + kLineHeight, kFieldWidth, kLineHeight), kGrey, kLabelFont);
}

void drawSection(ZeGraphicsContext& sheet, const Section& section, Samples& samples, double y)
{
    drawText(sheet, section.heading, ZeRect(kGap, y, kWidth, kHeadingHeight - 8), kBlack, kHeadingFont);
    for (std::size_t i = 0; i < section.fields.size(); ++i) {
        const std::size_t row = i / kColumns, column = i % kColumns;
        drawField(sheet, section.fields[i], samples, kGap + static_cast<double>(column) * (kFieldWidth + kGap),
                  y + kHeadingHeight + static_cast<double>(row) * kRowHeight);
    }
}

std::size_t pixels(double units, double scale) { return static_cast<std::size_t>(std::ceil(units * scale)); }

} // namespace

RetainPtr<CGImage> drawSheet(std::span<const Section> sections, Samples& samples, double scale)
{
    const double height = heightOf(sections);
    const auto context = CGBitmapContextCreate(pixels(kWidth, scale), pixels(height, scale));
    CGContextScaleCTM(context, scale, scale);
    ZeGraphicsContext sheet(context);
    sheet.ZeFillRectSolid(colorOf(0xF2F4F6), ZeRect(kWidth + 1, height + 1));
    double y = 0;
    for (const Section& section : sections) {
        drawSection(sheet, section, samples, y);
        y += heightOf(section);
    }
    return CGBitmapContextCreateImage(context);
}
