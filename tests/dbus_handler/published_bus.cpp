// SPDX-License-Identifier: Apache-2.0
#include "dbus_handler/published_bus.hpp"

#include <regex>

namespace vantric::test {

std::vector<std::string> PublishedBus::Changes(const std::string& path) {
    static const std::regex body("\"[^\"]*\", \\{\"(\\w+)\": (.*)\\}, \\[\\]");
    std::vector<std::string> changes;
    for (const auto& signal : Sent()) {
        if (signal.path == path && signal.member == "PropertiesChanged") {
            changes.push_back(std::regex_replace(signal.body, body, "$1=$2"));
        }
    }
    return changes;
}

std::vector<std::string> PublishedBus::Told(const std::vector<Signal>& signals,
                                            const std::string& member, const std::string& path) {
    std::vector<std::string> interfaces;
    const std::string head = "\"" + path + "\", ";
    for (const auto& signal : signals) {
        if (signal.member == member && signal.body.starts_with(head)) {
            const auto begin = signal.body.find('"', head.size()) + 1;
            interfaces.push_back(
                Short(signal.body.substr(begin, signal.body.find('"', begin) - begin)));
        }
    }
    return interfaces;
}

Interfaces PublishedBus::Object(const char* root, const std::string& path) {
    auto objects = client.GetManagedObjects(service, root);
    Interfaces named;
    for (auto& [interface, properties] : objects[path]) {
        if (!interface.starts_with("org.freedesktop.DBus.")) {
            named[Short(interface)] = std::move(properties);
        }
    }
    return named;
}

std::string Short(const std::string& interface) {
    return interface.substr(interface.rfind('.') + 1);
}

SensorInsertRequest CardSensor(std::uint8_t kind, std::uint16_t id) {
    SensorInsertRequest request;
    request.sensor.sensorKind = kind;
    request.sensor.baseUnit = BASE_UNIT_DEGREES_C;
    request.sensor.sensorId = id;
    request.sensor.entityInstance = 1;
    request.sensor.entityType = 300;
    request.sensor.temperature = 30;
    request.sensor.normalMax = 100;
    request.sensor.normalMin = -5;
    request.objectPath =
        "/xyz/openbmc_project/sensors/temperature/NIC.Slot.3_sensorid_" + std::to_string(id);
    request.deviceLdid = "NIC.Slot.3";
    request.inventoryPath = "/xyz/openbmc_project/inventory/system/networkdevice/Nic/Slot/3/"
                            "networkcontroller_1/ethernet_1";
    request.entityName = "ethernet_1";
    request.slot = 3;
    return request;
}

std::string CardSensorPath(std::uint16_t id) {
    return "/xyz/openbmc_project/sensors/temperature/NIC_Slot_3_sensorid_" + std::to_string(id);
}

SensorValueRequest Reading(double value, std::uint8_t kind, std::uint16_t id) {
    SensorValueRequest request;
    request.value = value;
    request.deviceLdid = "NIC.Slot.3";
    request.pathText = "_sensorid_" + std::to_string(id);
    request.sensorKind = kind;
    return request;
}

} // namespace vantric::test
