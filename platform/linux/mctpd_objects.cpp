// SPDX-License-Identifier: Apache-2.0
#include "mctpd_objects.hpp"

#include <sdbusplus/exception.hpp>
#include <sdbusplus/message.hpp>

#include <algorithm>
#include <cctype>
#include <map>
#include <variant>

namespace mctplink {

namespace {

constexpr std::string_view networksPath = "/au/com/codeconstruct/mctp1/networks/";
constexpr const char* endpointsFolder = "/endpoints/";
constexpr const char* endpointInterface = "xyz.openbmc_project.MCTP.Endpoint";
constexpr const char* networkInterface = "au.com.codeconstruct.MCTP.Network1";
constexpr std::uint8_t pldmType = 1;
constexpr std::uint8_t firstEid = 8;
constexpr std::uint8_t lastEid = 254;

using Value = std::variant<std::uint8_t, std::uint32_t, std::int32_t, std::vector<std::uint8_t>,
                           std::string>; // values of other types are skipped
using Interfaces = std::map<std::string, std::map<std::string, Value>>;
using Objects = std::map<sdbusplus::message::object_path, Interfaces>;

/** A property, if the object has it and it is of this type. */
template <typename T>
std::optional<T> Property(const Interfaces& interfaces, const char* interface,
                          const char* property) {
    const auto properties = interfaces.find(interface);
    if (properties == interfaces.end()) {
        return std::nullopt;
    }
    const auto found = properties->second.find(property);
    const T* const value =
        found == properties->second.end() ? nullptr : std::get_if<T>(&found->second);
    return value == nullptr ? std::nullopt : std::optional(*value);
}

/** The network of an endpoint: unsigned, but signed in early versions of mctpd. */
std::optional<std::uint32_t> Network(const Interfaces& interfaces) {
    if (const auto network = Property<std::int32_t>(interfaces, endpointInterface, "NetworkId")) {
        return static_cast<std::uint32_t>(*network);
    }
    return Property<std::uint32_t>(interfaces, endpointInterface, "NetworkId");
}

std::string Uuid(const Interfaces& interfaces) {
    auto uuid =
        Property<std::string>(interfaces, "xyz.openbmc_project.Common.UUID", "UUID").value_or("");
    std::ranges::transform(uuid, uuid.begin(), [](unsigned char character) {
        return static_cast<char>(std::tolower(character));
    });
    return uuid;
}

bool Holds(const std::optional<std::vector<std::uint8_t>>& bytes, std::uint8_t wanted) {
    return bytes && std::ranges::find(*bytes, wanted) != bytes->end();
}

bool IsBoardsOwn(const Objects& objects, const std::string& path, std::uint8_t eid) {
    const auto network = objects.find(path.substr(0, path.find(endpointsFolder)));
    return network != objects.end() && Holds(Property<std::vector<std::uint8_t>>(
                                                 network->second, networkInterface, "LocalEIDs"),
                                             eid);
}

/** The endpoint that an object is; nothing if it is none to serve. */
std::optional<Endpoint> ReadEndpoint(const Objects& objects, const std::string& path,
                                     const Interfaces& interfaces) {
    const auto eid = Property<std::uint8_t>(interfaces, endpointInterface, "EID");
    const auto network = Network(interfaces);
    const auto types =
        Property<std::vector<std::uint8_t>>(interfaces, endpointInterface, "SupportedMessageTypes");
    if (!eid || !network || *eid < firstEid || *eid > lastEid || !Holds(types, pldmType) ||
        IsBoardsOwn(objects, path, *eid)) {
        return std::nullopt;
    }
    return Endpoint{.address = {.network = *network, .eid = *eid}, .uuid = Uuid(interfaces)};
}

} // namespace

bool BearsOnEndpoints(std::string_view path) {
    return path.starts_with(networksPath);
}

std::optional<std::vector<Endpoint>> ReadEndpoints(sd_bus_message* reply) {
    Objects objects;
    try {
        sdbusplus::message_t(reply).read(objects);
    } catch (const sdbusplus::exception::SdBusError&) {
        return std::nullopt;
    }
    std::vector<Endpoint> endpoints;
    for (const auto& [path, interfaces] : objects) {
        if (auto endpoint = ReadEndpoint(objects, path, interfaces)) {
            endpoints.push_back(std::move(*endpoint));
        }
    }
    std::ranges::sort(endpoints, {}, &Endpoint::address);
    return endpoints;
}

} // namespace mctplink
