#include "Foundation/NSException.h"

NSException::NSException(const char* name, std::string reason)
    : mName(name), mReason(std::move(reason)), mWhat(mName + ": " + mReason)
{
}
