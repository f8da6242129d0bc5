#include "TextField/ZeTimeFormatMenu.h"

#include "AppKit/NSApplication.h"
#include "Foundation/NSAutoreleasePool.h"
#include "Foundation/NSClass.h"

#include "PosFmt.h"
#include "ZeResources.h"

namespace {

/// The rows from top to bottom; timecode from the lowest frame rate to the highest.
constexpr struct {
    const wchar_t* titleId;
    _qvposfmt_format type;
} gFormatTypeMenu[] = {
    {L"IDS_QVPOSFMT_SAMPLES", QVPOSFMT_SAMPLES},
    {L"IDS_QVPOSFMT_TIME", QVPOSFMT_TIME},
    {L"IDS_QVPOSFMT_TIME_METRIC", QVPOSFMT_TIME_METRIC},
    {L"IDS_QVPOSFMT_FRAMES", QVPOSFMT_FRAMES},
    {L"IDS_QVPOSFMT_FRAMES_METRIC", QVPOSFMT_FRAMES_METRIC},
    {L"IDS_QVPOSFMT_SMPTE_FILM", QVPOSFMT_SMPTE_FILM},
    {L"IDS_QVPOSFMT_SMPTE_EBU", QVPOSFMT_SMPTE_EBU},
    {L"IDS_QVPOSFMT_SMPTE_NONDROP_29", QVPOSFMT_SMPTE_NONDROP_29},
    {L"IDS_QVPOSFMT_SMPTE_DROP", QVPOSFMT_SMPTE_DROP},
    {L"IDS_QVPOSFMT_SMPTE_NONDROP_30", QVPOSFMT_SMPTE_NONDROP_30},
    {L"IDS_QVPOSFMT_TIME_CD", QVPOSFMT_TIME_CD},
};

constexpr std::uint32_t kDeviceIndependentMask = 0xFF650000; // without Shift, Alt, Command and Function

} // namespace

NS_CLASS_TABLE(ZeTimeFormatMenu, NSMenu, "")
NS_CLASS_TABLE_END

bool ZeTimeFormatMenu::initWithTarget(NSObject* target)
{
    if (!init()) return false;
    const NSAutoreleasePool pool;
    ZeResources resources;
    resources.Init(nullptr); // without a host every row has its id
    for (const auto& row : gFormatTypeMenu) {
        ZeString title;
        if (resources.GetResString(row.titleId, title, true) != kZeSuccess || title.empty()) title = row.titleId;
        NSMenuItem* const item = addItemWithTitle(title, "onFormatMenuAction:", ""_ns.get());
        item->setTarget(target);
        item->setTag(row.type);
    }
    resources.Reset();
    return true;
}

bool ZeEventIndicatesContextMenu(const NSEvent* event)
{
    if (!event) event = NSApplication::sharedApplication()->currentEvent();
    if (!event) return false;
    if (event->type() == NSRightMouseDown) return true;
    return event->type() == NSLeftMouseDown && (event->modifierFlags() & kDeviceIndependentMask) == NSControlKeyMask;
}
