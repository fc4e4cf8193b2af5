// SPDX-License-Identifier: Apache-2.0
/** The cards on serial lines, beside the simulator's socket. */
#pragma once

#include "machine/machine.hpp"
#include "serial/line.hpp"

#include <filesystem>
#include <map>
#include <memory>

namespace simulator {

/** A line for each endpoint of each plugged card. */
class SerialFront {
public:
    using Ask = std::function<std::optional<CountedAnswer>(LiveEndPoint& endPoint,
                                                           std::span<const std::uint8_t> request)>;

    /** @param folder  where each line has a link, named by the EID that the scenario gives its
     *                 endpoint; made if it isn't there
     *  @throws std::exception if it can't be made, or there are no terminals left */
    SerialFront(EventLoop& loop, Machine& machine, std::filesystem::path folder, Ask ask);

    /** Takes the lines of pulled cards away and gives plugged ones theirs. */
    void Follow();

private:
    EventLoop& loop;
    Machine& machine;
    const std::filesystem::path folder;
    const Ask ask;
    struct Place {
        std::string name;
        std::array<std::uint8_t, 16> uuid;
    };
    std::map<LiveEndPoint*, Place> places;
    std::map<LiveEndPoint*, std::unique_ptr<SerialLine>> lines;
};

} // namespace simulator
