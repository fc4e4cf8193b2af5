// SPDX-License-Identifier: Apache-2.0
/** Through libmctplink. */
#include "baseline/exchange.hpp"

#include <mctplink.h>

#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <stdexcept>

namespace measured_baseline {

namespace {

constexpr std::uint32_t linkType = 3;
constexpr std::uint32_t allEvents = 0xFFFFFFFF;
constexpr std::uint8_t pldmMessage = 1;
constexpr std::chrono::seconds timeout{5};

/** The endpoint table tells the baseline nothing that its list doesn't. */
void OnTable(MctpLinkCallbackInfo* info) {
    if (info->callbackType == MCTPLINK_TABLE_DELIVERED) {
        std::free(info);
    }
}

} // namespace

struct Exchange::Way {
    static void OnCompletion(MctpLinkRequest* request) {
        auto& self = *static_cast<Way*>(request->context);
        {
            const std::lock_guard lock(self.mutex);
            self.done = true;
        }
        self.answered.notify_one();
    }

    std::uint8_t eid;
    std::mutex mutex;
    std::condition_variable answered;
    bool done = false; ///< the request is answered; under the mutex
};

void Exchange::Begin() {
    if (MctpLinkAttach(linkType, allEvents, OnTable, 0) != 0) {
        throw std::runtime_error("there is no simulator to attach to");
    }
}

Exchange::Exchange(std::uint8_t eid) : way(std::make_unique<Way>()) {
    way->eid = eid;
}

Exchange::~Exchange() = default;

std::size_t Exchange::Ask(std::span<const std::uint8_t> request, std::span<std::uint8_t> response) {
    MctpLinkRequest record{};
    record.command = request[2];
    record.eid = way->eid;
    record.messageType = pldmMessage;
    record.requestBytes = request.data();
    record.requestLength = static_cast<std::uint32_t>(request.size());
    record.responseBytes = response.data();
    record.responseLength = static_cast<std::uint32_t>(response.size());
    record.completion = Way::OnCompletion;
    record.context = way.get();
    way->done = false; // no other thread has the record yet
    if (MctpLinkSendRequest(&record, 0) != 0) {
        return 0;
    }
    std::unique_lock lock(way->mutex);
    if (!way->answered.wait_for(lock, timeout, [this] { return way->done; }) ||
        record.responseErrorType != 0) {
        return 0;
    }
    return record.responseLength;
}

} // namespace measured_baseline
