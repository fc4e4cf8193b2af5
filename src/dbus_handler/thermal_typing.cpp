// SPDX-License-Identifier: Apache-2.0
#include "dbus_handler/thermal_typing.hpp"

#include "common/log.hpp"
#include "dbus_handler/platform_reads.hpp"
#include "vocabulary/device_classes.hpp"
#include "vocabulary/entity_types.hpp"
#include "vocabulary/ldid.hpp"

namespace vantric {

namespace {

using enum bindings::ThermalSensor::dev_types;

/** One vendor puts its chip and its connectors under one entity; the sensor id tells them apart. */
constexpr std::uint16_t mixedEntity = ENTITY_IO_MODULE;
constexpr std::uint16_t vendorOfMixedEntity = 0x15B3;

constexpr auto embeddedDeviceType = "EmbeddedLOM";
constexpr auto ocpDeviceType = "OCP3";

constexpr std::uint32_t locatorEmbedded = 2;
constexpr std::uint32_t locatorSlot = 6;

/** Where on a network device a sensor sits. */
enum class NetworkPart { asic, optics, other };

NetworkPart NetworkPartOf(const __Sensor& sensor, const PciIdentity& identity) {
    const std::uint16_t entity = sensor.entityType;
    if (entity == mixedEntity) {
        if (identity.vendorId != vendorOfMixedEntity ||
            identity.subVendorId != vendorOfMixedEntity) {
            return NetworkPart::other;
        }
        switch (sensor.sensorId) {
        case 1:
            return NetworkPart::asic;
        case 6:
        case 7:
            return NetworkPart::optics;
        default:
            return NetworkPart::other;
        }
    }
    if (entity == ENTITY_BOARD || IsChip(entity) || entity == ENTITY_CONNECTOR ||
        entity == ENTITY_CABLE || IsPort(entity)) {
        return NetworkPart::asic;
    }
    return IsConnector(entity) ? NetworkPart::optics : NetworkPart::other;
}

ThermalType NetworkType(DeviceClass deviceClass, const __Sensor& sensor,
                        const PciIdentity& identity, bool ocpCard) {
    const NetworkPart part = NetworkPartOf(sensor, identity);
    if (part == NetworkPart::other) {
        return {UNKNOWN, &InstanceCounters::nicOtherInstance};
    }
    const bool asic = part == NetworkPart::asic;
    const auto ndcType = asic ? NDC_ASIC : NDC_OPTICS;
    const auto ndcCounter =
        asic ? &InstanceCounters::ndcAsicInstance : &InstanceCounters::ndcOpticsInstance;
    const auto category = asic ? SENSOR_CATEGORY_ASIC : SENSOR_CATEGORY_OPTICS;
    if (deviceClass == DEVICE_CLASS_EMBEDDED_NIC && sensor.entityType != mixedEntity) {
        return {ndcType, ndcCounter, category, embeddedDeviceType};
    }
    if (ocpCard) {
        return {ndcType, ndcCounter, SENSOR_CATEGORY_NONE, ocpDeviceType};
    }
    return {asic ? NIC_ASIC : NIC_OPTICS,
            asic ? &InstanceCounters::nicAsicInstance : &InstanceCounters::nicOpticsInstance,
            category};
}

ThermalType CxlType(const __Sensor& sensor) {
    switch (sensor.entityType) {
    case ENTITY_MEMORY_MODULE:
        return {CXL_CMB_SPD, &InstanceCounters::cxlSpdInstance};
    case ENTITY_MEMORY_CONTROLLER:
        return {CXL_CMB_CTRL, &InstanceCounters::cxlCtrlInstance};
    case ENTITY_MEMORY_BOARD:
        if (sensor.sensorId >= 70 && sensor.sensorId <= 79) {
            return {CXL_CMB_DRAM, &InstanceCounters::cxlDramInstance};
        }
        return {CXL_CMB_COMP, &InstanceCounters::cxlCompInstance};
    default:
        return {UNKNOWN, &InstanceCounters::cxlOtherInstance};
    }
}

ThermalType AcceleratorType(const __Sensor& sensor) {
    switch (sensor.entityType) {
    case ENTITY_PROCESSOR_MEMORY_MODULE:
    case ENTITY_FPGA:
    case ENTITY_ACCELERATOR:
    case ENTITY_GPU:
    case ENTITY_LOGICAL_ADD_IN_CARD:
        return {GPU_COMP, &InstanceCounters::gpuCompInstance};
    default:
        return {UNKNOWN, &InstanceCounters::gpuOtherInstance};
    }
}

} // namespace

DeviceClass DeviceClassOf(const std::string& inventoryPath, const std::string& effectiveLdid) {
    const auto under = [&](std::string_view root) {
        return inventoryPath.find(root) != std::string::npos;
    };
    if (Ldid(effectiveLdid).IsEmbeddedNic()) {
        return DEVICE_CLASS_EMBEDDED_NIC;
    }
    if (under(cxlMemoryInventoryRoot)) {
        return DEVICE_CLASS_CXL;
    }
    return under(procAcceleratorInventoryRoot) ? DEVICE_CLASS_ACCELERATOR : DEVICE_CLASS_NETWORK;
}

ThermalType ThermalTypeOf(DeviceClass deviceClass, const __Sensor& sensor,
                          const PciIdentity& identity, bool ocpCard) {
    switch (deviceClass) {
    case DEVICE_CLASS_CXL:
        return CxlType(sensor);
    case DEVICE_CLASS_ACCELERATOR:
        return AcceleratorType(sensor);
    case DEVICE_CLASS_NETWORK:
    case DEVICE_CLASS_EMBEDDED_NIC:
        break;
    }
    return NetworkType(deviceClass, sensor, identity, ocpCard);
}

PropertyBag<bindings::ThermalSensor>
ThermalTyping::BuildThermalProperties(const SensorInsertRequest& request, const std::string& path) {
    const DeviceClass deviceClass = DeviceClassOf(request.inventoryPath, EffectiveLdid(request));
    const bool embedded = deviceClass == DEVICE_CLASS_EMBEDDED_NIC;
    const bool ocpCard =
        (embedded || deviceClass == DEVICE_CLASS_NETWORK) && IsOcpCard(request.slot);
    const ThermalType type = ThermalTypeOf(deviceClass, request.sensor, request.identity, ocpCard);
    if (type.category != SENSOR_CATEGORY_NONE) {
        sensorCategories.try_emplace(path, type.category);
    }
    auto& counter = counters.*type.counter;
    const auto [number, added] = instanceNumbers.try_emplace(path, counter);
    if (added) {
        ++counter;
    }
    PropertyBag<bindings::ThermalSensor> bag;
    Put(bag, "Location", std::uint32_t{request.slot});
    Put(bag, "LocatorType", embedded ? locatorEmbedded : locatorSlot);
    Put(bag, "SensorType", type.sensorType);
    Put(bag, "Instance", std::uint32_t{number->second});
    if (type.deviceType != nullptr) {
        Put(bag, "DeviceType", std::string(type.deviceType));
    }
    return bag;
}

void ThermalTyping::MakeOcp(const std::string& path, bindings::ThermalSensor& object,
                            const std::string& ldid) {
    const auto retype = [&](auto type, std::uint16_t& counter) {
        object.sensorType(type);
        object.deviceType(ocpDeviceType);
        object.instance(counter);
        ++counter;
    };
    const auto entry = sensorCategories.find(path);
    if (entry == sensorCategories.end()) {
        return;
    }
    if (entry->second == SENSOR_CATEGORY_ASIC && object.sensorType() != NDC_ASIC) {
        VANTRIC_LOG(LOG_LEVEL_TRACE, "Updating Sensor Type to NDC_ASIC for %s\n", ldid.c_str());
        retype(NDC_ASIC, counters.ndcAsicInstance);
    } else if (entry->second == SENSOR_CATEGORY_OPTICS && object.sensorType() != NDC_OPTICS) {
        VANTRIC_LOG(LOG_LEVEL_TRACE, "Updating Sensor Type to NDC_OPTIC for %s\n", ldid.c_str());
        retype(NDC_OPTICS, counters.ndcOpticsInstance);
    }
}

std::uint8_t ThermalTyping::ProcAccelNumberOf(const std::string& key) {
    const auto [entry, added] =
        procAccelNumbers.try_emplace(key, static_cast<std::uint8_t>(procAccelNumber));
    if (added) {
        ++procAccelNumber;
    } else {
        procAccelNumber = entry->second; // the count goes on from the number that came back
    }
    return entry->second;
}

} // namespace vantric
