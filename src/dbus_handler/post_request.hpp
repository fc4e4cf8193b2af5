/** The one place from which a record travels to the main thread. */
#pragma once

#include "publisher/publisher.hpp"

#include <oneway_channel.hpp>

#include <exception>
#include <memory>
#include <utility>

namespace vantric {

/** A function of the main thread that carries a request out. It owns requestData. */
using RequestHandler = int (*)(void* context, void* requestData, unsigned long requestSize);

/** Result of a post for which there is no channel. */
inline constexpr int requestNotTaken = -1;

/** Copies record to the heap and posts it to handler on the main thread; any thread, never waits.
 *  The handler's own result reaches no caller. */
template <typename Record>
PostResult PostRequest(RequestHandler handler, Record record) {
    try {
        auto owned = std::make_unique<Record>(std::move(record));
        const int result =
            OneWayChannel::GetInstance().Execute(handler, owned.get(), sizeof(Record), false);
        if (result == 0) {
            static_cast<void>(owned.release()); // the handler frees it
        }
        return PostResult(result);
    } catch (const std::exception&) {
        return PostResult(
            requestNotTaken); // a channel that can't be made must not end the poster's thread
    }
}

} // namespace vantric
