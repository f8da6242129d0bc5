#pragma once

/// Runs steps that must all be taken although one may throw. For sources of this folder.

#include <exception>

class NSFirstFailure {
public:
    template <typename Step> void attempt(Step&& step)
    {
        try {
            step();
        } catch (...) {
            if (!mFirst) mFirst = std::current_exception();
        }
    }
    /// Passes on the first exception, if there was one.
    void rethrow() const
    {
        if (mFirst) std::rethrow_exception(mFirst);
    }

private:
    std::exception_ptr mFirst;
};
