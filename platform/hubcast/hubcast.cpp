// SPDX-License-Identifier: Apache-2.0
#include "hubcast.h"

#include "link.hpp"
#include "payload.hpp"
#include "worker.hpp"

#include <memory>
#include <string>
#include <vector>

namespace {

using simulator_link::Frame;
using simulator_link::FrameKind;
using simulator_link::PayloadWriter;

Frame SubscribeFrame(const std::string& name) {
    Frame frame;
    frame.kind = FrameKind::Subscribe;
    frame.payload = PayloadWriter().Write(std::string_view(name)).Finish();
    return frame;
}

/** One subscriber, with a link of its own to the simulator and a thread for its callback. */
class Subscriber {
public:
    Subscriber(HubcastCallback callback, void* user)
        : callback(callback), user(user),
          link(
              "hubcast", [this](const Frame& frame) { Receive(frame); },
              [this] { return Subscriptions(); }) {}

    bool Start() { return link.Start(); }

    bool Subscribe(const std::string& name) {
        if (!link.Ask(SubscribeFrame(name))) {
            return false;
        }
        const std::lock_guard lock(mutex);
        names.push_back(name);
        return true;
    }

private:
    void Receive(const Frame& frame) {
        if (frame.kind == FrameKind::Notification) {
            std::string name(frame.payload.begin(), frame.payload.end());
            notifications.Post([this, name] { callback(user, name.c_str(), name.size()); });
        }
    }

    std::vector<Frame> Subscriptions() {
        const std::lock_guard lock(mutex);
        std::vector<Frame> frames;
        for (const auto& name : names) {
            frames.push_back(SubscribeFrame(name));
        }
        return frames;
    }

    HubcastCallback callback;
    void* user;
    std::mutex mutex;
    std::vector<std::string> names;
    platform_support::Worker notifications{"hubcast-notify"};
    simulator_link::Link link;
};

/** All subscribers. The contract has no call that ends one, and their threads run until the
 *  process has ended: so the list is never destroyed. */
void Keep(std::unique_ptr<Subscriber> subscriber) {
    static auto* const mutex = std::make_unique<std::mutex>().release();
    static auto* const kept =
        std::make_unique<std::vector<std::unique_ptr<Subscriber>>>().release();
    const std::lock_guard lock(*mutex);
    kept->push_back(std::move(subscriber));
}

} // namespace

int hubcast_subscriber_usrctx_init(void** context, const char* subscriber, HubcastCallback callback,
                                   void* user) {
    if (context == nullptr || subscriber == nullptr || callback == nullptr) {
        return -1;
    }
    auto made = std::make_unique<Subscriber>(callback, user);
    if (!made->Start()) {
        return -1;
    }
    *context = made.get();
    Keep(std::move(made));
    return 0;
}

int hubcast_subscribe_notification(void* context, const char* name) {
    if (context == nullptr || name == nullptr) {
        return -1;
    }
    return static_cast<Subscriber*>(context)->Subscribe(name) ? 0 : -1;
}
