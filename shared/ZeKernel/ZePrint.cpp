#include "ZePrint.h"

#include "ZePropertyMap.h"

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>

ZeFormatterPlatform::~ZeFormatterPlatform() = default;

void ZePosFmt::setType(_qvposfmt_format type)
{
    eFormat = type;
    const PosFmtFacts* facts = PosFmtFactsOf(type);
    if (facts && facts->typeFrameRate != 0.0) dFrameRate = facts->typeFrameRate;
}

bool ZePosFmt::isHMSF() const
{
    const PosFmtFacts* facts = PosFmtFactsOf(eFormat);
    return facts && facts->isHMSF;
}

void ZePosFmt::Cleanup() { delete std::exchange(pFormatter, nullptr); }
