// SPDX-License-Identifier: Apache-2.0
/** Accelerators of the GPU type. */
#pragma once

#include "accelerator/sct.hpp"
#include "device/device.hpp"

#include <chrono>
#include <cstdint>
#include <vector>

namespace vantric {

/** An accelerator card, or the endpoint that speaks for a whole board of accelerators.
 *
 * Sensors that aren't wanted (modeling/sensor_choice.hpp) leave the extracted data before it is
 * modelled. Of a card, the sensors are polled in three groups, each at its own rate; of a board,
 * all of them in every cycle. A board also gets inventory objects for itself and its eight
 * accelerators. */
class Accelerator : public Device {
public:
    /** @param sct the table of sensors that count; outlives this */
    Accelerator(const DeviceDetails& details, const std::string& basePath, const BusDoors& doors,
                Sct& sct = Sct::OfProcess());

protected:
    void InventoryTheDevice() override;
    VantricStatus MonitorTheDevice() override;

private:
    using TimePoint = std::chrono::steady_clock::time_point;

    // Inventory.
    void FilterSensors();
    void FilterNumericSensors(__extractedData& data);
    void GroupSensors();
    void CreateVirtualAMDDevices();
    void ModelAccelerator();

    // Monitoring, with deviceMutex held.
    enum class States { DUE, NOT_DUE };
    VantricStatus MonitorEndpoint(PLDMCmds& endpoint, States states);
    VantricStatus ReadDueGroups(PLDMCmds& endpoint, ReadingMap& readings);
    static void ReadSensorGroup(const std::vector<std::uint16_t>& ids, TimePoint& readAt,
                                PLDMCmds& endpoint, ReadingMap& readings, VantricStatus& status);

    Sct& sct;
    TimePoint fastSensorsReadAt;
    TimePoint mediumSensorsReadAt;
    TimePoint slowSensorsReadAt;
    std::vector<std::uint16_t> numericSensorIds; ///< of the last endpoint, unwanted ones included
    std::vector<std::uint16_t> fastSensorIds;    ///< read at fastAge
    std::vector<std::uint16_t> mediumSensorIds;  ///< read at mediumAge
    std::vector<std::uint16_t> slowSensorIds;    ///< read at slowAge
    bool isAmdUbb;                               ///< the endpoint speaks for a whole board
};

} // namespace vantric
