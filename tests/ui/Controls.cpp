#include "ui/Controls.h"

#include "ui/Program.h"

#include <algorithm>
#include <stdexcept>

#include <nlohmann/json.hpp>

Controls::Controls(const std::vector<std::string>& options)
{
    std::vector<std::string> words = {TONARO_PROGRAM, "--controls"};
    words.insert(words.end(), options.begin(), options.end());
    const auto list = nlohmann::json::parse(Program(words).allOutput(), nullptr, false);
    if (!list.is_array()) throw std::runtime_error("tonaro --controls prints no list");
    for (const auto& entry : list) {
        const auto frame = entry.at("frame").get<std::array<double, 4>>();
        mControls.push_back({.outlet = entry.at("outlet").get<std::string>(),
                             .frame = CGRectMake(frame[0], frame[1], frame[2], frame[3]),
                             .enabled = entry.at("enabled").get<bool>(),
                             .items = entry.value("items", std::vector<std::string>())});
    }
}

const Control& Controls::operator[](const std::string& outlet) const
{
    const auto found = std::find_if(mControls.begin(), mControls.end(),
                                    [&](const Control& control) { return control.outlet == outlet; });
    if (found == mControls.end()) throw std::runtime_error("no control \"" + outlet + "\"");
    return *found;
}
