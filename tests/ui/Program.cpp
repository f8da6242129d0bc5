#include "ui/Program.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <csignal>
#include <ctime>
#include <stdexcept>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

std::pair<int, int> MakePipe()
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
    return {ends[0], ends[1]};
}

std::vector<char*> Pointers(std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    for (std::string& text : texts) pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

std::vector<std::string> EnvironmentWith(std::vector<std::string> settings)
{
    const std::vector<std::string> own = settings;
    for (char** entry = environ; *entry; ++entry) {
        const std::string text = *entry;
        const std::string name = text.substr(0, text.find('=') + 1);
        if (std::none_of(own.begin(), own.end(), [&](const std::string& setting) { return setting.starts_with(name); }))
            settings.push_back(text);
    }
    return settings;
}

void CloseOnce(int& descriptor)
{
    if (descriptor >= 0) close(std::exchange(descriptor, -1));
}

} // namespace

double SecondsNow()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

Program::Program(const std::vector<std::string>& arguments, const std::vector<std::string>& settings)
{
    std::vector<std::string> words = arguments, variables = EnvironmentWith(settings);
    const auto argv = Pointers(words), envp = Pointers(variables);
    auto [childInput, input] = MakePipe();
    auto [output, childOutput] = MakePipe();
    auto [failure, childFailure] = MakePipe();
    mInput = input;
    mOutput = output;
    const pid_t parent = getpid();
    mProcess = fork();
    if (mProcess == 0) { // only calls that are safe after a fork
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() != parent) _exit(127);
        dup2(childInput, STDIN_FILENO);
        dup2(childOutput, STDOUT_FILENO);
        execvpe(argv[0], argv.data(), envp.data());
        const int code = errno;
        [[maybe_unused]] const ssize_t told = write(childFailure, &code, sizeof code);
        _exit(127);
    }
    for (int* descriptor : {&childInput, &childOutput, &childFailure}) CloseOnce(*descriptor);
    int code = 0;
    const bool failed = read(failure, &code, sizeof code) == sizeof code;
    CloseOnce(failure);
    if (failed) {
        waitpid(mProcess, nullptr, 0);
        CloseOnce(mInput);
        CloseOnce(mOutput);
        throw std::runtime_error("\"" + arguments.front() + "\" can't be started: is it installed?");
    }
}

Program::~Program()
{
    CloseOnce(mInput);
    CloseOnce(mOutput);
    if (mStatus) return;
    kill(mProcess, SIGKILL);
    waitpid(mProcess, nullptr, 0);
}

void Program::sendSignal(int signal)
{
    if (!mStatus) kill(mProcess, signal);
}

bool Program::readSome(double until)
{
    if (mAtEnd) return false;
    const double wait = std::max(until - SecondsNow(), 0.0);
    pollfd polled{mOutput, POLLIN, 0};
    if (poll(&polled, 1, static_cast<int>(std::ceil(wait * 1000))) <= 0) return false;
    char bytes[4096];
    const ssize_t count = read(mOutput, bytes, sizeof bytes);
    if (count > 0) mRead.append(bytes, static_cast<std::size_t>(count));
    mAtEnd = count <= 0;
    return count > 0;
}

std::optional<Program::Line> Program::nextLine(double seconds)
{
    const double until = SecondsNow() + seconds;
    std::size_t end = mRead.find('\n');
    while (end == std::string::npos && readSome(until)) end = mRead.find('\n');
    if (end == std::string::npos) return std::nullopt;
    Line line{mRead.substr(0, end), SecondsNow()};
    mRead.erase(0, end + 1);
    return line;
}

std::vector<Program::Line> Program::linesUntil(const std::function<bool(const std::string&)>& isIt, double seconds)
{
    const double until = SecondsNow() + seconds;
    std::vector<Line> lines;
    while (const auto line = nextLine(until - SecondsNow())) {
        lines.push_back(*line);
        if (isIt(line->text)) break;
    }
    return lines;
}

std::vector<Program::Line> Program::linesUntilQuiet(double quiet, double limit)
{
    const double until = SecondsNow() + limit;
    std::vector<Line> lines;
    while (const auto line = nextLine(std::min(quiet, until - SecondsNow()))) lines.push_back(*line);
    return lines;
}

std::string Program::allOutput(double seconds)
{
    const double until = SecondsNow() + seconds;
    while (readSome(until)) {
    }
    return std::exchange(mRead, {});
}

void Program::writeInput(const std::string& text)
{
    for (std::size_t done = 0; done < text.size();) {
        const ssize_t count = write(mInput, text.data() + done, text.size() - done);
        if (count <= 0) break;
        done += static_cast<std::size_t>(count);
    }
    CloseOnce(mInput);
}

void Program::terminate()
{
    if (mStatus) return;
    kill(mProcess, SIGTERM);
    if (!waitForExit(5)) kill(mProcess, SIGKILL);
    waitForExit(5);
}

std::optional<int> Program::waitForExit(double seconds)
{
    const double until = SecondsNow() + seconds;
    while (!mStatus) {
        int status = 0;
        if (waitpid(mProcess, &status, WNOHANG) == mProcess)
            mStatus = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
        else if (SecondsNow() > until)
            break;
        else if (!readSome(SecondsNow() + 0.005)) // its output may be what it waits for
            poll(nullptr, 0, 2);
    }
    return mStatus;
}

bool IsInstalled(const std::string& program)
{
    return Program({"sh", "-c", "command -v " + program}).waitForExit(10) == 0;
}
