// SPDX-License-Identifier: Apache-2.0
/** Published objects for the monitor's tests, each a good one that a test bends. */
#pragma once

#include "monitor/interface_names.hpp"
#include "monitor/object_model.hpp"

#include <cstdint>
#include <string>

namespace monitor::test {

inline const std::string sensorPath =
    "/xyz/openbmc_project/sensors/temperature/NIC_Slot_3_sensorid_5";
inline const std::string nics = "/xyz/openbmc_project/inventory/system/networkdevice/Nic/";
inline const std::string cardPath = nics + "Slot/3";

inline Value Number(std::int32_t number) {
    return number;
}

inline Value Text(const std::string& text) {
    return text;
}

inline Interfaces About(const std::string& name, const std::string& path) {
    return {{associationInterface, {{"Associations", Associations{{"inventory", name, path}}}}}};
}

/** A temperature of a port of the card with warning and critical limits. */
inline Interfaces Temperature() {
    Interfaces sensor = About("ethernet_1", cardPath + "/networkcontroller_1/ethernet_1");
    sensor[valueInterface] = {{"Value", 41.5}};
    sensor[warningInterface] = {{"WarningHigh", 70.0}};
    sensor[criticalInterface] = {{"CriticalLow", -5.0}, {"CriticalHigh", 80.0}};
    sensor[availabilityInterface] = {{"Available", true}};
    return sensor;
}

/** A sensor that has the probe interface only. */
inline Interfaces Probe() {
    return {{probeInterface,
             {{"ProbeReading", Number(12)},
              {"ProbeStatus", Number(2)},
              {"ProbeLocation", Text("Board power")},
              {"ProbeThresholds", ProbeThresholds{0, 20, 15, 0, 0, 0}}}}};
}

inline Interfaces Inventory(const std::string& ldid, const std::string& name) {
    return {{inventoryInterface,
             {{"LDID", Text(ldid)},
              {"FriendlyLDID", Text(name)},
              {"FirmwareVersion", Text("22.31.10")},
              {"DeviceStatus", Number(2)}}}};
}

inline Interfaces States(const StateDetails& details) {
    return {{stateInterface, {{"StateSensorDetails", details}}}};
}

} // namespace monitor::test
