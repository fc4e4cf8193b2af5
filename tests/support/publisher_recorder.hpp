// SPDX-License-Identifier: Apache-2.0
/** What was posted to the main thread, for a test to look at. */
#pragma once

#include "publisher/publisher.hpp"

#include <string>
#include <vector>

namespace vantric::test {

struct PostedRequests {
    std::vector<std::string> order; ///< names of the operations, over all kinds of records
    std::vector<SensorInsertRequest> sensors;
    std::vector<SensorValueRequest> values;
    std::vector<StateSensorRequest> stateSensors; ///< to InsertStateSensor
    std::vector<StateSensorRequest> states;       ///< to SetStateSensorValue
    std::vector<HealthStatusRequest> healths;
    std::vector<PlainInventoryRequest> plainInventories;
    std::vector<FruInventoryRequest> fruInventories;
    std::vector<ControllerRequest> controllers;
    std::vector<FirmwareRequest> firmware;
    std::vector<ClearRequest> clears;
};

/** A publisher without a bus: posts are kept, and no endpoint has a UDID. */
BusDoors RecordingDoors();

/** What was posted since the last call. Any thread. */
PostedRequests TakePosted();

/** What a post returns from now on: 0, or an error, and then nothing is kept. Any thread. */
void SetPostResult(int result);

} // namespace vantric::test
