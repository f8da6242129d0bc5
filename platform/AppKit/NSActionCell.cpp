#include "AppKit/NSActionCell.h"

#include "Foundation/NSClass.h"

NS_CLASS_TABLE(NSActionCell, NSCell, "")
NS_CLASS_TABLE_END
