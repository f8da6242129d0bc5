#pragma once

/// One text to another, as the options say.

#include "ZePrint.h"
#include "zepos/Options.h"

#include <optional>
#include <string>
#include <string_view>

class Converter {
public:
    explicit Converter(const Options& options);

    /// What is to be said of a text.
    struct Remark {
        bool refused;            ///< false: it was converted up to `stop`
        std::string_view reason; ///< lives on
        std::size_t stop;        ///< the first character that was not read, counted in code points
    };

    /// Converts `text`, UTF-8, and appends the result and a newline to `out` unless it is refused.
    std::optional<Remark> convert(std::string_view text, std::string& out);

    /// The tidy ruler step near `span` samples in the target's format, and its outputs: "441000 coarse 10".
    /// Throws std::range_error where rates at the ends of a double leave no finite step.
    std::string ticksFor(double span);

private:
    bool readPlainCount(std::string_view text, long long& position) const;
    std::optional<Remark> read(std::string_view text, long long& position);
    void write(long long position, std::string& out);

    ZePosFmt mFrom, mTo;
    bool mWritesPlainCount;
    unsigned mReadFlags, mWriteFlags;
    ZeString mText; // kept, so that a conversion asks for no memory
};

/// One line a format: its name, position 1800000 in it, what it means.
std::string formatList(Options options);
