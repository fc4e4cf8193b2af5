/** What was posted to the main thread, for a test to look at.
 *
 * posted_requests.cpp defines all handlers. An executable that is linked with it has no D-Bus side:
 * the handlers keep the records. */
#pragma once

#include "dbus_handler/requests.hpp"

#include <string>
#include <vector>

namespace vantric::test {

struct PostedRequests {
    std::vector<std::string> order; ///< names of the handlers, over all kinds of records
    std::vector<SensorInsertRequest> sensors;
    std::vector<SensorValueRequest> values;
    std::vector<StateSensorRequest> stateSensors; ///< to dbusStateSensorDataInsert
    std::vector<StateSensorRequest> states;       ///< to dbusSetStateSensorValue
    std::vector<HealthStatusRequest> healths;
    std::vector<PlainInventoryRequest> plainInventories;
    std::vector<FruInventoryRequest> fruInventories;
    std::vector<ControllerRequest> controllers;
    std::vector<FirmwareRequest> firmware;
    std::vector<ClearRequest> clears;
};

/** What came since the last call. Any thread. */
PostedRequests TakePosted();

} // namespace vantric::test
