// Runs the built program as a shell does.

#include <array>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

struct Outcome {
    std::string out, error;
    int status;
};

std::string TakeFile(const std::string& path)
{
    std::stringstream text;
    text << std::ifstream(path).rdbuf();
    std::remove(path.c_str());
    return text.str();
}

/// @param arguments  as typed in a shell, redirections included
Outcome Zepos(const std::string& arguments, const std::string& input = "")
{
    const std::string base = testing::TempDir() + "zepos-" + std::to_string(getpid());
    std::ofstream(base + ".in") << input;
    const std::string command =
        "LC_ALL=en_US " ZEPOS " < " + base + ".in > " + base + ".out 2> " + base + ".err " + arguments;
    const int status = std::system(command.c_str());
    TakeFile(base + ".in");
    return {TakeFile(base + ".out"), TakeFile(base + ".err"), WIFEXITED(status) ? WEXITSTATUS(status) : -1};
}

} // namespace

TEST(Zepos, ConvertsOperands)
{
    static const std::pair<const char*, const char*> kRows[] = {
        {"--rate 44100 --to smpte-drop 1800000", "00:00:40;23\n"},
        {"--to smpte-drop --rate 44100 1800000 0", "00:00:40;23\n00:00:00;00\n"},
        {"--from smpte-ebu --rate 48000 00:00:01:00", "48000\n"},
        {"--from time --to measures --tempo 90 0:01:30.5", "34:4.720\n"},
        {"--rate 48000 --to time -4344000", "-00:01:30.500\n"},
        {"--rate 48000 --to time -- -4344000", "-00:01:30.500\n"},
        {"--from time-metric --rate 48000 -1.5", "-72000\n"},
        {"--to measures --time-signature 3/4 --ticks 4 --rate 48000 84000", "2:1.2\n"},
        {"--to frames --frame-rate 30000/1001 --rate 30000 1001", "00:00:00.01\n"},
        {"--from percent --percent-base 48000 '50 %'", "24000\n"},
        {"--offset 44100 --to time 88200", "00:00:01.000\n"},
        {"--offset 44100 --from time 0:01", "88200\n"},
        {"--offset 44100 --length --from time 0:01", "44100\n"},
        {"--length --to measures 0", "0:0.0\n"},
        {"--to samples 1234567", "1,234,567\n"},
        {"1,234,567", "1234567\n"},
        {"--to samples -9223372036854775808", "-9,223,372,036,854,775,808\n"},
        {"--locale ar_EG --to samples --from samples \u0661\u0662\u0663\u0664", "\u0661\u066C\u0662\u0663\u0664\n"},
        {"--locale fr_FR --from frames-metric --frame-rate 10 --rate 10 '1\u202F234,5'", "1234\n"},
        {"--to smpte-nondrop-30 --ticks-for 300000", "441000 coarse 10\n"},
    };
    for (const auto& [arguments, said] : kRows) {
        SCOPED_TRACE(arguments);
        const Outcome outcome = Zepos(arguments);
        EXPECT_EQ(outcome.out, said);
        EXPECT_EQ(outcome.error, "");
        EXPECT_EQ(outcome.status, 0);
    }
}

TEST(Zepos, NamesTheTextThatItCanNotRead)
{
    static const struct {
        const char *why, *arguments;
        std::string input;
        const char *out, *error;
        int status;
    } kRows[] = {
        {"lines around it come out", "--from smpte-ebu --rate 25", "0:01\n1x:2\n0:02", "1\n2\n",
         "zepos: line 2: unexpected character\n  1x:2\n   ^\n", 1},
        {"operands too", "--from smpte-ebu --rate 25 0:01 :::::", "", "1\n",
         "zepos: operand 2: too many fields\n  :::::\n     ^\n", 1},
        {"a Windows text", "--from smpte-ebu --rate 25", "0:01\r\n0:02\r\n", "1\n2\n", "", 0},
        {"no number", "", "12x\n", "", "zepos: line 1: unexpected character\n  12x\n    ^\n", 1},
        {"a separator of the locale", "--locale de_DE --from frames 0:01,05", "", "",
         "zepos: operand 1: this decimal separator can't be read here\n  0:01,05\n      ^\n", 1},
        {"wide characters before the caret", "--from time '\u6642x'", "", "",
         "zepos: operand 1: unexpected character\n  \u6642x\n  ^\n", 1},
        {"no UTF-8", "", "12\xFFx\n7\n", "7\n", "zepos: line 1: no UTF-8\n  12?x\n    ^\n", 1},
        {"a NUL behind a character of two bytes", "--from time", std::string("\u00E9\0x\n", 5), "",
         "zepos: line 1: unexpected character\n  \u00E9?x\n   ^\n", 1},
        {"what a terminal should not see", "", "1\x1B[2J\n", "", "zepos: line 1: unexpected character\n  1?[2J\n   ^\n",
         1},
        {"accepted, but not all of it", "--from measures --rate 48000 1:2x", "", "24000\n",
         "zepos: operand 1: warning: not read to its end: unexpected character\n  1:2x\n     ^\n", 0},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.why);
        const Outcome outcome = Zepos(row.arguments, row.input);
        EXPECT_EQ(outcome.out, row.out);
        EXPECT_EQ(outcome.error, row.error);
        EXPECT_EQ(outcome.status, row.status);
    }
}

TEST(Zepos, RefusesALineThatHasNoEnd)
{
    const Outcome outcome = Zepos("--from time --rate 1000", std::string(1000000, '1') + "\n0:01\n");
    EXPECT_EQ(outcome.out, "1000\n");
    EXPECT_EQ(outcome.error.substr(0, outcome.error.find('\n')), "zepos: line 1: text too long");
    EXPECT_EQ(outcome.status, 1);
}

TEST(Zepos, SaysWhatItCanNotDo)
{
    const auto error = [](const char* arguments) {
        const Outcome outcome = Zepos(arguments);
        EXPECT_EQ(outcome.status, 1) << arguments;
        return outcome.error;
    };
    EXPECT_EQ(error("--to time 5 > /dev/full"), "zepos: standard output: No space left on device\n");
    EXPECT_EQ(error("--ticks-for 1.7e308"), "zepos: --ticks-for: this step has too many samples\n");
    EXPECT_EQ(error("--to time < /"), "zepos: standard input: Is a directory\n");
}

TEST(Zepos, RefusesAWrongCommandLine)
{
    static const std::pair<const char*, const char*> kRows[] = {
        {"--bogus", "bogus"},
        {"--to smpte-29 1", "--to: “smpte-29” is not a format; see --list-formats"},
        {"--rate 0 1", "--rate: “0” is not a whole number from 1 to 4294967295"},
        {"--frame-rate 24000/0 1", "--frame-rate: “0”"},
        {"--frame-rate inf 1", "--frame-rate: “inf”"},
        {"--tempo nan 1", "--tempo: “nan”"},
        {"--time-signature 4 1", "--time-signature: “4”"},
        {"--offset 1.5 1", "--offset: “1.5”"},
        {"--to percent 1", "--percent-base"},
        {"--ticks-for 100 1", "--ticks-for takes no positions"},
        {"--list-formats 1", "--list-formats takes no positions"},
    };
    for (const auto& [arguments, said] : kRows) {
        SCOPED_TRACE(arguments);
        const Outcome outcome = Zepos(arguments);
        EXPECT_NE(outcome.error.find(said), std::string::npos) << outcome.error;
        EXPECT_NE(outcome.error.find("Try 'zepos --help'."), std::string::npos);
        EXPECT_EQ(outcome.out, "");
        EXPECT_EQ(outcome.status, 2);
    }
}

TEST(Zepos, ReadsBackWhatItWritesInEveryTimecode)
{
    std::string positions;
    for (int frame = 0; frame < 5000; ++frame) positions += std::to_string(frame * 1499) + '\n';
    for (const char* format :
         {"smpte-nondrop-29", "smpte-nondrop-30", "smpte-drop", "smpte-ebu", "smpte-film", "time-cd"}) {
        SCOPED_TRACE(format);
        const std::string labels = Zepos(std::string("--to ") + format, positions).out;
        const Outcome again = Zepos(std::string("--from ") + format + " --to " + format, labels);
        EXPECT_EQ(again.out, labels);
        EXPECT_EQ(again.status, 0);
        EXPECT_EQ(std::count(labels.begin(), labels.end(), '\n'), 5000);
    }
}

/// What the help promises is what the program does.
TEST(Zepos, KeepsTheExamplesOfItsHelp)
{
    std::istringstream help(Zepos("--help").out);
    int examples = 0;
    for (std::string line; std::getline(help, line);) {
        const std::size_t gap = line.rfind("   ");
        if (!line.starts_with("  zepos ") || gap == std::string::npos || gap < 8) continue;
        EXPECT_EQ(Zepos(line.substr(8, gap - 8)).out, line.substr(gap + 3) + "\n") << line;
        ++examples;
    }
    EXPECT_GE(examples, 4);

    std::istringstream list(Zepos("--list-formats").out);
    int formats = 0;
    for (std::string name; list >> name; ++formats) {
        std::string example, rest;
        list >> example;
        std::getline(list, rest);
        EXPECT_EQ(Zepos("--percent-base 3600000 --to " + name + " 1800000").out.find(example), 0u) << name;
    }
    EXPECT_EQ(formats, 13);
}
