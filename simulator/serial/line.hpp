// SPDX-License-Identifier: Apache-2.0
/** An endpoint at the end of a serial line, which a bus owner can drive with the kernel's MCTP. */
#pragma once

#include "file_descriptor.hpp"
#include "machine/machine.hpp"
#include "serial/framing.hpp"
#include "serial/packets.hpp"
#include "server/event_loop.hpp"

#include <functional>
#include <string>

namespace simulator {

/** A pseudo-terminal. Its other end is what the path leads to as long as this lives. */
class SerialLine {
public:
    using Ask = std::function<std::optional<CountedAnswer>(std::span<const std::uint8_t> request)>;

    /** @param path      a link to the terminal's other end, made anew and removed with this
     *  @param endPoint  answers; outlives this
     *  @param ask       the answer to a PLDM request, if there is one
     *  @throws std::system_error if there is no terminal to be had */
    SerialLine(EventLoop& loop, std::string path, LiveEndPoint& endPoint,
               std::array<std::uint8_t, 16> uuid, Ask ask);
    SerialLine(const SerialLine&) = delete;
    SerialLine& operator=(const SerialLine&) = delete;
    ~SerialLine();

private:
    void Handle(std::uint32_t events);
    void Take(const MctpMessage& message);
    void TakePldm(const MctpMessage& message);
    void TakeControl(const MctpMessage& message);
    /** Answers a message with the body, as the endpoint's faults say. */
    void Reply(const MctpMessage& message, std::uint8_t type, std::span<const std::uint8_t> body);
    void Write();

    EventLoop& loop;
    const std::string path;
    LiveEndPoint& endPoint;
    const std::array<std::uint8_t, 16> uuid;
    const Ask ask;
    platform_support::FileDescriptor terminal;
    platform_support::FileDescriptor otherEnd; // open, or the terminal would hang up
    SerialDeframer deframer;
    Reassembly reassembly;
    Bytes outgoing;
    std::shared_ptr<bool> alive = std::make_shared<bool>(true); // for answers that come later
    Watch watch;
};

} // namespace simulator
