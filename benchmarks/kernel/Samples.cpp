#include "Samples.h"

#include <random>

void setUp(ZePosFmt& fmt, _qvposfmt_format format)
{
    fmt.dwSampleRate = kSampleRate;
    fmt.dFrameRate = 25;
    fmt.dTempo = 120;
    fmt.wBeatValue = fmt.wBeatsPerMeasure = 4;
    fmt.cTicksPerBeat = 960;
    fmt.ccPercentBase = 24LL * 3600 * kSampleRate;
    fmt.setType(format);
}

const Inputs<long long> kPositions = [] {
    std::mt19937_64 random(1);
    Inputs<long long> drawn{};
    for (long long& position : drawn) position = static_cast<long long>(random() % (24ULL * 3600 * kSampleRate));
    return drawn;
}();

Inputs<ZeString> textsOf(_qvposfmt_format format)
{
    ZePosFmt fmt;
    setUp(fmt, format);
    Inputs<ZeString> texts;
    for (std::size_t i = 0; i < kInputs; ++i) fmt.stringValue(texts[i], kPositions[i], 0);
    return texts;
}

Numbers numbersOf(const ZeString& text)
{
    Numbers numbers;
    bool isInside = false;
    for (const wchar_t c : text) {
        const bool isDigit = c >= L'0' && c <= L'9';
        if (isDigit && !isInside) ++numbers.count;
        if (isDigit) {
            unsigned& number = numbers.at[numbers.count - 1];
            number = number * 10 + static_cast<unsigned>(c - L'0');
        }
        isInside = isDigit;
    }
    return numbers;
}
