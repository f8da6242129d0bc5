#include "ui/Controls.h"

#include "ui/Program.h"

#include <algorithm>
#include <stdexcept>

#include <nlohmann/json.hpp>

namespace {

Control ControlFrom(const nlohmann::json& json)
{
    Control control;
    control.outlet = json.at("outlet").get<std::string>();
    control.className = json.at("class").get<std::string>();
    control.text = json.at("text").get<std::string>();
    control.action = json.at("action").get<std::string>();
    const auto frame = json.at("frame").get<std::vector<double>>();
    control.frame = CGRectMake(frame.at(0), frame.at(1), frame.at(2), frame.at(3));
    control.value = json.at("value").get<double>();
    control.enabled = json.at("enabled").get<bool>();
    control.items = json.value("items", std::vector<std::string>());
    return control;
}

} // namespace

Controls::Controls(const std::vector<std::string>& options)
{
    std::vector<std::string> words = {TONARO_PROGRAM, "--controls"};
    words.insert(words.end(), options.begin(), options.end());
    Program program(words);
    const auto list = nlohmann::json::parse(program.allOutput(), nullptr, false);
    if (!list.is_array()) throw std::runtime_error("tonaro --controls prints no list");
    for (const auto& entry : list) mControls.push_back(ControlFrom(entry));
}

const Control& Controls::operator[](const std::string& outlet) const
{
    const auto found = std::find_if(mControls.begin(), mControls.end(),
                                    [&](const Control& control) { return control.outlet == outlet; });
    if (found == mControls.end()) throw std::runtime_error("no control \"" + outlet + "\"");
    return *found;
}
