// SPDX-License-Identifier: Apache-2.0
#include "dbus_handler/initial_properties.hpp"

#include "common/utf8.hpp"
#include "dbus_handler/probe_object.hpp"
#include "vocabulary/device_classes.hpp"
#include "vocabulary/entity_types.hpp"
#include "vocabulary/ldid.hpp"
#include "vocabulary/sensor_tag.hpp"

#include <algorithm>
#include <array>
#include <sstream>
#include <string_view>
#include <vector>

namespace vantric {

namespace {

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

/** Puts the association of an object with what it belongs to into its bag. */
void PutInventoryAssociation(PropertyBags& bags, std::string name, std::string path) {
    using Associations = std::vector<std::tuple<std::string, std::string, std::string>>;
    Put(Bag<bindings::Definitions>(bags), "Associations",
        Associations{{"inventory", ValidUtf8(std::move(name)), ValidUtf8(std::move(path))}});
}

/** Fills the bags that all numeric sensors share. An alarm is set where the reading at creation is
 *  at or beyond its threshold. */
void FillOpenBmcBags(PropertyBags& bags, const SensorInsertRequest& request) {
    const __Sensor& sensor = request.sensor;
    auto& value = Bag<bindings::Value>(bags);
    Put(value, "MaxValue", static_cast<double>(sensor.normalMax));
    Put(value, "MinValue", static_cast<double>(sensor.normalMin));
    if (sensor.baseUnit == BASE_UNIT_DEGREES_C) {
        Put(value, "Unit", bindings::Value::Unit::DegreesC);
    } else if (sensor.baseUnit == BASE_UNIT_WATTS) {
        Put(value, "Unit", bindings::Value::Unit::Watts);
    }
    FillThresholdBag(Bag<bindings::Warning>(bags), warningNames, sensor.upperWarning,
                     sensor.lowerWarning, sensor.temperature);
    FillThresholdBag(Bag<bindings::Critical>(bags), criticalNames, sensor.upperCritical,
                     sensor.lowerCritical, sensor.temperature);
    Put(Bag<bindings::Availability>(bags), "Available", false);
    Put(Bag<bindings::OperationalStatus>(bags), "Functional", false);
    PutInventoryAssociation(bags, request.entityName, request.inventoryPath);
}

constexpr std::uint32_t subTypeTemperature = 5;
constexpr std::uint32_t subTypePower = 49;
constexpr std::uint8_t entityAddInCard = 42;
constexpr std::uint8_t entityAccelerator = 11;

/** Entity types whose instance isn't a port, so that it doesn't belong to the target's key. */
constexpr std::array<std::uint16_t, 8> entitiesWithoutPort{
    ENTITY_NETWORK_CONTROLLER,  ENTITY_FPGA,
    ENTITY_ACCELERATOR,         ENTITY_ADD_IN_CARD,
    ENTITY_LOGICAL_ADD_IN_CARD, ENTITY_PROCESSOR_MEMORY_MODULE,
    ENTITY_LOGICAL_ACCELERATOR, ENTITY_OEM};

std::string TargetKey(const __Sensor& sensor, const std::string& ldid) {
    const bool port =
        sensor.entityInstance != 0 &&
        std::ranges::find(entitiesWithoutPort, sensor.entityType) == entitiesWithoutPort.end();
    return port ? Ldid(ldid).WithPort(sensor.entityInstance).Text() : ldid;
}

/** The location of a sensor without a name of its own. */
std::string LocationText(const __Sensor& sensor, ControllerTag controller) {
    std::string text;
    if (controller != CONTROLLER_UNTOLD) {
        text = "Controller " + std::to_string(controller) + " ";
    }
    if (sensor.baseUnit == BASE_UNIT_DEGREES_C) {
        text += "Temperature Sensor " + std::to_string(sensor.sensorId);
    } else if (sensor.baseUnit == BASE_UNIT_WATTS) {
        text += "Power Sensor " + std::to_string(sensor.sensorId);
    }
    return text;
}

/** What differs between the probes of accelerators and all others. */
struct Place {
    std::uint8_t entityId;
    std::string key;
    std::string location;
};

Place CardPlace(const __Sensor& sensor, const std::string& target, const std::string& path) {
    const ControllerTag controller = TagInSensorPath(path);
    return {entityAddInCard, target + KeyTail(controller, sensor.sensorId),
            sensor.name.empty() ? LocationText(sensor, controller) : sensor.name};
}

Place AcceleratorPlace(const __Sensor& sensor, const std::string& target, ThermalTyping& typing) {
    Place place{entityAccelerator, target + "#" + sensor.name, sensor.name};
    if (sensor.sensorKind == SENSOR_KIND_THERMAL_PROBE) {
        place.location = "System Board Proc Accel" +
                         std::to_string(typing.ProcAccelNumberOf(place.key)) + " Temp";
    }
    return place;
}

bool OnAccelerator(const std::string& path) {
    const auto under = [&path](std::string_view root) {
        return path.find(std::string(root) + "/ProcAccelerator") != std::string::npos;
    };
    return under(temperatureRoot) || under(powerRoot);
}

ProbeThresholds ThresholdsOf(const __Sensor& sensor) {
    const auto cut = [](std::int64_t threshold) { return static_cast<std::int32_t>(threshold); };
    return {cut(sensor.upperFatal),   cut(sensor.upperCritical), cut(sensor.upperWarning),
            cut(sensor.lowerWarning), cut(sensor.lowerCritical), cut(sensor.lowerFatal)};
}

/** A list that is taken as it is if it has the right length. */
class MemberTexts {
public:
    MemberTexts(const std::vector<std::string>& texts, std::size_t count)
        : texts(texts.size() == count ? &texts : nullptr) {}

    std::string operator[](std::size_t member) const {
        return texts != nullptr ? ValidUtf8((*texts)[member]) : "Unavailable";
    }

private:
    const std::vector<std::string>* texts;
};

/** The three names of a state sensor. */
struct Names {
    std::string ldid;
    std::string friendly;
    std::string keyTarget;
};

Names NamesOf(const Ldid& ldid, std::uint16_t instance) {
    const Ldid target = instance == 0 ? ldid : ldid.WithPort(instance);
    const bool portFirst = instance != 0 && ldid.IsEmbedded();
    return {portFirst ? ldid.WithPortFirst(instance).Text() : target.Text(),
            MakeFriendlyLdid(target.Text()), target.Text()};
}

constexpr auto slotRoot = "/xyz/openbmc_project/inventory/system/board/pcieslots";
constexpr std::uint16_t deviceTypeAccelerator = 2;
constexpr std::uint16_t deviceTypeCard = 9;
constexpr std::uint16_t deviceStatusGood = 2;
constexpr std::uint16_t noAcceleratorAssociation = 10;

std::uint32_t NumberOf(const std::string& text) {
    std::istringstream stream(text);
    std::uint32_t number = 0;
    stream >> number;
    return stream.fail() ? 0 : number;
}

/** Every text is in it, also an empty one. */
PropertyBag<bindings::FRU> BuildFruProperties(const FruFields& fields) {
    PropertyBag<bindings::FRU> bag;
    Put(bag, "ChassisType", fields.chassisType);
    Put(bag, "Model", fields.model);
    Put(bag, "PN", fields.partNumber);
    Put(bag, "SN", fields.serialNumber);
    Put(bag, "Manufacturer", fields.manufacturer);
    Put(bag, "ManufacturerDate", fields.manufactureDate);
    Put(bag, "Vendor", fields.vendor);
    Put(bag, "Name", fields.name);
    Put(bag, "SKU", fields.sku);
    Put(bag, "Version", fields.version);
    Put(bag, "AssetTag", fields.assetTag);
    Put(bag, "Description", fields.description);
    Put(bag, "ECLevel", fields.ecLevel);
    Put(bag, "Other", fields.other);
    Put(bag, "IANA", NumberOf(fields.iana));
    return bag;
}

PropertyBag<bindings::Inventory> BuildInventoryProperties(const std::string& ldid,
                                                          const FruFields& fields) {
    const bool accelerator = Ldid(ldid).IsAccelerator();
    PropertyBag<bindings::Inventory> bag;
    Put(bag, "LDID", ldid);
    Put(bag, "DeviceType", accelerator ? deviceTypeAccelerator : deviceTypeCard);
    Put(bag, "FriendlyLDID", MakeFriendlyLdid(ldid));
    Put(bag, "DeviceStatus", deviceStatusGood);
    Put(bag, "AcceleratorAssociation", noAcceleratorAssociation);
    Put(bag, "CPUAffinity", fields.cpuAffinity);
    Put(bag, "FirmwareVersion", fields.firmwareVersion);
    return bag;
}

} // namespace

PropertyBags BuildSensorProperties(const SensorInsertRequest& request, const std::string& path,
                                   ThermalTyping& typing) {
    const std::uint8_t kind = request.sensor.sensorKind;
    PropertyBags bags;
    FillOpenBmcBags(bags, request);
    if (kind == SENSOR_KIND_THERMAL_PROBE || kind == SENSOR_KIND_PROBE) {
        Bag<bindings::ProbeObj>(bags) =
            BuildProbeProperties(request.sensor, EffectiveLdid(request), path, typing);
    }
    if (kind == SENSOR_KIND_THERMAL_PROBE || kind == SENSOR_KIND_THERMAL) {
        Bag<bindings::ThermalSensor>(bags) = typing.BuildThermalProperties(request, path);
    }
    return bags;
}

PropertyBag<bindings::ProbeObj> BuildProbeProperties(const __Sensor& sensor,
                                                     const std::string& ldid,
                                                     const std::string& path,
                                                     ThermalTyping& typing) {
    const std::string target = TargetKey(sensor, ldid);
    Place place = OnAccelerator(path) ? AcceleratorPlace(sensor, target, typing)
                                      : CardPlace(sensor, target, path);
    PropertyBag<bindings::ProbeObj> bag;
    if (sensor.baseUnit == BASE_UNIT_DEGREES_C) {
        Put(bag, "SubType", subTypeTemperature);
    } else if (sensor.baseUnit == BASE_UNIT_WATTS) {
        Put(bag, "SubType", subTypePower);
    }
    Put(bag, "EntityID", place.entityId);
    Put(bag, "Key", std::move(place.key));
    Put(bag, "ProbeLocation", std::move(place.location));
    Put(bag, "meta-NonCached", target);
    Put(bag, "TargetDevKey", target);
    Put(bag, "FriendlyLDID", MakeFriendlyLdid(target));
    Put(bag, "SensorNumber", std::uint32_t{sensor.sensorId});
    Put(bag, "ProbeReading", readingUnavailable);
    Put(bag, "UnitModifier", std::uint8_t{0});
    Put(bag, "ProbeStatus", std::uint8_t{PROBE_STATUS_NONE});
    Put(bag, "ObjectStatus", std::uint8_t{OBJECT_NOT_READY});
    Put(bag, "ProbeThresholds", ThresholdsOf(sensor));
    return bag;
}

StateSensorDetails BuildStateDetails(const StateSensorRequest& request, std::size_t count) {
    const MemberTexts names(request.memberNames, count);
    const MemberTexts stateSets(request.stateSetNames, count);
    const MemberTexts values(request.valueTexts, count);
    StateSensorDetails details;
    for (std::size_t member = 0; member < count; ++member) {
        details.insert_or_assign(names[member], std::make_tuple(stateSets[member], values[member]));
    }
    return details;
}

PropertyBag<bindings::StateSensor> BuildStateSensorProperties(const StateSensorRequest& request,
                                                              const std::string& path) {
    Names names = NamesOf(Ldid(request.secondLdid), request.entityInstance);
    PropertyBag<bindings::StateSensor> bag;
    Put(bag, "LDID", std::move(names.ldid));
    Put(bag, "FriendlyLDID", std::move(names.friendly));
    Put(bag, "SensorID", std::uint32_t{request.sensorId});
    Put(bag, "StateSensorDetails", BuildStateDetails(request, request.memberCount));
    Put(bag, "Key", names.keyTarget + KeyTail(TagInStateSensorPath(path), request.sensorId));
    return bag;
}

std::string AcceleratorAssociationName(const std::string& path) {
    const auto found = path.find(acceleratorInventoryRoot);
    if (found == std::string::npos) {
        return {};
    }
    const auto begin = found + acceleratorInventoryRoot.size();
    return path.substr(begin, path.find('/', begin) - begin);
}

PropertyBags BuildFruInventoryProperties(const FruInventoryRequest& request) {
    PropertyBags bags;
    Bag<bindings::FRU>(bags) = BuildFruProperties(request.fields);
    Bag<bindings::Inventory>(bags) = BuildInventoryProperties(request.deviceLdid, request.fields);
    return bags;
}

PropertyBags BuildPlainInventoryProperties(const PlainInventoryRequest& request,
                                           const std::string& path) {
    const bool accelerator = Ldid(request.deviceLdid).IsAccelerator();
    FruFields fields;
    fields.cpuAffinity = request.cpuAffinity;
    fields.firmwareVersion = request.firmwareVersion;
    PropertyBags bags;
    Bag<bindings::Inventory>(bags) =
        BuildInventoryProperties(accelerator ? EffectiveLdid(request) : request.deviceLdid, fields);
    if (accelerator) {
        const auto slot = static_cast<std::uint8_t>(request.slot);
        PutInventoryAssociation(bags, AcceleratorAssociationName(path),
                                slotRoot + std::to_string(slot));
        Put(Bag<bindings::Accelerator>(bags), "Type", bindings::Accelerator::AcceleratorType::GPU);
    }
    return bags;
}

PropertyBags BuildControllerProperties(const ControllerRequest& request) {
    PropertyBags bags;
    Put(Bag<bindings::ControllerInventory>(bags), "CPUAffinity",
        std::uint16_t{request.cpuAffinity});
    return bags;
}

} // namespace vantric
