// A position as timecode, and back.
#include "ZePrint.h"

#include <cstdio>

int main()
{
    ZePosFmt format;
    format.dwSampleRate = 44100;
    format.setType(QVPOSFMT_SMPTE_DROP);
    ZeString text;
    format.stringValue(text, 1800000, 0);
    const bool works = text == L"00:00:40;23" && format.numberValue(text, 0) != 0;
    std::puts(works ? "ZeKernel works" : "wrong timecode");
}
