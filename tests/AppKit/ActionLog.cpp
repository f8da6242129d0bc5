#include "AppKit/ActionLog.h"

NS_CLASS_TABLE(ActionLog, NSObject, "")
    .action("changed:", &ActionLog::changed)
NS_CLASS_TABLE_END
