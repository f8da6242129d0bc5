// The position converter: the first line is its command line, the rest its standard input.

#include "FuzzInput.h"
#include "zepos/Converter.h"
#include "zepos/Lines.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

namespace {

class MemoryFile {
public:
    explicit MemoryFile(std::string_view bytes) : mFile(memfd_create("input", 0))
    {
        const bool isWritten = write(mFile, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
        FuzzExpect(isWritten && lseek(mFile, 0, SEEK_SET) == 0, "memory holds the input");
    }
    ~MemoryFile() { close(mFile); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    int descriptor() const { return mFile; }
    off_t size() const { return lseek(mFile, 0, SEEK_END); }

private:
    int mFile;
};

std::vector<std::string> wordsOf(std::string_view line)
{
    std::vector<std::string> words = {"zepos"};
    std::string word;
    for (const char c : std::string(line) + ' ') {
        if (c != ' ' && c != '\0')
            word += c;
        else if (!word.empty())
            words.push_back(std::exchange(word, {}));
    }
    return words;
}

void run(const Options& options, std::string_view input)
{
    Converter converter(options);
    if (options.mode == Options::Mode::ticks) converter.ticksFor(options.span);
    if (options.mode == Options::Mode::listFormats) formatList(options);
    if (options.mode != Options::Mode::convert) return;
    const MemoryFile in(input), out("");
    Lines lines(converter, out.descriptor());
    const bool allRead =
        options.operands.empty() ? lines.convertLines(in.descriptor()) : lines.convertOperands(options.operands);
    FuzzExpect(allRead || !input.empty() || !options.operands.empty(), "nothing can't be refused");
    FuzzExpect(out.size() == 0 || !input.empty() || !options.operands.empty(), "nothing gives nothing");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static std::FILE* const refusals = std::fopen("/dev/null", "w");
    stderr = refusals;
    FuzzInput input(data, size);
    std::vector<std::string> words = wordsOf(input.line());
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    try {
        run(parseOptions(static_cast<int>(words.size()), arguments.data()), input.rest());
    } catch (const UsageError&) {
        return -1; // of no use as a seed
    }
    return 0;
}
