#pragma once

/// The keys of an editor beyond those of its controls: Control-Z and Shift-Control-Z take edits back and make them
/// again, Control-C and Control-V copy and paste the complete setting as text. A clipboard that holds no setting is
/// refused with a note.

#include "AppKit/NSTextBubble.h"
#include "CoreFoundation/CFRunLoop.h"
#include "TonaroHistory.h"

class TonaroEditing {
public:
    /// Both outlive this object.
    TonaroEditing(NSView& editor, AudioUnit unit);
    ~TonaroEditing();
    TonaroEditing(const TonaroEditing&) = delete;
    TonaroEditing& operator=(const TonaroEditing&) = delete;

    TonaroHistory& history() { return *mHistory; }
    bool performKey(const NSEvent& event); ///< @return false for a key that means nothing here

private:
    void copy() const;
    void paste();
    void pasteText(const std::string& text);
    void showNotice(const char* key, const std::string& quote);
    void hideNotice();

    NSView& mEditor;
    AudioUnit mUnit;
    std::shared_ptr<TonaroHistory> mHistory; // shared with a paste that waits for the clipboard
    RetainPtr<NSTextBubble> mNotice;
    RetainPtr<CFRunLoopTimer> mNoticeTimer;
    std::shared_ptr<bool> mAlive = std::make_shared<bool>(true);
};
