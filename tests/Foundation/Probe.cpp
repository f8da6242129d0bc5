#include "Probe.h"

// clang-format off
NS_CLASS_TABLE(Probe, NSObject, "org.tonaro.probe")
    .action("notified:", &Probe::notified)
    .action("onlyText:", &Probe::onlyText)
    .key("gain", &Probe::gain, &Probe::setGain)
    .key("loud", &Probe::loud, &Probe::setLoud)
    .key("model", &Probe::model, &Probe::setModel)
    .key("told", &Probe::told, &Probe::setTold)
    .key("half", &Probe::half)
NS_CLASS_TABLE_END
// clang-format on
