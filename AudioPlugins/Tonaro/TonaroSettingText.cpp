#include "TonaroSettingText.h"

#include "TonaroLetterCase.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace {

constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kDividers = "\n\r,;";
constexpr std::string_view kOption = "--set";
constexpr std::size_t kLongestProblem = 40; // bytes of the text that are repeated

std::string_view trimmed(std::string_view text)
{
    const std::size_t start = text.find_first_not_of(kBlanks);
    if (start == text.npos) return {};
    return text.substr(start, text.find_last_not_of(kBlanks) + 1 - start);
}

/// @return false where the text is no finite number, and no name of a waveform where one may stand
bool readValue(std::size_t parameter, std::string_view text, float& value)
{
    if (parameter == kParamWaveform) {
        const auto named = std::find_if(kTonaroWaveformNames.begin(), kTonaroWaveformNames.end(),
                                        [text](std::string_view name) { return equalIgnoringCase(name, text); });
        if (named != kTonaroWaveformNames.end()) {
            value = static_cast<float>(named - kTonaroWaveformNames.begin());
            return true;
        }
    }
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() && std::isfinite(value);
}

bool readEntry(std::string_view entry, TonaroSetting& setting)
{
    if (entry.starts_with(kOption)) entry = trimmed(entry.substr(kOption.size()));
    const std::size_t equals = entry.find('=');
    if (equals == entry.npos) return false;
    const std::string_view name = trimmed(entry.substr(0, equals));
    const auto found = std::find(kTonaroParameterNames.begin(), kTonaroParameterNames.end(), name);
    if (found == kTonaroParameterNames.end()) return false;
    const auto parameter = static_cast<std::uint32_t>(found - kTonaroParameterNames.begin());
    float value = 0;
    if (!readValue(parameter, trimmed(entry.substr(equals + 1)), value)) return false;
    std::erase_if(setting, [parameter](const auto& earlier) { return earlier.first == parameter; });
    setting.emplace_back(parameter, value);
    return true;
}

/// Its start, whole characters of UTF-8, and an ellipsis where there is more.
std::string quoteOf(std::string_view entry)
{
    if (entry.size() <= kLongestProblem) return std::string(entry);
    std::size_t end = kLongestProblem;
    while (end > 0 && (static_cast<unsigned char>(entry[end]) & 0xC0) == 0x80) --end;
    return std::string(entry.substr(0, end)) + "…";
}

} // namespace

std::string shortestText(float value)
{
    char text[64];
    return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

std::string TonaroSettingText(const std::array<float, kParamCount>& values)
{
    std::string text;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const bool isNamed = i == kParamWaveform && values[i] >= 0 && values[i] < kTonaroWaveformNames.size();
        const std::string value =
            isNamed ? std::string(kTonaroWaveformNames[static_cast<std::size_t>(values[i])]) : shortestText(values[i]);
        text += std::string(kTonaroParameterNames[i]) + "=" + value + "\n";
    }
    return text;
}

TonaroSetting TonaroSettingFromText(std::string_view text, std::string& problem)
{
    TonaroSetting setting;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of(kDividers), text.size());
        const std::string_view entry = trimmed(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        if (entry.empty() || readEntry(entry, setting)) continue;
        problem = quoteOf(entry);
        return {};
    }
    return setting;
}
