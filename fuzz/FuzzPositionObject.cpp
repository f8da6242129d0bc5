// Text and positions through the format object, with any format and parameters.

#include "FuzzInput.h"
#include "ZePrint.h"

#include <cstdlib>

namespace {

ZePosFmt& keptFormat()
{
    setenv("LC_ALL", "en_US.UTF-8", 1); // findings are the same everywhere
    static ZePosFmt fmt;                // its formatter takes long to make
    return fmt;
}

void takeParameters(ZePosFmt& fmt, FuzzInput& input)
{
    fmt.dwSampleRate = input.take<unsigned>();
    fmt.dFrameRate = input.take<double>();
    fmt.dTempo = input.take<double>();
    fmt.ntOffset = input.take<long long>();
    fmt.ccPercentBase = input.take<long long>();
    fmt.dwTimeSignature = input.take<unsigned>();
    fmt.cTicksPerBeat = input.take<unsigned>();
    // one more than there are formats, so that values outside are tried too
    fmt.setType(static_cast<_qvposfmt_format>(input.take<std::uint8_t>() % (QVPOSFMT_PERCENT + 2)));
}

void read(ZePosFmt& fmt, const ZeString& text, unsigned flags)
{
    const PosFmtReading reading = fmt.readValue(text, flags);
    FuzzExpect(reading.stop <= text.size(), "reading stops inside the text");
    FuzzExpect(*PosFmtReasonText(reading.reason) || reading.reason == PosFmtReason::None, "each reason has a text");
    FuzzExpect(reading.accepted || reading.reason != PosFmtReason::None, "refused text has a reason");
    FuzzExpect(!reading.accepted || reading.reason != PosFmtReason::None || text.c_str()[reading.stop] == 0,
               "text without a remark was read to its end");
    const long long offset = flags & kPosFmtLength ? 0 : fmt.ntOffset;
    FuzzExpect(fmt.numberValue(text, flags) == (reading.accepted ? reading.position : offset),
               "both calls read the same position");
}

void write(ZePosFmt& fmt, long long position, unsigned flags)
{
    ZeString text;
    fmt.stringValue(text, position, flags);
    FuzzExpect(!text.empty() && text.size() < 80, "each position has a text of at most 79 characters");
    for (const wchar_t c : text) FuzzExpect(c != L'n' && c != L'N' && c != 0, "no text is \"nan\" or \"inf\"");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    FuzzInput input(data, size);
    ZePosFmt& fmt = keptFormat();
    takeParameters(fmt, input);
    const unsigned flags = input.take<std::uint8_t>() % 8;
    const auto position = input.take<long long>();
    const auto span = input.take<double>();
    read(fmt, FuzzText(input.rest()), flags);
    write(fmt, position, flags);
    bool coarse = false;
    unsigned stepCount = 0;
    fmt.formatTicks(span, &coarse, &stepCount);
    fmt.getIncrement();
    RateFromPosFmt(fmt);
    return 0;
}
