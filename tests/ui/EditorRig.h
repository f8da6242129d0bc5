#pragma once

/// `tonaro` with its trace in a server of its own, and a person in front of it.

#include "ui/Controls.h"
#include "ui/XClient.h"
#include "ui/Xvfb.h"

#include <gmock/gmock.h>

/// What reached the generator.
class Trace {
public:
    explicit Trace(std::vector<Program::Line> lines) : mLines(std::move(lines)) {}

    bool isEmpty() const { return mLines.empty(); }
    /// "begin 1, set 1, end 1": without values; sets of one parameter in a row count once.
    std::string shape() const;
    std::size_t count(const std::string& start) const; ///< lines that begin so
    std::vector<double> values(int parameter) const;   ///< of its sets
    double last(int parameter) const;                  ///< not-a-number where there is none
    /// How long lines came after the edit: after its last "end", or after the first line where nothing was framed.
    double secondsUntilSilence() const;

private:
    std::vector<Program::Line> mLines;
};

class EditorTest : public testing::Test {
protected:
    EditorTest();

    /// Starts the program with these options; its first window has the focus, the others stand below it.
    void start(const std::vector<std::string>& options = {});
    Trace traceUntilQuiet() { return Trace(editor->linesUntilQuiet()); }
    /// Checks that the trace ends soon after the edit.
    Trace silentTrace();
    Trace traceUntil(const std::string& start); ///< up to the first line that begins so

    /// On the screen: where a control's middle line is at that part of its width.
    CGPoint at(const std::string& outlet, double part = 0.5) const;
    void drag(const std::string& outlet, double from, double to);
    void typeInto(const std::string& outlet, const std::string& text); ///< over what it holds; not committed
    void tabTo(const std::string& outlet);                             ///< from no focus, or from the window's start
    /// Moves to an item of a menu that is open.
    void glideToItem(xcb_window_t menu, std::size_t index, std::size_t count);

    Xvfb server;
    XClient person;
    Controls controls;
    std::optional<Program> editor;
    std::vector<xcb_window_t> windows;
};

/// Keys of XClient by name.
enum EditorKey : XClient::KeySymbol {
    kReturn = 0xFF0D,
    kEscape = 0xFF1B,
    kTab = 0xFF09,
    kUp = 0xFF52,
    kDown = 0xFF54,
    kPageUp = 0xFF55,
    kEnd = 0xFF57,
    kShift = 0xFFE1,
    kControl = 0xFFE3,
    kDeadAcute = 0xFE51,
};
