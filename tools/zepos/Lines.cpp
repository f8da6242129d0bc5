#include "zepos/Lines.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <unistd.h>
#include <vector>

namespace {

constexpr std::size_t kPiece = 1 << 16;
constexpr std::size_t kLongestLine = 1 << 16; // formats refuse far shorter text
constexpr std::size_t kShown = 100;           // characters of a text in an error

[[noreturn]] void fail(const char* what) { throw std::system_error(errno, std::generic_category(), what); }

std::size_t readSome(int in, char* to, std::size_t room)
{
    for (;;) {
        const ssize_t count = ::read(in, to, room);
        if (count >= 0) return static_cast<std::size_t>(count);
        if (errno != EINTR) fail("standard input");
    }
}

/// Length of the UTF-8 sequence that starts with `lead`; 1 for a byte that starts none.
std::size_t sequenceLength(char lead)
{
    const auto byte = static_cast<unsigned char>(lead);
    return byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : byte >= 0xC0 ? 2 : 1;
}

/// The start of a text as it can be shown, and the blanks that bring a caret under its character number `stop`.
struct Shown {
    std::string text, blanks;
};

Shown shownOf(std::string_view text, std::size_t stop)
{
    Shown shown;
    for (std::size_t at = 0, index = 0; at < text.size() && index < kShown; ++index) {
        const std::string_view character = text.substr(at, sequenceLength(text[at]));
        std::mbstate_t state{};
        wchar_t point = 0;
        const bool isWhole = std::mbrtowc(&point, character.data(), character.size(), &state) == character.size();
        const int width = isWhole ? wcwidth(point) : -1; // -1: nothing that a terminal should see
        shown.text += width < 0 ? std::string_view("?") : character;
        if (index < stop) shown.blanks.append(width < 0 ? 1 : static_cast<std::size_t>(width), ' ');
        at += isWhole ? character.size() : 1;
    }
    return shown;
}

} // namespace

Lines::Lines(Converter& converter, int out) : mConverter(converter), mOut(out), mIsTerminal(isatty(out)) {}

void Lines::flush()
{
    for (std::size_t done = 0; done < mWritten.size();) {
        const ssize_t count = ::write(mOut, mWritten.data() + done, mWritten.size() - done);
        if (count < 0 && errno != EINTR) fail("standard output");
        done += count < 0 ? 0 : static_cast<std::size_t>(count);
    }
    mWritten.clear();
}

void Lines::report(const char* kind, std::size_t number, std::string_view text, const Converter::Remark& remark)
{
    if (mIsTerminal) flush(); // in the order of the input
    const Shown shown = shownOf(text, remark.stop);
    std::string message = std::string("zepos: ") + kind + ' ' + std::to_string(number) + ": ";
    if (!remark.refused) message += "warning: not read to its end: ";
    message.append(remark.reason).append("\n  ").append(shown.text).append("\n  ").append(shown.blanks).append("^\n");
    std::fwrite(message.data(), 1, message.size(), stderr);
    if (remark.refused) mAllRead = false;
}

void Lines::convert(const char* kind, std::size_t number, std::string_view text)
{
    if (const auto remark = mConverter.convert(text, mWritten)) report(kind, number, text, *remark);
    if (mWritten.size() >= kPiece) flush();
}

bool Lines::convertOperands(std::span<const std::string_view> operands)
{
    for (std::size_t i = 0; i < operands.size(); ++i) convert("operand", i + 1, operands[i]);
    flush();
    return mAllRead;
}

bool Lines::convertLines(int in)
{
    std::vector<char> buffer(2 * kLongestLine);
    std::size_t held = 0, number = 0;
    bool skipping = false; // the rest of a line that was too long
    const auto take = [&](std::string_view line) {
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        if (!std::exchange(skipping, false)) convert("line", ++number, line);
    };
    for (;;) {
        flush();
        const std::size_t count = readSome(in, buffer.data() + held, buffer.size() - held);
        const char* at = buffer.data();
        const char* const end = at + held + count;
        while (const void* found = std::memchr(at, '\n', static_cast<std::size_t>(end - at))) {
            const char* const newline = static_cast<const char*>(found);
            take({at, newline});
            at = newline + 1;
        }
        if (count == 0) {
            if (at != end) take({at, end});
            break;
        }
        held = static_cast<std::size_t>(end - at);
        if (held > kLongestLine) {
            const std::string_view start(at, held);
            if (!std::exchange(skipping, true))
                report("line", ++number, start, {true, PosFmtReasonText(PosFmtReason::TextTooLong), kShown});
            held = 0;
        }
        std::memmove(buffer.data(), at, held);
    }
    flush();
    return mAllRead;
}
