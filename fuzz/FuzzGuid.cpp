// Identifiers from text, wide and narrow.

#include "FuzzInput.h"

#include <algorithm>
#include <cstring>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    _GUID narrow, wide, again;
    ZeGuidFromStringA(_ZeString<char>(std::string(bytes)), narrow);
    ZeGuidFromString(FuzzText(bytes), wide);
    const bool isAscii =
        std::all_of(bytes.begin(), bytes.end(), [](char c) { return static_cast<signed char>(c) >= 0; });
    FuzzExpect(!isAscii || std::memcmp(&narrow, &wide, sizeof narrow) == 0, "both kinds of text read the same");

    ZeString text;
    _ZeString<char> narrowText;
    ZeGuidToString(text, wide);
    ZeGuidFromString(text, again);
    FuzzExpect(text.size() == 36 && std::memcmp(&again, &wide, sizeof wide) == 0, "an identifier reads back");
    ZeGuidToStringA(narrowText, wide);
    FuzzExpect(std::equal(text.begin(), text.end(), narrowText.begin(), narrowText.end()), "both texts are the same");
    return 0;
}
