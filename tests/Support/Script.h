#pragma once

/// Steps of a test, written down: "press:25 S-drag:30 release wait:0.5 Ret".
///
/// Each word is a verb of the rig's table, with what follows its colon; "S-" before it holds Shift. Any other word goes
/// to `otherwise`, and is an error where there is none.

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <initializer_list>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

struct Step {
    std::string what; ///< behind the colon
    bool shift = false;

    double number() const { return std::stod(what); }
    /// "12,5" or "1=440" as two numbers.
    std::vector<double> numbers() const
    {
        std::vector<double> all;
        std::string text = what;
        std::replace_if(
            text.begin(), text.end(), [](char c) { return c == ',' || c == '='; }, ' ');
        std::istringstream words(text);
        for (std::string word; words >> word;) all.push_back(std::stod(word));
        return all;
    }
};

class Script {
public:
    using Verb = std::function<void(const Step&)>;
    std::map<std::string, Verb> verbs;
    std::function<void(const std::string& word)> otherwise;

    void play(std::string_view steps) const
    {
        std::istringstream words{std::string(steps)};
        for (std::string word; words >> word;) {
            const bool shift = word.starts_with("S-") && word.find(':') != word.npos;
            const std::string step = word.substr(shift ? 2 : 0);
            const std::size_t colon = std::min(step.find(':'), step.size());
            const auto verb = verbs.find(step.substr(0, colon));
            if (verb != verbs.end())
                verb->second({step.substr(std::min(colon + 1, step.size())), shift});
            else if (otherwise)
                otherwise(word);
            else
                throw std::runtime_error("no step: " + word);
        }
    }
};

/// What a rig notes of a script.
struct LoggedScript {
    const char* why;
    const char* script;
    const char* log;
};

/// Plays each in a rig of its own, whose `play` tells what was noted.
template <typename Rig> void ExpectLogs(std::initializer_list<LoggedScript> rows)
{
    for (const LoggedScript& row : rows) {
        SCOPED_TRACE(std::string(row.why) + ": " + row.script);
        Rig rig;
        EXPECT_EQ(rig.play(row.script), row.log);
    }
}
