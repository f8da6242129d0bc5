#pragma once

/// What one listener has registered, and what waits for it. No locks and no callbacks: the listener guards it and
/// calls.

#include "AudioUnit/AUEventListener.h"

#include <list>
#include <optional>
#include <vector>

struct AUPostedEvent {
    AudioUnitEvent event;
    AudioUnitParameterValue value;
    std::uint64_t hostTime;       ///< nanoseconds
    std::uint64_t ticket;         ///< drawn before the value was read: a higher one never carries an older value
    std::optional<void*> sentFor; ///< the object that isn't told; empty when another listener, or nobody, sent it
};

class AUEventQueue {
public:
    struct Call {
        void* object;
        AUPostedEvent posted;
    };

    /// A second registration of the same pair counts once.
    void add(void* object, const AudioUnitEvent& event);
    std::size_t countRegistrations() const { return mRegistrations.size(); }

    void post(const AUPostedEvent& posted);
    bool empty() const { return mEntries.empty(); }
    void clear();

    /// Marks the end of what waits now.
    std::uint64_t mark() const { return mLastSequence; }
    /// The next call for what was posted up to `mark`; empty when all of that is done. A call that has been answered
    /// here is not answered again, whatever becomes of it.
    std::optional<Call> next(std::uint64_t mark);

    /// Past this many waiting gestures the oldest gesture goes, begin and end together.
    static constexpr std::size_t kMostGestures = 512;

private:
    struct Registration {
        void* object;
        AudioUnitEvent event;
        std::uint64_t newestTicket;
    };
    struct Entry {
        AUPostedEvent posted;
        std::uint64_t sequence;
        std::size_t nextRegistration; ///< above 0 once delivery has begun
    };
    using Entries = std::list<Entry>;

    bool isStale(const AUPostedEvent& posted);
    bool hasTarget(const AUPostedEvent& posted) const;
    Entry* mergeableWith(const AUPostedEvent& posted);
    void dropOldestGesture();
    std::pair<Entries::iterator, Entries::iterator> oldestGesture();
    void mergeValues(const AudioUnitEvent& subject);

    std::vector<Registration> mRegistrations;
    Entries mEntries;
    std::size_t mGestures = 0; // of the entries
    std::uint64_t mLastSequence = 0;
};
