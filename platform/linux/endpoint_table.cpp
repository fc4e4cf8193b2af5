// SPDX-License-Identifier: Apache-2.0
#include "endpoint_table.hpp"

#include "byte_order.hpp"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace mctplink {

namespace {

using board::LittleEndian;

// Values of MctpLinkEndPoint::slotType.
constexpr std::uint8_t cardSlot = 0;
constexpr std::uint8_t embeddedSlot = 4;
constexpr std::uint8_t unknownSlot = 0xFF;

std::string Shown(const Endpoint& endpoint) {
    return "EID " + std::to_string(endpoint.address.eid) + " of network " +
           std::to_string(endpoint.address.network) +
           (endpoint.uuid.empty() ? ", which has no UUID" : ", UUID " + endpoint.uuid);
}

bool IsPlaced(const Endpoint& endpoint, const board::PlacedEndpoint& place) {
    return place.uuid.empty()
               ? place.network == endpoint.address.network && place.eid == endpoint.address.eid
               : place.uuid == endpoint.uuid;
}

MctpLinkEndPoint Entry(const Endpoint& endpoint) {
    MctpLinkEndPoint entry{};
    entry.eid = LittleEndian(static_cast<std::uint16_t>(endpoint.address.eid));
    entry.pldm = 1;
    entry.slotType = unknownSlot;
    return entry;
}

MctpLinkEndPoint Entry(const Endpoint& endpoint, const board::PlacedEndpoint& place) {
    MctpLinkEndPoint entry = Entry(endpoint);
    entry.endPointType = place.endPointType;
    entry.i2c = place.medium == board::Medium::I2C ? 1 : 0;
    entry.vdm = place.medium == board::Medium::VDM ? 1 : 0;
    entry.slotType = place.embedded ? embeddedSlot : cardSlot;
    entry.slotNumber = LittleEndian(place.slot);
    entry.bdf = LittleEndian(place.bdf);
    entry.busAddress = place.busAddress;
    const std::size_t length = std::min<std::size_t>(place.ldid.size(), MCTPLINK_LDID_CAPACITY);
    std::copy_n(place.ldid.begin(), length, entry.ldid);
    entry.ldidLength = LittleEndian(static_cast<std::uint16_t>(length));
    return entry;
}

/** Adds an entry unless its EID is taken. remark tells of an endpoint what isn't told yet. */
void Add(EndpointTable& table, const Endpoint& endpoint, const MctpLinkEndPoint& entry,
         const std::string& remark) {
    const auto& [network, eid] = endpoint.address;
    const auto [taken, isNew] = table.networks.emplace(eid, network);
    if (isNew) {
        table.entries.push_back(entry);
    }
    const std::string text =
        isNew ? remark : "network " + std::to_string(taken->second) + " has that EID, too; ignored";
    if (!text.empty()) {
        table.remarks.push_back(Shown(endpoint) + ": " + text);
    }
}

} // namespace

EndpointTable MakeTable(const std::vector<Endpoint>& endpoints, const board::Board& board) {
    EndpointTable table;
    std::vector<Endpoint> unplaced = endpoints;
    for (const auto& place : board.endpoints) {
        for (const auto& endpoint : endpoints) {
            if (IsPlaced(endpoint, place) && std::erase(unplaced, endpoint) != 0) {
                Add(table, endpoint, Entry(endpoint, place), "");
            }
        }
    }
    for (const auto& endpoint : unplaced) {
        Add(table, endpoint, Entry(endpoint), "not in the board file");
    }
    return table;
}

MctpLinkCallbackInfo* MakeDelivery(const std::vector<MctpLinkEndPoint>& entries) {
    constexpr std::uint32_t completeDiscovery = 2;
    const std::size_t size = entries.size() * sizeof(MctpLinkEndPoint);
    void* const memory = std::calloc(1, sizeof(MctpLinkCallbackInfo) + size);
    if (memory == nullptr) {
        return nullptr;
    }
    auto* const info = static_cast<MctpLinkCallbackInfo*>(memory);
    info->callbackType = MCTPLINK_TABLE_DELIVERED;
    info->tableAttached = 1;
    info->table.source = 1;
    info->table.discoveryState = completeDiscovery;
    info->table.entryCount = static_cast<std::uint32_t>(entries.size());
    if (size != 0) {
        std::memcpy(static_cast<std::uint8_t*>(memory) + sizeof(MctpLinkCallbackInfo),
                    entries.data(), size);
    }
    return info;
}

} // namespace mctplink
