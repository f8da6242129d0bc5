#pragma once

/// A plug-in host without a plug-in: it opens an editor, gives it the values of its ports, and calls it 30 times a
/// second.

#include "EditorFacts.h"
#include "Screen.h"

#include <memory>
#include <vector>

#include <lv2/ui/ui.h>

constexpr double kTick = 1.0 / 30;

/// The editor's code; never unloaded, as in most hosts.
class EditorLibrary {
public:
    explicit EditorLibrary(const EditorFacts& facts); ///< @throw std::runtime_error naming what can't be loaded
    const LV2UI_Descriptor& descriptor() const { return *mDescriptor; }

private:
    const LV2UI_Descriptor* mDescriptor = nullptr;
};

/// An open editor.
class OpenEditor {
public:
    /// @throw std::runtime_error where the editor doesn't open
    OpenEditor(const EditorLibrary& library, const EditorFacts& facts, xcb_window_t parent);
    ~OpenEditor();
    OpenEditor(const OpenEditor&) = delete;
    OpenEditor& operator=(const OpenEditor&) = delete;

    void tellAllPorts();
    void tell(std::uint32_t port, float value);
    void idle();
    unsigned written() const { return mWritten; } ///< how often the editor has set a port

private:
    static void write(LV2UI_Controller self, std::uint32_t port, std::uint32_t size, std::uint32_t protocol,
                      const void* bytes);

    const LV2UI_Descriptor& mDescriptor;
    const EditorFacts& mFacts;
    const LV2UI_Idle_Interface* mIdle = nullptr;
    LV2UI_Handle mHandle = nullptr;
    unsigned mWritten = 0;
};
