#include "dbus_handler/thermal_properties.hpp"

namespace vantric {

namespace {

using enum bindings::ThermalSensor::dev_types;

/** One vendor puts its chip and its connectors under one entity; the sensor id tells them apart. */
constexpr std::uint16_t mixedEntity = 80;
constexpr std::uint16_t vendorOfMixedEntity = 0x15B3;

constexpr auto embeddedDeviceType = "EmbeddedLOM";

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
    if (entity == 60 || (entity >= 135 && entity <= 155) || entity == 185 || entity == 187 ||
        (entity >= 300 && entity <= 302)) {
        return NetworkPart::asic;
    }
    return entity >= 200 && entity <= 299 ? NetworkPart::optics : NetworkPart::other;
}

ThermalType NetworkType(DeviceClass deviceClass, const __Sensor& sensor,
                        const PciIdentity& identity, bool ocpCard) {
    const NetworkPart part = NetworkPartOf(sensor, identity);
    if (part == NetworkPart::other) {
        return {UNKNOWN, &SensorNumbering::nicOtherInstance};
    }
    const bool asic = part == NetworkPart::asic;
    const auto ndcType = asic ? NDC_ASIC : NDC_OPTICS;
    const auto ndcCounter =
        asic ? &SensorNumbering::ndcAsicInstance : &SensorNumbering::ndcOpticsInstance;
    const auto category = asic ? SENSOR_CATEGORY_ASIC : SENSOR_CATEGORY_OPTICS;
    if (deviceClass == DEVICE_CLASS_EMBEDDED_NIC && sensor.entityType != mixedEntity) {
        return {ndcType, ndcCounter, category, embeddedDeviceType};
    }
    if (ocpCard) {
        return {ndcType, ndcCounter, SENSOR_CATEGORY_NONE, ocpDeviceType};
    }
    return {asic ? NIC_ASIC : NIC_OPTICS,
            asic ? &SensorNumbering::nicAsicInstance : &SensorNumbering::nicOpticsInstance,
            category};
}

ThermalType CxlType(const __Sensor& sensor) {
    switch (sensor.entityType) {
    case 66:
        return {CXL_CMB_SPD, &SensorNumbering::cxlSpdInstance};
    case 143:
        return {CXL_CMB_CTRL, &SensorNumbering::cxlCtrlInstance};
    case 65:
        if (sensor.sensorId >= 70 && sensor.sensorId <= 79) {
            return {CXL_CMB_DRAM, &SensorNumbering::cxlDramInstance};
        }
        return {CXL_CMB_COMP, &SensorNumbering::cxlCompInstance};
    default:
        return {UNKNOWN, &SensorNumbering::cxlOtherInstance};
    }
}

ThermalType AcceleratorType(const __Sensor& sensor) {
    switch (sensor.entityType) {
    case 79:
    case 148:
    case 149:
    case 152:
    case 32836:
        return {GPU_COMP, &SensorNumbering::gpuCompInstance};
    default:
        return {UNKNOWN, &SensorNumbering::gpuOtherInstance};
    }
}

} // namespace

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

PropertyBag<bindings::ThermalSensor> MakeThermalBag(std::uint8_t slot, DeviceClass deviceClass,
                                                    const ThermalType& type,
                                                    std::uint16_t instance) {
    PropertyBag<bindings::ThermalSensor> bag;
    Put(bag, "Location", std::uint32_t{slot});
    Put(bag, "LocatorType",
        deviceClass == DEVICE_CLASS_EMBEDDED_NIC ? locatorEmbedded : locatorSlot);
    Put(bag, "SensorType", type.sensorType);
    Put(bag, "Instance", std::uint32_t{instance});
    if (type.deviceType != nullptr) {
        Put(bag, "DeviceType", std::string(type.deviceType));
    }
    return bag;
}

} // namespace vantric
