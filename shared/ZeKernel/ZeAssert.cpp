// Only then does the header declare the routine behind `assert`.
#undef NDEBUG
#include <cassert>

#include "ZeAssert.h"

void ZeCRT::assertionFailed(const char* expression, const char* file, unsigned line, const char* function)
{
    __assert_fail(expression, file, line, function);
}
