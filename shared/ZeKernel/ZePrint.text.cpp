#include "ZePrint.h"

// The members that need the platform's formatter; a program that only converts doesn't link them.

namespace {

/// Sums and differences of positions wrap.
long long Sum(long long a, long long b)
{
    return static_cast<long long>(static_cast<unsigned long long>(a) + static_cast<unsigned long long>(b));
}

long long Difference(long long a, long long b)
{
    return static_cast<long long>(static_cast<unsigned long long>(a) - static_cast<unsigned long long>(b));
}

} // namespace

void ZePosFmt::stringValue(ZeString& out, long long position, unsigned flags)
{
    if (!initFormatter()) return;
    pFormatter->stringValue(out, flags & kPosFmtLength ? position : Difference(position, ntOffset), *this, flags);
}

long long ZePosFmt::numberValue(const ZeString& text, unsigned flags)
{
    if (!initFormatter()) return 0;
    const long long position = pFormatter->numberValue(text, *this, flags);
    return flags & kPosFmtLength ? position : Sum(position, ntOffset);
}

PosFmtReading ZePosFmt::readValue(const ZeString& text, unsigned flags)
{
    if (!initFormatter()) return {false, PosFmtReason::NoConversion, 0, 0};
    PosFmtReading reading = pFormatter->readValue(text, *this, flags);
    if (!(flags & kPosFmtLength)) reading.position = Sum(reading.position, ntOffset);
    return reading;
}

double ZePosFmt::formatTicks(double span, bool* coarse, unsigned* stepCount)
{
    return initFormatter() ? pFormatter->formatTicks(span, *this, coarse, stepCount) : span;
}
