#include "SliderRig.h"

NS_CLASS_TABLE(LoggingTarget, NSObject, "")
    .action("changed:", &LoggingTarget::changed)
NS_CLASS_TABLE_END

NS_CLASS_TABLE(LevelModel, NSObject, "")
    .key("level", &LevelModel::level, &LevelModel::setLevel)
NS_CLASS_TABLE_END
