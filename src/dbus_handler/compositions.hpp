// SPDX-License-Identifier: Apache-2.0
/** The sets of interfaces that objects are published with. */
#pragma once

#include "dbus_handler/probe_object.hpp"
#include "dbus_handler/property_bags.hpp"

#include <sdbusplus/bus.hpp>

#include <string>

namespace vantric {

/** Some interfaces of an object, in an order that matters to clients. */
template <typename... Interfaces>
struct InterfaceList {
    /** Announces each, unless it is announced. */
    template <typename Object>
    static void EmitAdded(Object& object) {
        (static_cast<Interfaces&>(object).emit_added(), ...);
    }

    /** Withdraws each, if it is announced. */
    template <typename Object>
    static void EmitRemoved(Object& object) {
        (static_cast<Interfaces&>(object).emit_removed(), ...);
    }
};

/** What numeric sensors share that are shown as OpenBMC sensors. */
class OpenBMCInterfaces : public bindings::Value,
                          public bindings::Warning,
                          public bindings::Critical,
                          public bindings::Availability,
                          public bindings::OperationalStatus,
                          public bindings::Definitions {
public:
    OpenBMCInterfaces(sdbusplus::bus_t& bus, const std::string& path, const PropertyBags& bags)
        : Value(bus, path.c_str(), Bag<bindings::Value>(bags)),
          Warning(bus, path.c_str(), Bag<bindings::Warning>(bags)),
          Critical(bus, path.c_str(), Bag<bindings::Critical>(bags)),
          Availability(bus, path.c_str(), Bag<bindings::Availability>(bags)),
          OperationalStatus(bus, path.c_str(), Bag<bindings::OperationalStatus>(bags)),
          Definitions(bus, path.c_str(), Bag<bindings::Definitions>(bags)) {}
};

/** A numeric sensor for the thermal subsystem. */
class ThermalInterface : public OpenBMCInterfaces, public bindings::ThermalSensor {
public:
    ThermalInterface(sdbusplus::bus_t& bus, const std::string& path, const PropertyBags& bags)
        : OpenBMCInterfaces(bus, path, bags),
          ThermalSensor(bus, path.c_str(), Bag<bindings::ThermalSensor>(bags)) {}

    using Announced = InterfaceList<bindings::Value, bindings::Warning, bindings::Critical,
                                    bindings::Availability, bindings::OperationalStatus,
                                    bindings::Definitions, bindings::ThermalSensor>;
    using Withdrawn = Announced;
};

/** A numeric sensor for the sensor data cache. */
class ProbeObjInterface : public bindings::Definitions, public ProbeObject {
public:
    ProbeObjInterface(sdbusplus::bus_t& bus, const std::string& path, const PropertyBags& bags)
        : Definitions(bus, path.c_str(), Bag<bindings::Definitions>(bags)),
          ProbeObject(bus, path, Bag<bindings::ProbeObj>(bags)) {}

    using Announced = InterfaceList<bindings::Definitions, bindings::ProbeObj>;
    using Withdrawn = Announced;
};

/** A numeric sensor for both. */
class Thermal_Probe_Interfaces : public OpenBMCInterfaces,
                                 public bindings::ThermalSensor,
                                 public ProbeObject {
public:
    Thermal_Probe_Interfaces(sdbusplus::bus_t& bus, const std::string& path,
                             const PropertyBags& bags)
        : OpenBMCInterfaces(bus, path, bags),
          ThermalSensor(bus, path.c_str(), Bag<bindings::ThermalSensor>(bags)),
          ProbeObject(bus, path, Bag<bindings::ProbeObj>(bags)) {}

    using Announced =
        InterfaceList<bindings::Value, bindings::Warning, bindings::Critical,
                      bindings::Availability, bindings::OperationalStatus, bindings::Definitions,
                      bindings::ThermalSensor, bindings::ProbeObj>;
    using Withdrawn = Announced;
};

/** A device without FRU data. */
class InventoryDbusInterface : public bindings::Inventory {
public:
    InventoryDbusInterface(sdbusplus::bus_t& bus, const std::string& path, const PropertyBags& bags)
        : Inventory(bus, path.c_str(), Bag<bindings::Inventory>(bags)) {}

    using Announced = InterfaceList<bindings::Inventory>;
    using Withdrawn = Announced;
};

/** A device with FRU data. */
class InventoryWithFRUDbusInterface : public bindings::FRU, public bindings::Inventory {
public:
    InventoryWithFRUDbusInterface(sdbusplus::bus_t& bus, const std::string& path,
                                  const PropertyBags& bags)
        : FRU(bus, path.c_str(), Bag<bindings::FRU>(bags)),
          Inventory(bus, path.c_str(), Bag<bindings::Inventory>(bags)) {}

    using Announced = InterfaceList<bindings::FRU, bindings::Inventory>;
    using Withdrawn = InterfaceList<bindings::Inventory, bindings::FRU>;
};

/** An accelerator without FRU data. */
class AccInvDbusInterface : public bindings::Inventory,
                            public bindings::Accelerator,
                            public bindings::Definitions {
public:
    AccInvDbusInterface(sdbusplus::bus_t& bus, const std::string& path, const PropertyBags& bags)
        : Inventory(bus, path.c_str(), Bag<bindings::Inventory>(bags)),
          Accelerator(bus, path.c_str(), Bag<bindings::Accelerator>(bags)),
          Definitions(bus, path.c_str(), Bag<bindings::Definitions>(bags)) {}

    using Announced =
        InterfaceList<bindings::Accelerator, bindings::Inventory, bindings::Definitions>;
    using Withdrawn = Announced;
};

/** A state sensor. */
class StateSensorDbusInterface : public bindings::StateSensor {
public:
    StateSensorDbusInterface(sdbusplus::bus_t& bus, const std::string& path,
                             const PropertyBags& bags)
        : StateSensor(bus, path.c_str(), Bag<bindings::StateSensor>(bags)) {}

    using Announced = InterfaceList<bindings::StateSensor>;
    using Withdrawn = Announced;
};

/** A controller of a device. */
class ControllerDbusInterface : public bindings::ControllerInventory {
public:
    ControllerDbusInterface(sdbusplus::bus_t& bus, const std::string& path,
                            const PropertyBags& bags)
        : ControllerInventory(bus, path.c_str(), Bag<bindings::ControllerInventory>(bags)) {}

    using Announced = InterfaceList<bindings::ControllerInventory>;
    using Withdrawn = Announced;
};

} // namespace vantric
