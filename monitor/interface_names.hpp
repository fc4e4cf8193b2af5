// SPDX-License-Identifier: Apache-2.0
/** The names on the bus that the monitor reads. */
#pragma once

namespace monitor {

inline constexpr const char* serviceName = "com.korv.zenth.vantricd";
inline constexpr const char* valueInterface = "xyz.openbmc_project.Sensor.Value";
inline constexpr const char* warningInterface = "xyz.openbmc_project.Sensor.Threshold.Warning";
inline constexpr const char* criticalInterface = "xyz.openbmc_project.Sensor.Threshold.Critical";
inline constexpr const char* availabilityInterface =
    "xyz.openbmc_project.State.Decorator.Availability";
inline constexpr const char* associationInterface = "xyz.openbmc_project.Association.Definitions";
inline constexpr const char* thermalInterface = "com.korv.bmc.Thermal.ThermalSensor";
inline constexpr const char* probeInterface = "com.korv.zenth.Sensor.ProbeObj";
inline constexpr const char* inventoryInterface = "com.korv.zenth.PLDM.Inventory";
inline constexpr const char* stateInterface = "com.korv.zenth.PLDM.StateSensor";
inline constexpr const char* fruInterface = "xyz.openbmc_project.Inventory.Source.PLDM.FRU";

} // namespace monitor
