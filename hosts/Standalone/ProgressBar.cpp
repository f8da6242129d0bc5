#include "Standalone/ProgressBar.h"

#include <unistd.h>

namespace {

constexpr int kCells = 20;

} // namespace

ProgressBar::ProgressBar(std::string name, std::FILE* file)
    : mName(std::move(name)), mFile(isatty(fileno(file)) ? file : nullptr)
{
}

ProgressBar::~ProgressBar()
{
    if (mFile && mPercent >= 0) std::fputc('\n', mFile);
}

void ProgressBar::show(std::uint64_t done, std::uint64_t all)
{
    const double part = all ? static_cast<double>(done) / static_cast<double>(all) : 1;
    const int percent = static_cast<int>(part * 100);
    if (!mFile || percent == mPercent) return;
    mPercent = percent;
    const auto filled = static_cast<std::size_t>(percent * kCells / 100);
    const std::string bar = std::string(filled, '#') + std::string(kCells - filled, '-');
    std::fprintf(mFile, "\r%s  [%s] %3d %%", mName.c_str(), bar.c_str(), percent);
    std::fflush(mFile);
}
