// SPDX-License-Identifier: Apache-2.0
#include "board_file.hpp"

#include "json_entry.hpp"

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>

namespace board {

namespace {

using nlohmann::json;
using Mistakes = std::vector<std::string>;

constexpr std::uint32_t mostByte = 0xFF;
constexpr std::uint32_t mostWord = 0xFFFF;
constexpr std::uint32_t mostNetwork = 0x7FFFFFFF;

// What an EID of an endpoint can be (DSP0236).
constexpr std::uint32_t firstEid = 8;
constexpr std::uint32_t lastEid = 254;

/** A class of devices, the type that its endpoints have, and how their LDIDs begin. */
struct DeviceClass {
    std::uint32_t number;
    std::uint8_t endPointType;
    const char* ldidPrefix;
};

constexpr std::uint8_t pciEndPoint = 2;
constexpr std::uint8_t acceleratorEndPoint = 13;
constexpr std::uint8_t bridgeEndPoint = 25;

constexpr std::array<DeviceClass, 6> deviceClasses{{
    {1, pciEndPoint, "NIC.Slot."},
    {3, pciEndPoint, "InfiniBand.Slot."},
    {10, pciEndPoint, "FC.Slot."},
    {11, acceleratorEndPoint, "ProcAccelerator.Slot."},
    {18, bridgeEndPoint, "CXLMemory.Slot."},
    {252, pciEndPoint, "NIC.Embedded."},
}};

constexpr std::array<std::pair<const char*, std::uint32_t>, 6> classWords{{
    {"nic", 1},
    {"infiniband", 3},
    {"fibre-channel", 10},
    {"accelerator", 11},
    {"cxl-memory", 18},
    {"embedded-nic", 252},
}};

constexpr std::array<std::pair<const char*, std::uint32_t>, 3> typeWords{{
    {"pci", pciEndPoint},
    {"accelerator", acceleratorEndPoint},
    {"bridge", bridgeEndPoint},
}};

constexpr std::array<std::pair<const char*, std::uint32_t>, 2> mediumWords{{
    {"vdm", static_cast<std::uint32_t>(Medium::VDM)},
    {"i2c", static_cast<std::uint32_t>(Medium::I2C)},
}};

template <typename T>
T Or(std::optional<std::uint32_t> number, T otherwise) {
    return number ? static_cast<T>(*number) : otherwise;
}

PciIds ReadIds(JsonEntry& entry) {
    const auto read = [&](const char* key, Presence presence) {
        return Or<std::uint16_t>(entry.Number(key, 0, mostWord, presence), 0);
    };
    return {.vendor = read("vendor", Presence::REQUIRED),
            .device = read("device", Presence::REQUIRED),
            .subVendor = read("subvendor", Presence::OPTIONAL),
            .subDevice = read("subdevice", Presence::OPTIONAL)};
}

/** A PCIe address as people write it, such as 3b:00.0, or as a number. */
std::uint16_t ReadBdf(JsonEntry& entry) {
    static const std::regex form("([0-9a-fA-F]{2}):([01][0-9a-fA-F])\\.([0-7])");
    constexpr int hexadecimal = 16;
    constexpr int busShift = 8;
    constexpr int deviceShift = 3;
    const auto text = entry.TextIfAny("bdf");
    if (!text || text->starts_with("0x")) {
        return Or<std::uint16_t>(entry.Number("bdf", 0, mostWord, Presence::OPTIONAL), 0);
    }
    std::smatch parts;
    if (!std::regex_match(*text, parts, form)) {
        entry.Reject("bdf", "an address such as \"3b:00.0\", or a number from 0 to 65535");
        return 0;
    }
    const auto part = [&](std::size_t index) {
        return std::stoul(parts[index].str(), nullptr, hexadecimal);
    };
    return static_cast<std::uint16_t>(part(1) << busShift | part(2) << deviceShift | part(3));
}

/** The UUID in lower case, if the text is one (RFC 4122). */
std::optional<std::string> Uuid(std::string text) {
    constexpr std::string_view pattern = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
    const bool good = std::ranges::equal(text, pattern, [](unsigned char character, char wanted) {
        return wanted == '-' ? character == '-' : std::isxdigit(character) != 0;
    });
    std::ranges::transform(text, text.begin(), [](unsigned char character) {
        return static_cast<char>(std::tolower(character));
    });
    return good ? std::optional(text) : std::nullopt;
}

void ReadIdentity(JsonEntry& entry, PlacedEndpoint& endpoint) {
    const bool named = entry.Has("uuid");
    if (named == entry.Has("eid") || (named && entry.Has("network"))) {
        entry.Reject(nullptr, "either \"uuid\", or \"eid\" and perhaps \"network\"");
    }
    endpoint.network = Or(entry.Number("network", 1, mostNetwork, Presence::OPTIONAL), 1U);
    endpoint.eid = Or<std::uint8_t>(entry.Number("eid", firstEid, lastEid, Presence::OPTIONAL), 0);
    if (const auto text = entry.Text("uuid")) {
        const auto uuid = Uuid(*text);
        if (!uuid) {
            entry.Reject("uuid", "a UUID such as 5f2c1a0e-0000-4000-8000-000000000001");
        }
        endpoint.uuid = uuid.value_or("");
    }
}

std::string Shown(const PlacedEndpoint& endpoint) {
    return endpoint.uuid.empty() ? "EID " + std::to_string(endpoint.eid) + " of network " +
                                       std::to_string(endpoint.network)
                                 : "UUID " + endpoint.uuid;
}

/** Gives an endpoint what its slot's device decides. */
void TakeFromSlot(JsonEntry& entry, const std::vector<SlotDevice>& slots,
                  PlacedEndpoint& endpoint) {
    const auto slot = std::ranges::find_if(slots, [&](const SlotDevice& candidate) {
        return candidate.slot == endpoint.slot && candidate.embedded == endpoint.embedded;
    });
    if (slot == slots.end() && !endpoint.embedded) {
        entry.Reject("slot", "the number of an entry of \"slots\" that isn't embedded, not " +
                                 std::to_string(endpoint.slot));
        return;
    }
    const auto number = slot == slots.end() ? 0 : slot->deviceClass;
    const auto known = std::ranges::find(deviceClasses, number, &DeviceClass::number);
    const bool found = known != deviceClasses.end() && !endpoint.embedded;
    endpoint.endPointType = found ? known->endPointType : pciEndPoint;
    endpoint.ldid = found ? known->ldidPrefix : "NIC.Slot.";
}

std::optional<PlacedEndpoint> ReadEndpoint(const json& object, const std::string& path,
                                           const Board& board, Mistakes& mistakes) {
    JsonEntry entry(object, path, mistakes);
    PlacedEndpoint endpoint;
    ReadIdentity(entry, endpoint);
    endpoint.embedded = entry.Flag("embedded");
    const auto slot = entry.Number("slot", 0, mostWord, Presence::REQUIRED);
    endpoint.slot = Or<std::uint16_t>(slot, 0);
    endpoint.medium =
        static_cast<Medium>(entry.Word("medium", mediumWords, Presence::REQUIRED).value_or(0));
    endpoint.bdf = ReadBdf(entry);
    endpoint.busAddress =
        Or<std::uint8_t>(entry.Number("bus-address", 0, mostByte, Presence::OPTIONAL), 0);
    if (slot) {
        TakeFromSlot(entry, board.slots, endpoint);
    }
    endpoint.endPointType = Or(entry.WordOrNumber("type", typeWords, mostByte, Presence::OPTIONAL),
                               endpoint.endPointType);
    constexpr std::uint32_t mostInstance = 9; // whoever reads it takes one digit
    const auto instance = entry.Number("instance", 0, mostInstance, Presence::OPTIONAL);
    if (instance && !endpoint.embedded) {
        entry.Reject("instance", "that only with \"embedded\": true");
    }
    if (endpoint.embedded) {
        endpoint.ldid = "NIC.Embedded." +
                        std::to_string(instance.value_or(
                            std::min<std::uint32_t>(endpoint.slot, mostInstance))) +
                        "-1-1";
    } else {
        endpoint.ldid += std::to_string(endpoint.slot) + "-1-1";
    }
    const bool taken = std::ranges::any_of(board.endpoints, [&](const PlacedEndpoint& other) {
        return Shown(other) == Shown(endpoint);
    });
    if (taken) {
        entry.Reject(nullptr, "one entry for " + Shown(endpoint) + ", and this is the second");
    }
    return entry.Finish() ? std::optional(endpoint) : std::nullopt;
}

std::optional<SlotDevice> ReadSlot(const json& object, const std::string& path, const Board& board,
                                   Mistakes& mistakes) {
    JsonEntry entry(object, path, mistakes);
    SlotDevice device;
    device.slot = Or<std::uint16_t>(entry.Number("slot", 0, mostWord, Presence::REQUIRED), 0);
    device.embedded = entry.Flag("embedded");
    device.deviceClass =
        Or<std::uint8_t>(entry.WordOrNumber("class", classWords, mostByte, Presence::REQUIRED), 0);
    device.ids = ReadIds(entry);
    device.cpuAffinity =
        Or<std::uint8_t>(entry.Number("cpu-affinity", 0, mostByte, Presence::OPTIONAL), 0);
    const bool taken = std::ranges::any_of(board.slots, [&](const SlotDevice& other) {
        return other.slot == device.slot && other.embedded == device.embedded;
    });
    if (taken) {
        entry.Reject("slot",
                     "a slot that no entry before it has, not " + std::to_string(device.slot));
    }
    return entry.Finish() ? std::optional(device) : std::nullopt;
}

std::optional<Accelerator> ReadAccelerator(const json& object, const std::string& path,
                                           const Board& /*board*/, Mistakes& mistakes) {
    constexpr std::size_t mostSensors = 4;
    JsonEntry entry(object, path, mistakes);
    Accelerator accelerator{.ids = ReadIds(entry), .sensors = {}};
    const auto sensors = entry.List("sensors");
    if (sensors.empty() || sensors.size() > mostSensors) {
        entry.Reject("sensors", "a list of 1 to 4 sensor ids");
    }
    for (const json& sensor : sensors) {
        if (!sensor.is_number_unsigned() || sensor.get<std::uint64_t>() > mostWord) {
            entry.Reject("sensors", "numbers from 0 to 65535");
            break;
        }
        accelerator.sensors.push_back(sensor.get<std::uint16_t>());
    }
    return entry.Finish() ? std::optional(accelerator) : std::nullopt;
}

template <typename T>
using EntryReader = std::optional<T> (*)(const json&, const std::string&, const Board&, Mistakes&);

/** Reads the entries of a list into a list of the board, without those that have a mistake. */
template <typename T>
void ReadList(JsonEntry& file, const char* key, EntryReader<T> read, Board& board,
              std::vector<T> Board::*list, Mistakes& mistakes) {
    std::size_t index = 0;
    for (const json& object : file.List(key)) {
        const std::string path = std::string(key) + '[' + std::to_string(index++) + ']';
        if (auto entry = read(object, path, board, mistakes)) {
            (board.*list).push_back(std::move(*entry));
        }
    }
}

Board ReadBoard(const json& content, Mistakes& mistakes) {
    Board board;
    JsonEntry file(content, "", mistakes);
    ReadList(file, "slots", ReadSlot, board, &Board::slots, mistakes);
    ReadList(file, "endpoints", ReadEndpoint, board, &Board::endpoints, mistakes);
    ReadList(file, "accelerators", ReadAccelerator, board, &Board::accelerators, mistakes);
    static_cast<void>(file.Finish()); // what it says is among the mistakes
    return board;
}

/** What a parser's exception says, without the name of its class. */
std::string Reason(const json::exception& error) {
    const std::string_view text = error.what();
    const auto end = text.find("] ");
    return std::string(end == std::string_view::npos ? text : text.substr(end + 2));
}

} // namespace

std::string BoardFilePath() {
    const char* const path = std::getenv("VANTRIC_BOARD");
    return path == nullptr || *path == '\0' ? "/etc/vantric/board.json" : path;
}

BoardFile ReadBoardFile(const std::string& path) {
    BoardFile file;
    errno = 0;
    std::ifstream stream(path, std::ios::binary);
    std::ostringstream text;
    if (!stream || !(text << stream.rdbuf())) {
        const std::string reason = errno != 0 ? std::strerror(errno) : "nothing in it";
        file.mistakes.push_back(path + ": expected a board file: " + reason);
        return file;
    }
    try {
        Mistakes mistakes;
        file.board = ReadBoard(json::parse(text.str()), mistakes);
        std::ranges::transform(mistakes, std::back_inserter(file.mistakes),
                               [&](const std::string& mistake) { return path + ": " + mistake; });
    } catch (const json::exception& error) {
        file.mistakes.push_back(path + ": expected JSON: " + Reason(error));
    }
    return file;
}

} // namespace board
