#include "dbus_handler/sensor_properties.hpp"

namespace vantric {

namespace {

bool Holds(const std::string& text, const char* part) {
    return text.find(part) != std::string::npos;
}

/** The four properties of a threshold interface by their names. */
struct ThresholdNames {
    const char* high;
    const char* low;
    const char* alarmHigh;
    const char* alarmLow;
};

constexpr ThresholdNames warningNames{"WarningHigh", "WarningLow", "WarningAlarmHigh",
                                      "WarningAlarmLow"};
constexpr ThresholdNames criticalNames{"CriticalHigh", "CriticalLow", "CriticalAlarmHigh",
                                       "CriticalAlarmLow"};

template <typename Bag>
void FillThresholdBag(Bag& bag, const ThresholdNames& names, std::int64_t upper, std::int64_t lower,
                      std::int64_t temperature) {
    if (upper != 0) {
        Put(bag, names.high, static_cast<double>(upper));
        Put(bag, names.alarmHigh, temperature >= upper);
    }
    if (lower != 0) {
        Put(bag, names.low, static_cast<double>(lower));
        Put(bag, names.alarmLow, temperature <= lower);
    }
}

} // namespace

const std::string& EffectiveLdid(const SensorInsertRequest& request) {
    return request.resolvedLdid.empty() ? request.deviceLdid : request.resolvedLdid;
}

DeviceClass DeviceClassOf(const std::string& inventoryPath, const std::string& effectiveLdid) {
    if (Holds(effectiveLdid, "NIC.Embedded.")) {
        return DEVICE_CLASS_EMBEDDED_NIC;
    }
    if (Holds(inventoryPath, "/xyz/openbmc_project/inventory/system/cxl/memory/")) {
        return DEVICE_CLASS_CXL;
    }
    if (Holds(inventoryPath,
              "/xyz/openbmc_project/inventory/system/accelerator/ProcAccelerator/")) {
        return DEVICE_CLASS_ACCELERATOR;
    }
    return DEVICE_CLASS_NETWORK;
}

void FillOpenBmcBags(PropertyBags& bags, const SensorInsertRequest& request) {
    const __Sensor& sensor = request.sensor;
    auto& value = Bag<BAG_VALUE>(bags);
    Put(value, "MaxValue", static_cast<double>(sensor.normalMax));
    Put(value, "MinValue", static_cast<double>(sensor.normalMin));
    if (sensor.baseUnit == BASE_UNIT_DEGREES_C) {
        Put(value, "Unit", bindings::Value::Unit::DegreesC);
    } else if (sensor.baseUnit == BASE_UNIT_WATTS) {
        Put(value, "Unit", bindings::Value::Unit::Watts);
    }
    FillThresholdBag(Bag<BAG_WARNING>(bags), warningNames, sensor.upperWarning, sensor.lowerWarning,
                     sensor.temperature);
    FillThresholdBag(Bag<BAG_CRITICAL>(bags), criticalNames, sensor.upperCritical,
                     sensor.lowerCritical, sensor.temperature);
    Put(Bag<BAG_AVAILABILITY>(bags), "Available", false);
    Put(Bag<BAG_OPERATIONAL_STATUS>(bags), "Functional", false);
    PutInventoryAssociation(Bag<BAG_DEFINITIONS>(bags), request.entityName, request.inventoryPath);
}

} // namespace vantric
