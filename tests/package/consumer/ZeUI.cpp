// A bitmap of its own.
#include "ZeUIBitmap.h"

#include <cstdio>

int main()
{
    const auto context = CGBitmapContextCreate(8, 8);
    const ZeBitmap bitmap(context, ZeRect(0, 0, 4, 3), true);
    std::puts(bitmap.GetWidth() == 4 && bitmap.GetHeight() == 3 ? "ZeUI works" : "wrong bitmap");
}
