#include "EditorFacts.h"

#include <functional>
#include <sstream>
#include <stdexcept>

namespace {

/// Numbers with colons between them; as many as are asked for.
template <typename... T> void readNumbers(const std::string& text, T&... numbers)
{
    std::istringstream in(text);
    in.imbue(std::locale::classic());
    bool isFirst = true;
    const auto read = [&](auto& number) {
        if (!isFirst && in.get() != ':') in.setstate(std::ios::failbit);
        isFirst = false;
        in >> number;
    };
    (read(numbers), ...);
    if (!in || in.peek() != std::istringstream::traits_type::eof()) throw std::invalid_argument(text);
}

} // namespace

EditorFacts EditorFacts::read(const std::vector<std::string>& arguments)
{
    EditorFacts facts;
    const auto readPort = [&](const std::string& text) {
        std::uint32_t port = 0;
        float value = 0;
        readNumbers(text, port, value);
        facts.ports[port] = value;
    };
    const std::map<std::string, std::function<void(const std::string&)>> readers{
        {"bundle", [&](const std::string& text) { facts.bundle = text; }},
        {"library", [&](const std::string& text) { facts.library = text; }},
        {"editor", [&](const std::string& text) { facts.editor = text; }},
        {"plugin", [&](const std::string& text) { facts.plugin = text; }},
        {"port", readPort},
        {"change",
         [&](const std::string& text) { readNumbers(text, facts.changedPort, facts.values[0], facts.values[1]); }},
        {"scale", [&](const std::string& text) { readNumbers(text, facts.scale); }},
        {"count", [&](const std::string& text) { readNumbers(text, facts.count); }},
    };
    for (const std::string& word : arguments) {
        const auto equals = word.find('=');
        const auto reader = readers.find(word.substr(0, equals));
        if (equals == std::string::npos || reader == readers.end()) throw std::invalid_argument(word);
        reader->second(word.substr(equals + 1));
    }
    for (const auto* needed : {&facts.bundle, &facts.library, &facts.editor, &facts.plugin})
        if (needed->empty()) throw std::invalid_argument("bundle, library, editor and plugin are needed");
    return facts;
}
