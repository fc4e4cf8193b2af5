// SPDX-License-Identifier: Apache-2.0
#include "pending_requests.hpp"

#include <algorithm>

namespace mctplink {

namespace {

void Write(MctpLinkRequest& record, const Outcome& outcome) {
    const auto length = std::min<std::size_t>(outcome.response.size(), record.responseLength);
    if (record.responseBytes != nullptr) {
        std::copy_n(outcome.response.begin(), length, record.responseBytes);
    }
    record.responseLength = static_cast<std::uint32_t>(length);
    record.responseStatus = outcome.status;
    record.responseFlags = outcome.flags;
    record.responseErrorType = outcome.errorType;
}

} // namespace

void PendingRequests::Add(std::uint32_t tag, MctpLinkRequest& record) {
    const std::lock_guard lock(mutex);
    requests.emplace(tag, Request{&record, record.eid});
}

void PendingRequests::Withdraw(std::uint32_t tag) {
    std::unique_lock lock(mutex);
    requests.erase(tag);
    completed.wait(lock, [&] {
        return !running || running->tag != tag || running->thread == std::this_thread::get_id();
    });
}

void PendingRequests::Clear(std::uint8_t eid) {
    std::unique_lock lock(mutex);
    std::erase_if(requests, [&](const auto& entry) { return entry.second.eid == eid; });
    completed.wait(lock, [&] {
        return !running || running->eid != eid || running->thread == std::this_thread::get_id();
    });
}

void PendingRequests::Complete(std::uint32_t tag, const Outcome& outcome) {
    MctpLinkRequest* record = nullptr;
    {
        const std::lock_guard lock(mutex);
        const auto found = requests.find(tag);
        if (found == requests.end()) {
            return;
        }
        record = found->second.record;
        Write(*record, outcome);
        running = Running{tag, found->second.eid, std::this_thread::get_id()};
        requests.erase(found);
    }
    if (record->completion != nullptr) {
        record->completion(record);
    }
    {
        const std::lock_guard lock(mutex);
        running.reset();
    }
    completed.notify_all();
}

} // namespace mctplink
