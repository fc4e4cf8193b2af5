// SPDX-License-Identifier: Apache-2.0
#include "dbus_handler/platform_reads.hpp"

#include "common/log.hpp"

#include <sdbusplus/bus.hpp>
#include <sdbusplus/exception.hpp>
#include <sdbusplus/message/native_types.hpp>

#include <array>
#include <charconv>
#include <tuple>
#include <variant>

namespace vantric {

namespace {

/** Reads a property over the calling thread's connection to the system bus. A value of another type
 *  than T reads as an empty T.
 *  @throws sdbusplus::exception::SdBusError if the service doesn't answer with a value. */
template <typename T>
T ReadProperty(const char* service, const std::string& path, const char* interface,
               const std::string& name) {
    sd_bus* connection = nullptr;
    const int opened = sd_bus_default_system(&connection);
    if (opened < 0) {
        throw sdbusplus::exception::SdBusError(-opened, "sd_bus_default_system");
    }
    sdbusplus::bus_t bus(connection, std::false_type());
    auto call =
        bus.new_method_call(service, path.c_str(), "org.freedesktop.DBus.Properties", "Get");
    call.append(interface, name);
    auto reply = bus.call(call);
    std::variant<T> value;
    reply.read(value);
    return std::get<T>(std::move(value));
}

std::string LowerHex(std::uint8_t number) {
    std::array<char, 2> digits{};
    const auto end = std::to_chars(digits.begin(), digits.end(), number, 16).ptr;
    return "0x" + std::string(digits.begin(), end);
}

} // namespace

std::string getFRUPropertyVal(std::uint8_t slot, const std::string& name) {
    try {
        return ReadProperty<std::string>("xyz.openbmc_project.EntityManager",
                                         fruPath + std::to_string(slot) + "_FRU",
                                         "xyz.openbmc_project.Inventory.Decorator.Asset", name);
    } catch (const std::exception& error) {
        VANTRIC_LOG(LOG_LEVEL_TRACE, "FRU Dbus is not having details for slot[%d]: %s \n", slot,
                    error.what());
        return {};
    }
}

bool IsOcpCard(std::uint8_t slot) {
    return getFRUPropertyVal(slot, "Model").find("OCP") != std::string::npos;
}

std::string BusUdidReader::getUDIDPropertyVal(std::uint8_t slot, std::uint8_t busAddress) const {
    using UdidInfo = std::vector<std::tuple<std::string, std::string>>;
    try {
        const auto pairs = ReadProperty<UdidInfo>(
            "com.korv.bmc.arp.arp", "/com/korv/bmc/arp/arp/slot/slot" + std::to_string(slot),
            "com.korv.bmc.arp.arp", "UDIDInfo");
        const std::string wanted = LowerHex(busAddress);
        for (const auto& [key, udid] : pairs) {
            if (key == wanted) {
                return udid;
            }
        }
    } catch (const std::exception& error) {
        VANTRIC_LOG(LOG_LEVEL_TRACE, "UDID dbus is not having details for slot[%d]: %s \n", slot,
                    error.what());
    }
    return {};
}

} // namespace vantric
