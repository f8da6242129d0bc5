#include "FuzzInput.h"

#include "Foundation/NSLog.h"
#include "Foundation/NSString.h"

#include <cstdio>
#include <cstdlib>

std::string_view FuzzInput::line()
{
    const std::size_t end = mRest.find('\n');
    const std::string_view line = mRest.substr(0, end);
    mRest.remove_prefix(end == mRest.npos ? mRest.size() : end + 1);
    return line;
}

ZeString FuzzText(std::string_view bytes) { return ZeString(NSString::string(bytes).get()); }

void FuzzFailed(const char* expectation)
{
    std::fprintf(stderr, "expected: %s\n", expectation);
    std::abort();
}

/// libFuzzer's own hook of every target: what they log is of no interest, and takes time.
extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    NSLogSetSink([](std::string_view) {});
    return 0;
}
