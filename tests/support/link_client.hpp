// SPDX-License-Identifier: Apache-2.0
/** A program that uses the MCTP client library. */
#pragma once

#include "pldm_cmds/bytes.hpp"
#include "support/eventually.hpp"

#include <mctplink.h>

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace vantric::test {

/** What the callbacks of the process's attachment have brought. */
struct Heard {
    std::mutex mutex;
    std::vector<std::vector<std::uint8_t>> tables; // attached flag and the table
    int discoveries = 0;
    std::function<void()> duringTable;

    bool HasTables(std::size_t count) {
        return Eventually([&] {
            const std::lock_guard lock(mutex);
            return tables.size() == count;
        });
    }
};

inline Heard* heard = nullptr;

inline void OnCallback(MctpLinkCallbackInfo* info) {
    std::function<void()> duringTable;
    {
        const std::lock_guard lock(heard->mutex);
        if (info->callbackType == MCTPLINK_DISCOVERY_STARTED) {
            ++heard->discoveries;
        } else {
            const auto* const bytes = reinterpret_cast<const std::uint8_t*>(info);
            const auto size =
                sizeof(info->table) + info->table.entryCount * sizeof(MctpLinkEndPoint);
            heard->tables.emplace_back(bytes + 4, bytes + 8 + size);
            duringTable = heard->duringTable;
            std::free(info);
        }
    }
    if (duringTable) {
        duringTable();
    }
}

/** A request with room for its response. */
struct Exchange {
    Exchange(std::uint8_t eid, std::string_view bytes, std::uint32_t capacity = 64)
        : request(Bytes::FromHex(bytes)), response(capacity) {
        record.eid = eid;
        record.messageType = 1;
        record.requestBytes = request.data();
        record.requestLength = static_cast<std::uint32_t>(request.size());
        record.responseBytes = response.data();
        record.responseLength = capacity;
        record.responseErrorType = 99;
        record.context = this;
        record.completion = [](MctpLinkRequest* done) {
            static_cast<Exchange*>(done->context)->onCompletion();
        };
    }

    bool Send() { return MctpLinkSendRequest(&record, 0) == 0; }

    bool Completes() {
        return Eventually([this] { return completed.load(); });
    }

    /** The response, "error" and its type before it unless that is 0, or why there is none. */
    std::string Answer() {
        if (!Send()) {
            return "refused";
        }
        if (!Completes()) {
            return "never completed";
        }
        const auto type = record.responseErrorType;
        return (type == 0 ? "" : "error " + std::to_string(type) + ": ") +
               HexText(std::span(response).first(record.responseLength));
    }

    std::vector<std::uint8_t> request;
    std::vector<std::uint8_t> response;
    MctpLinkRequest record{};
    std::atomic<bool> completed = false;
    std::function<void()> onCompletion = [this] { completed = true; };
};

/** Sends, and takes the request back at times that have nothing to do with its completion. */
inline void SendAndClear(std::uint8_t eid, int rounds) {
    for (int round = 0; round < rounds; ++round) {
        auto exchange = std::make_unique<Exchange>(eid, "81 00 02");
        ASSERT_TRUE(exchange->Send());
        if (round % 3 == 0) {
            ASSERT_TRUE(exchange->Completes());
        } else if (round % 3 == 1) {
            std::this_thread::yield();
        }
        MctpLinkClearRequest(eid, 0);
    }
}

} // namespace vantric::test
