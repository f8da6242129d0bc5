#pragma once

/// The menu of the eleven formats that a position can be typed in.
///
/// Each item sends "onFormatMenuAction:" to the target, which is not retained; its tag is the format
/// (`_qvposfmt_format`). The titles come from the host's string tables, by ids such as "IDS_QVPOSFMT_TIME"; a title
/// that no table has is its id.

#include "AppKit/NSMenu.h"

class ZeTimeFormatMenu final : public NSMenu {
public:
    NS_CLASS(ZeTimeFormatMenu)

    bool initWithTarget(NSObject* target);

    int selectedType() const { return mSelectedType; }
    void setSelectedType(int type) { mSelectedType = type; }

private:
    int mSelectedType = 0;
};

/// Whether an event asks for a context menu: a press of the right button, or of the left one with Control. Shift, Alt
/// and Command make no difference, Caps Lock and every other key that is held do. Null stands for the event that is
/// being delivered; false where there is none.
bool ZeEventIndicatesContextMenu(const NSEvent* event);
