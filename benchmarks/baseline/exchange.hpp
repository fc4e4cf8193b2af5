// SPDX-License-Identifier: Apache-2.0
/** An endpoint's requests and responses. Two programs come of the two sources that define this: one
 *  goes through libmctplink, as the daemon does, one through the kernel's sockets. */
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace measured_baseline {

/** The way to one endpoint, for one thread. */
class Exchange {
public:
    /** Prepares what all share; before the first.
     *  @throws std::exception if there is nothing to reach endpoints with */
    static void Begin();

    explicit Exchange(std::uint8_t eid);
    ~Exchange();
    Exchange(const Exchange&) = delete;
    Exchange& operator=(const Exchange&) = delete;

    /** Sends a PLDM request and returns how many bytes of the response have come: 0 after 5 s. */
    std::size_t Ask(std::span<const std::uint8_t> request, std::span<std::uint8_t> response);

private:
    struct Way;
    std::unique_ptr<Way> way;
};

} // namespace measured_baseline
