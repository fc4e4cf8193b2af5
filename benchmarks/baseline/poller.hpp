// SPDX-License-Identifier: Apache-2.0
/** Reads the sensors of one endpoint, as the daemon does. */
#pragma once

#include "baseline/exchange.hpp"
#include "baseline/objects.hpp"

#include <functional>
#include <thread>
#include <vector>

namespace measured_baseline {

/** A reading that differs from the one before. */
struct Change {
    Object* object;
    std::int32_t reading;
};

/** One endpoint and the thread that polls it: all sensors one after the other, then what changed is
 *  handed over, then 5 s of rest. Readings are whole degrees in 16 bits, as `measure` plays them.
 */
class Poller {
public:
    /** Takes the changes of one poll, on the poller's thread. */
    using Taker = std::function<void(std::vector<Change>)>;

    Poller(std::uint8_t eid, const std::vector<Object*>& objects, Taker taker);

    /** Starts the thread, which runs as long as the process. The poller stays where it is. */
    void Start();

private:
    void Run();
    std::int32_t Read(std::uint16_t sensor);

    struct Sensor {
        Object* object;
        std::int32_t reading; ///< the one before
    };

    std::uint8_t eid;
    std::uint8_t instanceId = 0;
    std::vector<Sensor> sensors;
    Taker taker;
    Exchange exchange;
};

} // namespace measured_baseline
