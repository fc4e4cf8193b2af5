// SPDX-License-Identifier: Apache-2.0
/** A PLDM terminus that answers. */
#pragma once

#include "machine/live_sensor.hpp"
#include "pdr/repository.hpp"

#include <map>

namespace simulator {

/** A described terminus with its state. */
struct Terminus {
    explicit Terminus(TerminusDescription described);

    /** Gives each described sensor that has no state the one that it is described with. */
    void StartSensors();

    /** Makes the records anew from the description; their update time moves. */
    void RebuildRepository();

    TerminusDescription description;
    Repository repository;
    std::map<std::uint16_t, LiveNumericSensor> numericSensors;
    std::map<std::uint16_t, LiveStateSensor> stateSensors;
    Bytes fruTable; /**< empty if there is no FRU data */

    /** Sensors that are described no more, and may come back. */
    struct {
        std::vector<NumericSensor> numericSensors;
        std::vector<StateSensor> stateSensors;
    } dropped;
};

/** Answers a PLDM request. Empty if the message is no request and so gets no answer. */
std::optional<Bytes> Respond(Terminus& terminus, std::span<const std::uint8_t> request,
                             Seconds now);

} // namespace simulator
