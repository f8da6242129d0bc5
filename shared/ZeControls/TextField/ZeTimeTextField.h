#pragma once

/// A field that shows a position or a length, a number of samples, in the format that its context menu offers.
///
/// The value is a number object. The menu comes by a right press, a Control-click, the menu key and Shift-F10, and
/// while the field is edited as well, where its cell is a ZeTimeTextFieldCell. Choosing a format shows the value in it,
/// drops what was being typed, and sends no action. Up and Down step the value by one unit of the format, a length to 0
/// at the least, and send the action.
///
/// A field that doesn't come from `initWithFrame` has no menu, and gets its formatter from the first call that needs
/// it.

#include "AppKit/NSTextField.h"
#include "TextField/ZeTimeFormatMenu.h"

#include "ZeTimeTextFormatter.h"

class ZeTimeTextField : public NSTextField {
public:
    NS_CLASS(ZeTimeTextField)

    /// Makes the formatter and the menu. The cell stays what it is.
    bool initWithFrame(NSRect frame) override;
    /// Makes and attaches the formatter unless there is one; it gets the field's value.
    void initFormatter();

    /// Shows the value in another format (`_qvposfmt_format`); above 20 it stays. Observers of "format" hear it.
    void setFormat(unsigned type);
    unsigned format() const; ///< 0 without a formatter

    // What the formatter needs. None of these shows the value anew.
    void setFrameAndSampleRate(double rate); ///< a frame is a sample then
    void setFrameRate(double framesPerSecond);
    void setSampleRate(double samplesPerSecond);
    void setTempo(double beatsPerMinute);
    void setPercentBase(double samples);
    void setTimeSignature(unsigned signature);
    void setTicksPerBeat(unsigned ticks);
    void setIsLength(bool isLength);
    long long getIncrement() const; ///< in samples; 0 without a formatter

    void setObjectValue(NSObject* value) override;

    virtual RetainPtr<NSMenu> createDefaultMenuWithTarget(NSObject* target);
    NSMenu* defaultMenu() const { return m_DefaultMenu; }
    /// Not retained. A ZeTimeTextFieldCell gets the menu, too.
    void setDefaultMenu(NSMenu* menu);
    void onFormatMenuAction(NSMenuItem* sender); ///< sets the format that is the sender's tag
    /// Puts the check mark on the item of the field's format.
    bool validateUserInterfaceItem(NSMenuItem& item) override;
    bool eventIndicatesContextMenu(const NSEvent* event) const; ///< as ZeEventIndicatesContextMenu
    NSMenu* menuForEvent(NSEvent& event) override;
    void keyDown(NSEvent& event) override;

    void cleanup(); ///< lets go of the formatter

protected:
    void dealloc() override;
    bool stepWithKey(bool up, NSEvent& event) override;

private:
    ZeTimeTextFormatter& neededFormatter();
    bool showMenuForKey(const NSEvent& event);

    RetainPtr<ZeTimeTextFormatter> m_Formatter;
    RetainPtr<NSMenu> m_OwnMenu; // the one that initWithFrame made
    WeakPtr<NSMenu> m_DefaultMenu;
};
