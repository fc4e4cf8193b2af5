/** Every interface as its clients see it, row by row: members, order, types, access, flags and the
 *  values that it starts with. */
#include "interfaces/served_bus.hpp"

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

#include <memory>
#include <regex>
#include <stdexcept>

namespace vantric::test {

namespace {

namespace korv = sdbusplus::server::com::korv;
namespace obmc = sdbusplus::server::xyz::openbmc_project;

/** An interface and what it looks like. */
struct Row {
    const char* interface;
    std::shared_ptr<void> (*make)(sdbusplus::bus_t& bus, const char* path);
    const char* members;
};

template <typename Class>
std::shared_ptr<void> Make(sdbusplus::bus_t& bus, const char* path) {
    return std::make_shared<Class>(bus, path);
}

const Row rows[] = {
    {"xyz.openbmc_project.Sensor.Value", &Make<obmc::sensor::Value>,
     "Value d readwrite change 0\n"
     "MaxValue d readwrite change inf\n"
     "MinValue d readwrite change -inf\n"
     "Unit s readwrite change \"xyz.openbmc_project.Sensor.Value.Unit.Amperes\"\n"},
    {"xyz.openbmc_project.Sensor.Threshold.Warning", &Make<obmc::sensor::threshold::Warning>,
     "WarningHigh d readwrite change nan\n"
     "WarningLow d readwrite change nan\n"
     "WarningAlarmHigh b readwrite change false\n"
     "WarningAlarmLow b readwrite change false\n"
     "WarningHighAlarmAsserted signal d\n"
     "WarningHighAlarmDeasserted signal d\n"
     "WarningLowAlarmAsserted signal d\n"
     "WarningLowAlarmDeasserted signal d\n"},
    {"xyz.openbmc_project.Sensor.Threshold.Critical", &Make<obmc::sensor::threshold::Critical>,
     "CriticalHigh d readwrite change nan\n"
     "CriticalLow d readwrite change nan\n"
     "CriticalAlarmHigh b readwrite change false\n"
     "CriticalAlarmLow b readwrite change false\n"
     "CriticalHighAlarmAsserted signal d\n"
     "CriticalHighAlarmDeasserted signal d\n"
     "CriticalLowAlarmAsserted signal d\n"
     "CriticalLowAlarmDeasserted signal d\n"},
    {"xyz.openbmc_project.State.Decorator.Availability",
     &Make<obmc::state::decorator::Availability>, "Available b readwrite change true\n"},
    {"xyz.openbmc_project.State.Decorator.OperationalStatus",
     &Make<obmc::state::decorator::OperationalStatus>, "Functional b readwrite change false\n"},
    {"xyz.openbmc_project.Association.Definitions", &Make<obmc::association::Definitions>,
     "Associations a(sss) readwrite change []\n"},
    {"com.korv.bmc.Thermal.ThermalSensor", &Make<korv::bmc::thermal::ThermalSensor>,
     "SensorType s read change \"com.korv.bmc.Thermal.ThermalSensor.dev_types.UNKNOWN\"\n"
     "LocatorType u read change 0\n"
     "Location u read change 0\n"
     "LocationExt u read change 255\n"
     "DeviceType s read change \"\"\n"
     "Instance u read change 0\n"
     "TargetTemperature d read change 255\n"
     "FailedTimestamp u read change 0\n"
     "Presence b read change false\n"},
    {"com.korv.zenth.Sensor.ProbeObj", &Make<korv::zenth::sensor::ProbeObj>,
     "Key s read const \"\"\n"
     "SubType u read const 0\n"
     "ProbeReading i read change 0\n"
     "ProbeThresholds (iiiiii) readwrite change (0, 0, 0, 0, 0, 0)\n"
     "ProbeStatus y readwrite change 0\n"
     "UnitModifier y read const 0\n"
     "ProbeCapabilities q read const 0\n"
     "ProbeLocation s read const \"\"\n"
     "ReAliasedName s read const \"\"\n"
     "TargetDevKey s read const \"\"\n"
     "FriendlyLDID s read const \"\"\n"
     "SensorNumber u read const 0\n"
     "EntityID y read const 0\n"
     "Type1MinReadingRange y read const 0\n"
     "Type1MaxReadingRange y read const 0\n"
     "InitupdateInProgress u readwrite change 0\n"
     "ObjectStatus y readwrite change 0\n"},
    {"com.korv.zenth.PLDM.Inventory", &Make<korv::zenth::pldm::Inventory>,
     "LDID s read const \"\"\n"
     "FriendlyLDID s read const \"\"\n"
     "MacBaseAddress s read const \"\"\n"
     "FirmwareVersion s readwrite change \"\"\n"
     "DeviceType q read change 0\n"
     "CPUAffinity q read const 0\n"
     "DeviceStatus q read change 0\n"
     "DeviceState q read change 0\n"
     "AcceleratorAssociation q read const 0\n"},
    {"com.korv.zenth.PLDM.StateSensor", &Make<korv::zenth::pldm::StateSensor>,
     "LDID s read const \"\"\n"
     "FriendlyLDID s read const \"\"\n"
     "SensorID u read const 0\n"
     "StateSensorDetails a{s(ss)} read change {}\n"
     "Key s read const \"\"\n"},
    {"com.korv.zenth.PLDM.ControllerInventory", &Make<korv::zenth::pldm::ControllerInventory>,
     "CPUAffinity q read const 0\n"},
    {"xyz.openbmc_project.Inventory.Source.PLDM.FRU", &Make<obmc::inventory::source::pldm::FRU>,
     "ChassisType s readwrite change \"\"\n"
     "Model s readwrite change \"\"\n"
     "PN s readwrite change \"\"\n"
     "SN s readwrite change \"\"\n"
     "Manufacturer s readwrite change \"\"\n"
     "ManufacturerDate s readwrite change \"\"\n"
     "Vendor s readwrite change \"\"\n"
     "Name s readwrite change \"\"\n"
     "SKU s readwrite change \"\"\n"
     "Version s readwrite change \"\"\n"
     "AssetTag s readwrite change \"\"\n"
     "Description s readwrite change \"\"\n"
     "ECLevel s readwrite change \"\"\n"
     "Other s readwrite change \"\"\n"
     "IANA u readwrite change 0\n"},
    {"xyz.openbmc_project.Inventory.Item.Accelerator", &Make<obmc::inventory::item::Accelerator>,
     "Type s readwrite change "
     "\"xyz.openbmc_project.Inventory.Item.Accelerator.AcceleratorType.ASIC\"\n"},
};

/** What an interface says of itself on the bus: one line for each member, in its order. For a
 * property that is its name, type, access, the flag of its changes ("change" is D-Bus's own
 * default) and its value, for a signal the word and its type. */
class InterfaceTable : public ServedBus {
protected:
    std::string Describe(const std::string& path, const std::string& interface) {
        const auto xml = client.Introspect(service, path);
        const auto begin = xml.find("<interface name=\"" + interface + "\">");
        if (begin == std::string::npos) {
            throw std::runtime_error("no interface " + interface);
        }
        const auto section = xml.substr(begin, xml.find("</interface>", begin) - begin);
        const std::regex member(
            R"re(<property name="(\w+)" type="(.+)" access="(\w+)">)re"
            R"re((?:\s*<annotation name="[\w.]+EmitsChangedSignal" value="(\w+)"/>)?)re"
            R"re(|<(signal|method) name="(\w+)">(?:\s*<arg type="(.+)"/>)?)re");
        std::string lines;
        for (std::sregex_iterator match(section.begin(), section.end(), member), end; match != end;
             ++match) {
            const auto part = [&](int number) { return (*match)[number].str(); };
            if (const auto name = part(1); !name.empty()) {
                lines += name + ' ' + part(2) + ' ' + part(3) + ' ' +
                         (part(4).empty() ? "change" : part(4)) + ' ' +
                         client.GetProperty(service, path, interface.c_str(), name.c_str());
            } else {
                lines += part(6) + ' ' + part(5) + ' ' + part(7);
            }
            lines += '\n';
        }
        return lines;
    }
};

TEST_F(InterfaceTable, MembersAreThese) {
    for (const auto& [interface, make, members] : rows) {
        const auto object = make(bus, "/object");
        EXPECT_EQ(members, Describe("/object", interface)) << interface;
    }
}

} // namespace

} // namespace vantric::test
