// SPDX-License-Identifier: Apache-2.0
/** The handle of one sd-event loop. */
#pragma once

#include <systemd/sd-event.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <type_traits>

namespace sdeventplus {

/** Unit of sd-event's times. */
using SdEventDuration = std::chrono::duration<std::uint64_t, std::micro>;

/** A reference to an event loop. A copy refers to the same loop; the loop goes with its last
 *  reference. Like the loop itself it belongs to one thread. Every failed call throws
 *  std::system_error whose text begins with the name of the C function. */
class Event {
public:
    /** How long run() waits: a time, or without one as long as it takes. */
    using MaybeTimeout = std::optional<SdEventDuration>;

    /** Takes a reference of its own on event. */
    explicit Event(sd_event* event);

    /** Takes over the caller's reference on event. */
    Event(sd_event* event, std::false_type);

    /** Returns the default loop of the calling thread, made on the first call.
     *  @throws std::system_error if it can't be made. */
    static Event get_default();

    /** Returns a new loop.
     *  @throws std::system_error if it can't be made. */
    static Event get_new();

    /** Returns the handle, for calls of libsystemd; the reference stays here. */
    sd_event* get() const noexcept { return handle.get(); }

    /** Waits for one event and serves it. Without a timeout it waits as long as it takes.
     *  @return 0 if the timeout passed, a positive number otherwise.
     *  @throws std::system_error if the loop fails or has been told to end. */
    int run(MaybeTimeout timeout) const;

    /** Serves events until exit() is called.
     *  @return the code given to exit().
     *  @throws std::system_error if the loop fails. */
    int loop() const;

    /** Tells the loop to end with code. Called on the loop's own thread.
     *  @throws std::system_error if the loop has ended already. */
    int exit(int code) const;

private:
    std::shared_ptr<sd_event> handle;
};

} // namespace sdeventplus
