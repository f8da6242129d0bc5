#include "Sections.h"

namespace {

using Context = ZeGraphicsContext;

constexpr const wchar_t* kLongText = L"Sine, 20 Hz to 20 kHz";

ZeString numbersOf(tagSIZE size) { return std::to_wstring(size.width) + L" by " + std::to_wstring(size.height); }

template <int fontId> void drawFont(ZeGraphicsContext& context, Samples&)
{
    const ZeRect upper(0.0, 8.0, kFieldWidth, 24.0), lower(0.0, 34.0, kFieldWidth, 24.0);
    for (const auto& [text, rect] : {std::pair(L"Tone 440.5 Hz", upper), std::pair(L"00:59:59;29", lower)})
        context.ZeDrawString(text, rect, kBlack, fontId, Context::eHAlignCenter, Context::eVAlignMiddle,
                             Context::eTrimNone);
    context.ZeDrawString(numbersOf(Context::GetFontSize(fontId)), ZeRect(0.0, 60.0, kFieldWidth, 20.0), kGrey, 4,
                         Context::eHAlignCenter, Context::eVAlignMiddle, Context::eTrimNone);
}

template <Context::_eHAlign h, Context::_eVAlign v> void drawAligned(ZeGraphicsContext& context, Samples&)
{
    const ZeRect rect(15, 12, 120, 60);
    context.ZeFillRectSolid(kPale, rect);
    context.ZeDrawString(L"Sine (log)", rect, kBlack, 0, h, v, Context::eTrimNone);
}

template <Context::_eTrim trim, int width = 90> void drawTrimmed(ZeGraphicsContext& context, Samples&)
{
    const ZeRect rect(10, 28, width, 28);
    context.ZeFillRectSolid(kPale, rect);
    context.ZeDrawString(kLongText, rect, kBlack, 0, Context::eHAlignLeft, Context::eVAlignMiddle, trim);
}

/// The text on a bar as wide as `size`.
void drawMeasured(ZeGraphicsContext& context, tagSIZE size)
{
    const ZeRect rect(10.0, 24.0, static_cast<double>(size.width), static_cast<double>(size.height));
    context.ZeFillRectSolid(colorOf(0xF0C040, 0x90), rect);
    context.ZeDrawString(L"Sine sweep", rect, kBlack, 0, Context::eHAlignLeft, Context::eVAlignTop, Context::eTrimNone);
    context.ZeDrawString(numbersOf(size), ZeRect(10, 50, 130, 20), kGrey, 4, Context::eHAlignLeft, Context::eVAlignTop,
                         Context::eTrimNone);
}

constexpr Field kFields[] = {
    {L"Font 0, GetFontSize", L"Lucida Grande 12", drawFont<0>},
    {L"Font 1, GetFontSize", L"Lucida Grande-Bold 12", drawFont<1>},
    {L"Font 2, GetFontSize", L"Monaco 12", drawFont<2>},
    {L"Font 3, GetFontSize", L"Lucida Grande 10", drawFont<3>},
    {L"Font 4, GetFontSize", L"Monaco 10", drawFont<4>},
    {L"Font 5, GetFontSize", L"Times Roman 16", drawFont<5>},
    {L"ZeDrawString", L"left, top", drawAligned<Context::eHAlignLeft, Context::eVAlignTop>},
    {L"ZeDrawString", L"left, middle", drawAligned<Context::eHAlignLeft, Context::eVAlignMiddle>},
    {L"ZeDrawString", L"left, bottom", drawAligned<Context::eHAlignLeft, Context::eVAlignBottom>},
    {L"ZeDrawString", L"left, descent at the bottom", drawAligned<Context::eHAlignLeft, Context::eVAlignDescent>},
    {L"ZeDrawString", L"centre, top", drawAligned<Context::eHAlignCenter, Context::eVAlignTop>},
    {L"ZeDrawString", L"centre, middle", drawAligned<Context::eHAlignCenter, Context::eVAlignMiddle>},
    {L"ZeDrawString, trim 0", L"goes on beyond its rectangle", drawTrimmed<Context::eTrimNone>},
    {L"ZeDrawString, trim 1", L"to the width and 2 more", drawTrimmed<Context::eTrimEnd>},
    {L"ZeDrawString, trim 3", L"an ellipsis at the end", drawTrimmed<Context::eTrimEndEllipsis>},
    {L"ZeDrawString, trim 5", L"an ellipsis in the middle", drawTrimmed<Context::eTrimMiddleEllipsis>},
    {L"GetSizeWithFont", L"the inked area, measured",
     [](ZeGraphicsContext& context, Samples&) { drawMeasured(context, context.GetSizeWithFont(L"Sine sweep", 0)); }},
    {L"GetSizeWithFontForScreen", L"a guess from the size of \"0\"",
     [](ZeGraphicsContext& context, Samples&) {
         drawMeasured(context, Context::GetSizeWithFontForScreen(L"Sine sweep", 0));
     }},
};

} // namespace

Section text() { return {L"Text", kFields}; }
