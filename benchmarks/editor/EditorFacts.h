#pragma once

/// Which editor is opened, as the command line tells it.

#include <cstdint>
#include <map>
#include <string>
#include <vector>

struct EditorFacts {
    std::string bundle;                   ///< folder, with a slash at its end
    std::string library;                  ///< file of the editor's code
    std::string editor;                   ///< URI
    std::string plugin;                   ///< URI
    std::map<std::uint32_t, float> ports; ///< the values of the input ports
    std::uint32_t changedPort = 0;        ///< the one that a value change is about
    float values[2] = {};                 ///< between which it changes
    float scale = 1;
    unsigned count = 0; ///< of what is repeated; 0 for the measurement's own number

    /// @param arguments  words of the form `name=value`; `port=3:0.5`, `change=3:0.2:0.8`
    /// @throw std::invalid_argument naming the word that can't be read, or what is missing
    static EditorFacts read(const std::vector<std::string>& arguments);
};
