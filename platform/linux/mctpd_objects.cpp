#include "mctpd_objects.hpp"

#include <algorithm>
#include <cctype>
#include <map>
#include <set>
#include <string_view>

namespace mctplink {

namespace {

constexpr std::string_view networksPath = "/au/com/codeconstruct/mctp1/networks/";
constexpr std::string_view endpointsFolder = "/endpoints/";
constexpr std::uint8_t pldmType = 1;
constexpr std::uint8_t firstEid = 8;
constexpr std::uint8_t lastEid = 254;

/** The properties that are of use, whatever object they stand at. */
struct Object {
    std::optional<std::uint8_t> eid;
    std::optional<std::uint32_t> network;
    std::vector<std::uint8_t> types;
    std::vector<std::uint8_t> localEids;
    std::string uuid;
};

/** Calls read for each entry of an array of dictionary entries. Negative if the message is another
 *  one, or if read says so. */
template <typename Read>
int ForEachEntry(sd_bus_message* message, const char* entry, const Read& read) {
    const std::string array = '{' + std::string(entry) + '}';
    int result = sd_bus_message_enter_container(message, 'a', array.c_str());
    while (result >= 0) {
        result = sd_bus_message_enter_container(message, 'e', entry);
        if (result <= 0) {
            break;
        }
        result = read();
        if (result >= 0) {
            result = sd_bus_message_exit_container(message);
        }
    }
    return result < 0 ? result : sd_bus_message_exit_container(message);
}

int ReadBytes(sd_bus_message* message, std::vector<std::uint8_t>& bytes) {
    const void* data = nullptr;
    std::size_t size = 0;
    const int result = sd_bus_message_read_array(message, 'y', &data, &size);
    if (result >= 0 && size != 0) {
        const auto* const first = static_cast<const std::uint8_t*>(data);
        bytes.assign(first, first + size);
    }
    return result;
}

template <typename Value>
int ReadBasic(sd_bus_message* message, char type, std::optional<Value>& value) {
    Value read{};
    const int result = sd_bus_message_read_basic(message, type, &read);
    if (result >= 0) {
        value = read;
    }
    return result;
}

int ReadUuid(sd_bus_message* message, std::string& uuid) {
    const char* text = nullptr;
    const int result = sd_bus_message_read_basic(message, 's', &text);
    if (result >= 0) {
        uuid = text;
        std::ranges::transform(uuid, uuid.begin(), [](unsigned char character) {
            return static_cast<char>(std::tolower(character));
        });
    }
    return result;
}

/** Reads what a variant holds, if it is a property that is of use. */
int ReadValue(sd_bus_message* message, std::string_view property, std::string_view type,
              Object& object) {
    if (property == "EID" && type == "y") {
        return ReadBasic(message, 'y', object.eid);
    }
    if (property == "NetworkId" && (type == "u" || type == "i")) { // i in early versions
        return ReadBasic(message, type.front(), object.network);
    }
    if (property == "SupportedMessageTypes" && type == "ay") {
        return ReadBytes(message, object.types);
    }
    if (property == "LocalEIDs" && type == "ay") {
        return ReadBytes(message, object.localEids);
    }
    if (property == "UUID" && type == "s") {
        return ReadUuid(message, object.uuid);
    }
    return sd_bus_message_skip(message, std::string(type).c_str());
}

int ReadProperty(sd_bus_message* message, Object& object) {
    const char* property = nullptr;
    const char* type = nullptr;
    int result = sd_bus_message_read_basic(message, 's', &property);
    if (result >= 0) {
        result = sd_bus_message_peek_type(message, nullptr, &type);
    }
    if (result >= 0) {
        result = sd_bus_message_enter_container(message, 'v', type);
    }
    if (result >= 0) {
        result = ReadValue(message, property, type, object);
    }
    return result < 0 ? result : sd_bus_message_exit_container(message);
}

int ReadObject(sd_bus_message* message, std::map<std::string, Object>& objects) {
    const char* path = nullptr;
    int result = sd_bus_message_read_basic(message, 'o', &path);
    if (result < 0) {
        return result;
    }
    Object& object = objects[path];
    return ForEachEntry(message, "sa{sv}", [&] {
        result = sd_bus_message_skip(message, "s");
        return result < 0
                   ? result
                   : ForEachEntry(message, "sv", [&] { return ReadProperty(message, object); });
    });
}

/** The path of the network that an endpoint's object stands below. */
std::string NetworkOf(std::string_view path) {
    return std::string(path.substr(0, path.find(endpointsFolder)));
}

bool IsBoardsOwn(const std::map<std::string, Object>& objects, const std::string& path,
                 std::uint8_t eid) {
    const auto network = objects.find(NetworkOf(path));
    return network != objects.end() &&
           std::ranges::find(network->second.localEids, eid) != network->second.localEids.end();
}

} // namespace

bool BearsOnEndpoints(std::string_view path) {
    return path.starts_with(networksPath);
}

std::optional<std::vector<Endpoint>> ReadEndpoints(sd_bus_message* reply) {
    std::map<std::string, Object> objects;
    if (ForEachEntry(reply, "oa{sa{sv}}", [&] { return ReadObject(reply, objects); }) < 0) {
        return std::nullopt;
    }
    std::map<Peer, Endpoint> endpoints;
    for (const auto& [path, object] : objects) {
        const bool speaksPldm = std::ranges::find(object.types, pldmType) != object.types.end();
        if (!object.eid || !object.network || !speaksPldm || *object.eid < firstEid ||
            *object.eid > lastEid || IsBoardsOwn(objects, path, *object.eid)) {
            continue;
        }
        const Peer address{.network = *object.network, .eid = *object.eid};
        endpoints.emplace(address, Endpoint{.address = address, .uuid = object.uuid});
    }
    std::vector<Endpoint> ordered;
    for (auto& [address, endpoint] : endpoints) {
        ordered.push_back(std::move(endpoint));
    }
    return ordered;
}

} // namespace mctplink
