// SPDX-License-Identifier: Apache-2.0
/** The first values of an object's properties. */
#pragma once

#include "common/utf8.hpp"

#include <com/korv/bmc/Thermal/ThermalSensor/server.hpp>
#include <com/korv/zenth/PLDM/ControllerInventory/server.hpp>
#include <com/korv/zenth/PLDM/Inventory/server.hpp>
#include <com/korv/zenth/PLDM/StateSensor/server.hpp>
#include <com/korv/zenth/Sensor/ProbeObj/server.hpp>
#include <xyz/openbmc_project/Association/Definitions/server.hpp>
#include <xyz/openbmc_project/Inventory/Item/Accelerator/server.hpp>
#include <xyz/openbmc_project/Inventory/Source/PLDM/FRU/server.hpp>
#include <xyz/openbmc_project/Sensor/Threshold/Critical/server.hpp>
#include <xyz/openbmc_project/Sensor/Threshold/Warning/server.hpp>
#include <xyz/openbmc_project/Sensor/Value/server.hpp>
#include <xyz/openbmc_project/State/Decorator/Availability/server.hpp>
#include <xyz/openbmc_project/State/Decorator/OperationalStatus/server.hpp>

#include <cstdint>
#include <map>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

namespace vantric {

/** The generated bindings under the names that this folder uses. */
namespace bindings {
using Value = sdbusplus::server::xyz::openbmc_project::sensor::Value;
using Warning = sdbusplus::server::xyz::openbmc_project::sensor::threshold::Warning;
using Critical = sdbusplus::server::xyz::openbmc_project::sensor::threshold::Critical;
using Availability = sdbusplus::server::xyz::openbmc_project::state::decorator::Availability;
using OperationalStatus =
    sdbusplus::server::xyz::openbmc_project::state::decorator::OperationalStatus;
using Definitions = sdbusplus::server::xyz::openbmc_project::association::Definitions;
using ThermalSensor = sdbusplus::server::com::korv::bmc::thermal::ThermalSensor;
using ProbeObj = sdbusplus::server::com::korv::zenth::sensor::ProbeObj;
using FRU = sdbusplus::server::xyz::openbmc_project::inventory::source::pldm::FRU;
using Inventory = sdbusplus::server::com::korv::zenth::pldm::Inventory;
using StateSensor = sdbusplus::server::com::korv::zenth::pldm::StateSensor;
using ControllerInventory = sdbusplus::server::com::korv::zenth::pldm::ControllerInventory;
using Accelerator = sdbusplus::server::xyz::openbmc_project::inventory::item::Accelerator;
} // namespace bindings

/** Property name to first value, for one interface. A property that isn't in it keeps the
 *  interface's default. */
template <typename Interface>
using PropertyBag = std::map<std::string, typename Interface::PropertiesVariant>;

/** The bag of one interface; a type of its own, though two interfaces may have like properties. */
template <typename Interface>
struct InterfaceBag {
    PropertyBag<Interface> properties;
};

/** One bag for each interface. One that isn't filled stays empty. */
using PropertyBags =
    std::tuple<InterfaceBag<bindings::Value>, InterfaceBag<bindings::Warning>,
               InterfaceBag<bindings::Critical>, InterfaceBag<bindings::Availability>,
               InterfaceBag<bindings::OperationalStatus>, InterfaceBag<bindings::ThermalSensor>,
               InterfaceBag<bindings::ProbeObj>, InterfaceBag<bindings::FRU>,
               InterfaceBag<bindings::Inventory>, InterfaceBag<bindings::StateSensor>,
               InterfaceBag<bindings::Definitions>, InterfaceBag<bindings::Accelerator>,
               InterfaceBag<bindings::ControllerInventory>>;

/** Thresholds of a probe: upper fatal, critical, warning, lower warning, critical, fatal. */
using ProbeThresholds =
    std::tuple<std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t>;

/** Returns the bag of one interface. */
template <typename Interface>
PropertyBag<Interface>& Bag(PropertyBags& bags) {
    return std::get<InterfaceBag<Interface>>(bags).properties;
}
template <typename Interface>
const PropertyBag<Interface>& Bag(const PropertyBags& bags) {
    return std::get<InterfaceBag<Interface>>(bags).properties;
}

/** Puts a value into a bag; the value's type is exactly the property's. Text may hold anything: it
 *  becomes valid UTF-8 here. */
template <typename Bag, typename Value>
void Put(Bag& bag, const char* name, Value value) {
    if constexpr (std::is_same_v<Value, std::string>) {
        value = ValidUtf8(std::move(value));
    }
    bag.insert_or_assign(name,
                         typename Bag::mapped_type(std::in_place_type<Value>, std::move(value)));
}

} // namespace vantric
