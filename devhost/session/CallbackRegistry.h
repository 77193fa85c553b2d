// SPDX-License-Identifier: MIT
#pragma once

// Registered objects of the host's callback classes, in the order in which they are called.

#include "devhost/session/RenderSession.h"
#include "devhost/util/Timeline.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <mutex>
#include <new>
#include <vector>

namespace devhost {

/// Counts and tells that native code of a plug-in failed.
OPENQUIL_API void reportCallbackError(const char *callback, const char *what);

/// Runs native code of a plug-in; its exceptions are reported and end with it.
template <class Call>
void runGuarded(const char *name, Call call) {
    const Stage stage(name);
    try {
        call();
    } catch (const std::exception &error) {
        reportCallbackError(name, error.what());
    } catch (...) {
        reportCallbackError(name, "unknown exception");
    }
}

/// Lower numbers come first, equal ones in the order of registration.
template <class Callback>
class CallbackRegistry {
  public:
    /// Registers; again, to change the number. Null is ignored.
    void add(Callback *callback, int priority) {
        if (!callback)
            return;
        const std::lock_guard lock(mutex_);
        erase(callback);
        const auto after = std::find_if(entries_.begin(), entries_.end(), [&](const Entry &entry) {
            return entry.priority > priority;
        });
        entries_.insert(after, {callback, priority});
    }
    void remove(Callback *callback) {
        const std::lock_guard lock(mutex_);
        erase(callback);
    }
    bool isEmpty() {
        const std::lock_guard lock(mutex_);
        return entries_.empty();
    }

    /// Calls `call` for each callback, with nothing locked but what the session's guard locks.
    template <class Call>
    void run(const char *name, Call call) {
        std::vector<Entry> snapshot;
        {
            const std::lock_guard lock(mutex_);
            snapshot = entries_;
        }
        for (const Entry &entry : snapshot) {
            const auto callIfThere = [&] {
                // An earlier callback may have unregistered, or even deleted, this one.
                if (contains(entry.callback))
                    runGuarded(name, [&] { call(*entry.callback); });
            };
            if (const auto &guard = renderSession().callbackGuard)
                guard(callIfThere);
            else
                callIfThere();
        }
    }

  private:
    struct Entry {
        Callback *callback;
        int priority;
    };

    void erase(Callback *callback) {
        std::erase_if(entries_, [&](const Entry &entry) { return entry.callback == callback; });
    }
    bool contains(Callback *callback) {
        const std::lock_guard lock(mutex_);
        return std::any_of(entries_.begin(), entries_.end(),
                           [&](const Entry &entry) { return entry.callback == callback; });
    }

    std::mutex mutex_;
    std::vector<Entry> entries_;
};

/// The registry of a class. Never destroyed: scripts may drop their callbacks while the process
/// exits.
template <class Callback>
CallbackRegistry<Callback> &callbackRegistry() {
    // Destructors of callbacks come here as well: there must be no need for memory.
    alignas(CallbackRegistry<Callback>) static char room[sizeof(CallbackRegistry<Callback>)];
    static auto *const instance = new (room) CallbackRegistry<Callback>;
    return *instance;
}

} // namespace devhost
