// SPDX-License-Identifier: Apache-2.0
#include "event_handler/event_handler.hpp"

#include <list>
#include <mutex>

namespace vantric {

namespace {

struct Observers {
    std::mutex mutex;
    std::list<EventHandler*> list;
};

Observers& TheObservers() {
    static Observers observers;
    return observers;
}

} // namespace

void RegisterObserver(EventHandler& observer) {
    const std::scoped_lock lock(TheObservers().mutex);
    TheObservers().list.push_back(&observer);
}

void NotifyObservers(EventKind kind, const std::any& payload) {
    std::list<EventHandler*> observers;
    {
        // A table keeps its observer busy for seconds; a notification must get through meanwhile.
        const std::scoped_lock lock(TheObservers().mutex);
        observers = TheObservers().list;
    }
    for (EventHandler* observer : observers) {
        observer->Update(kind, payload);
    }
}

} // namespace vantric
