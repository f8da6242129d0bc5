#pragma once

// A slider whose hooks, actions and notifications all write into one log.

#include "Foundation/NSAutoreleasePool.h"
#include "Foundation/NSNotification.h"
#include "Slider/ZeSlider.h"

#include <gtest/gtest.h>
#include <sstream>
#include <stdexcept>
#include <string>

/// Collects words: "down action(3) up".
class Log {
public:
    void add(const std::string& word) { mText += mText.empty() ? word : " " + word; }
    void add(const std::string& name, double value)
    {
        std::ostringstream text;
        text << name << '(' << value << ')';
        add(text.str());
    }
    std::string take() { return std::exchange(mText, {}); }

private:
    std::string mText;
};

/// Target of actions: logs them with the sender's value.
class LoggingTarget : public NSObject {
public:
    NS_CLASS(LoggingTarget)
    void changed(NSObject* sender)
    {
        log->add("action", asKind<NSControl>(sender)->doubleValue());
        if (throws) throw std::runtime_error("refused");
    }
    Log* log = nullptr;
    bool throws = false;
};

/// Holds a number under the key "level".
class LevelModel : public NSObject {
public:
    NS_CLASS(LevelModel)
    double level() const { return mLevel; }
    void setLevel(double level)
    {
        willChangeValueForKey("level");
        mLevel = level;
        didChangeValueForKey("level");
    }

private:
    double mLevel = 0;
};
