#include "Foundation/NSObjectTables.h"
void NSForgetBindings(NSObject*) {}
void NSForgetNotifications(NSObject*) {}
