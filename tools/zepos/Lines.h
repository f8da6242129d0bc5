#pragma once

/// Texts in, texts out, and errors with their place.
///
/// Output is collected and written in large pieces, at the latest before more input is waited for. Input that is
/// refused is told to standard error, and the rest goes on.

#include "zepos/Converter.h"

#include <span>
#include <string_view>
#include <system_error>

class Lines {
public:
    /// @param out  descriptor of the output
    Lines(Converter& converter, int out);

    // Each answers whether all texts could be read. They throw std::system_error where reading or writing fails.
    bool convertOperands(std::span<const std::string_view> operands);
    /// Lines end with a newline, a carriage return before it is dropped; the last may have no end.
    bool convertLines(int in);

private:
    void convert(const char* kind, std::size_t number, std::string_view text);
    void report(const char* kind, std::size_t number, std::string_view text, const Converter::Remark& remark);
    void flush();

    Converter& mConverter;
    int mOut;
    bool mIsTerminal;
    bool mAllRead = true;
    std::string mWritten; // not yet handed on
};
