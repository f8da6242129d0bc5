#pragma once

/// From now on failures of assertions, as those of a unit are, are told in the log, and work goes on.
void logAssertionFailures();
