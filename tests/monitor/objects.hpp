/** Published objects for the monitor's tests, each a good one that a test bends. */
#pragma once

#include "monitor/interface_names.hpp"
#include "monitor/object_model.hpp"

#include <cstdint>
#include <string>

namespace monitor::test {

inline const std::string sensorPath =
    "/xyz/openbmc_project/sensors/temperature/NIC_Slot_3_sensorid_5";
inline const std::string cardPath =
    "/xyz/openbmc_project/inventory/system/networkdevice/Nic/Slot/3";

/** A whole number as it stands in a model. */
inline Value Number(std::int64_t number) {
    return number;
}

inline Value Text(const std::string& text) {
    return text;
}

/** The interfaces of the value, threshold and status kind with a good reading. */
inline Interfaces ThermalSensor(double value = 41.0) {
    return {
        {valueInterface,
         {{"Value", value}, {"Unit", Text("xyz.openbmc_project.Sensor.Value.Unit.DegreesC")}}},
        {warningInterface, {{"WarningAlarmHigh", false}, {"WarningAlarmLow", false}}},
        {criticalInterface, {{"CriticalAlarmHigh", false}, {"CriticalAlarmLow", false}}},
        {availabilityInterface, {{"Available", true}}},
        {operationalInterface, {{"Functional", true}}},
        {associationInterface,
         {{"Associations", Associations{{"inventory", "ethernet_1",
                                         cardPath + "/networkcontroller_1/ethernet_1"}}}}},
    };
}

/** The probe interface with a good power reading. */
inline Properties PowerProbe() {
    return {
        {"SubType", Number(49)},
        {"ProbeReading", Number(12)},
        {"ProbeStatus", Number(2)},
        {"ObjectStatus", Number(2)},
        {"UnitModifier", Number(0)},
        {"ProbeLocation", Text("Power Sensor 6")},
        {"SensorNumber", Number(6)},
        {"TargetDevKey", Text("NIC.Slot.3")},
        {"FriendlyLDID", Text("NIC in Slot 3")},
    };
}

inline Properties Inventory(const std::string& ldid, const std::string& friendly) {
    return {
        {"LDID", Text(ldid)},
        {"FriendlyLDID", Text(friendly)},
        {"FirmwareVersion", Text("22.31.10")},
        {"DeviceStatus", Number(2)},
    };
}

inline Properties StateSensor(const StateDetails& details) {
    return {
        {"LDID", Text("NIC.Slot.3-1")},
        {"FriendlyLDID", Text("NIC in Slot 3 Port 1")},
        {"SensorID", Number(9)},
        {"StateSensorDetails", details},
    };
}

} // namespace monitor::test
