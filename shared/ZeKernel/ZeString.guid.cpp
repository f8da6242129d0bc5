#include "ZeString.h"

#include <array>
#include <cstdio>
#include <cwchar>

namespace {

/// The ten numbers of the text form, in its order.
using Numbers = std::array<unsigned, 10>;

Numbers NumbersOf(const _GUID& g)
{
    const auto& tail = g.Data4;
    return {g.Data1, g.Data2, g.Data3, tail[0] * 256u + tail[1], tail[2], tail[3], tail[4], tail[5], tail[6], tail[7]};
}

_GUID GuidOf(const Numbers& n)
{
    _GUID g = {n[0], static_cast<std::uint16_t>(n[1]), static_cast<std::uint16_t>(n[2]), {}};
    g.Data4[0] = static_cast<std::uint8_t>(n[3] >> 8);
    g.Data4[1] = static_cast<std::uint8_t>(n[3]);
    for (std::size_t i = 2; i < std::size(g.Data4); ++i) g.Data4[i] = static_cast<std::uint8_t>(n[i + 2]);
    return g;
}

} // namespace

void ZeGuidToString(ZeString& out, const _GUID& g)
{
    const Numbers n = NumbersOf(g);
    ZeSprintf(out, L"%08x-%04x-%04x-%04x-%02x%02x%02x%02x%02x%02x", n[0], n[1], n[2], n[3], n[4], n[5], n[6], n[7],
              n[8], n[9]);
}

void ZeGuidToStringA(_ZeString<char>& out, const _GUID& g)
{
    const Numbers n = NumbersOf(g);
    ZeSprintfA(out, "%08x-%04x-%04x-%04x-%02x%02x%02x%02x%02x%02x", n[0], n[1], n[2], n[3], n[4], n[5], n[6], n[7],
               n[8], n[9]);
}

// Choice: fields that the text doesn't supply become 0, whatever `g` held. Test: ZeGuid.ReadsWhatTheTextSupplies

void ZeGuidFromString(const ZeString& text, _GUID& g)
{
    Numbers n{};
    std::swscanf(text.c_str(), L"%8x-%4x-%4x-%4x-%2x%2x%2x%2x%2x%2x", &n[0], &n[1], &n[2], &n[3], &n[4], &n[5], &n[6],
                 &n[7], &n[8], &n[9]);
    g = GuidOf(n);
}

void ZeGuidFromStringA(const _ZeString<char>& text, _GUID& g)
{
    Numbers n{};
    std::sscanf(text.c_str(), "%8x-%4x-%4x-%4x-%2x%2x%2x%2x%2x%2x", &n[0], &n[1], &n[2], &n[3], &n[4], &n[5], &n[6],
                &n[7], &n[8], &n[9]);
    g = GuidOf(n);
}
