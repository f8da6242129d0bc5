#include "ui/Xvfb.h"

#include <stdexcept>

namespace {

constexpr double kStartSeconds = 20;

std::vector<std::string> CommandLine(const std::string& depth, const std::vector<std::string>& options)
{
    const std::string screen = std::to_string(Xvfb::kWidth) + "x" + std::to_string(Xvfb::kHeight) + "x" + depth;
    std::vector<std::string> words = {"Xvfb", "-displayfd", "1", "-screen", "0", screen, "-nolisten", "tcp"};
    words.insert(words.end(), options.begin(), options.end());
    return words;
}

} // namespace

Xvfb::Xvfb(const std::string& depth, const std::vector<std::string>& options)
{
    mServer.emplace(CommandLine(depth, options));
    const auto number = mServer->nextLine(kStartSeconds);
    if (!number) throw std::runtime_error("Xvfb does not start");
    mDisplay = ":" + number->text;
}
