#pragma once

/// What the tests of this folder share.

#include "Foundation/NSClass.h"
#include "Foundation/NSException.h"
#include "Foundation/NSString.h"
#include "Support/CaughtLog.h"

#include <functional>
#include <gmock/gmock.h>
#include <string>

/// The order of effects as one text: "a b c".
class Journal {
public:
    void note(const std::string& what) { mText += (mText.empty() ? "" : " ") + what; }
    std::string take() { return std::exchange(mText, {}); }

private:
    std::string mText;
};

/// An object with keys and an action, whose end and whose news go into a journal.
class Probe : public NSObject {
public:
    NS_CLASS(Probe)

    static RetainPtr<Probe> named(const std::string& name, Journal& journal)
    {
        auto probe = make<Probe>();
        probe->name = name;
        probe->journal = &journal;
        return probe;
    }

    double gain() const { return mGain; }
    void setGain(double gain) { mGain = gain; }
    bool loud() const { return mLoud; }
    void setLoud(bool loud) { mLoud = loud; }
    NSObject* model() const { return mModel; }
    void setModel(NSObject* model) { mModel = model; }
    /// Tells the observers by itself, as controls do.
    void setTold(std::int32_t told)
    {
        mTold = told;
        willChangeValueForKey("told");
        didChangeValueForKey("told");
    }
    std::int32_t told() const { return mTold; }
    double half() const { return mGain / 2; }

    void notified(NSObject* argument)
    {
        if (journal) journal->note(name);
        if (const auto call = onNews) call(argument); // a copy: it may put another in place
    }
    void onlyText(NSString* argument) { journal->note(argument ? argument->utf8() : "null"); }

    void observeValueForKeyPath(const NSString* keyPath, NSObject* object, void* context) override
    {
        const RetainPtr<NSObject> value = object->valueForKeyPath(keyPath);
        journal->note(name + ":" + keyPath->utf8() + "=" + (value ? value->description()->utf8() : "null") +
                      (context ? "+" : ""));
        if (const auto call = onNews) call(object);
    }

    std::string name;
    Journal* journal = nullptr;
    std::function<void(NSObject*)> onNews, onDealloc;
    RetainPtr<NSObject> kept;

protected:
    void dealloc() override
    {
        if (journal) journal->note("~" + name);
        if (onDealloc) onDealloc(this);
        NSObject::dealloc();
    }

private:
    double mGain = 0.0;
    bool mLoud = false;
    std::int32_t mTold = 0;
    RetainPtr<NSObject> mModel;
};

/// Name and reason of what `call` throws; empty when it throws nothing.
template <typename Call> std::string Thrown(Call call)
{
    try {
        call();
    } catch (const NSException& exception) {
        return exception.what();
    }
    return {};
}
