#include "support/immediate_channel.hpp"

#include <oneway_channel.hpp>

#include <atomic>
#include <mutex>
#include <utility>

namespace {

std::atomic<int> channelResult{0};

} // namespace

/** Handlers run one at a time here too. */
struct OneWayChannel::Impl {
    std::mutex turn;
};

OneWayChannel::OneWayChannel() : impl(std::make_shared<Impl>()) {}

OneWayChannel::~OneWayChannel() = default;

OneWayChannel& OneWayChannel::GetInstance() {
    static OneWayChannel channel;
    return channel;
}

int OneWayChannel::RegisterEventLoop(const sdeventplus::Event& /*event*/, void* /*context*/,
                                     std::function<void(void*)> /*function*/) {
    return 0;
}

int OneWayChannel::Execute(Handler handler, void* requestData, unsigned long requestSize,
                           bool /*wait*/) {
    const int result = channelResult;
    if (result == 0) {
        const std::scoped_lock lock(impl->turn);
        handler(nullptr, requestData, requestSize);
    }
    return result;
}

namespace vantric::test {

void SetChannelResult(int result) {
    channelResult = result;
}

} // namespace vantric::test
