// SPDX-License-Identifier: Apache-2.0
#include "machine/platform_tables.hpp"

#include <algorithm>
#include <random>

namespace simulator {

namespace {

using simulator_link::PayloadWriter;

constexpr std::size_t endPointEntrySize = 644;
constexpr std::size_t ldidCapacity = 512;
constexpr std::uint32_t discoveryComplete = 2;

Bytes EncodeEntry(const EndPoint& endPoint) {
    const auto flag = [&](Medium medium) {
        return static_cast<std::uint8_t>(endPoint.medium == medium ? 1 : 0);
    };
    const auto ldidLength = static_cast<std::uint16_t>(endPoint.ldid.size());
    return PayloadWriter()
        .WriteUnsigned(0, 2)
        .Write(endPoint.endPointType)
        .WriteUnsigned(0, 22)
        .Write(flag(Medium::I2c))
        .Write(flag(Medium::Vdm))
        .WriteUnsigned(0, 3)
        .Write(endPoint.eid)
        .WriteUnsigned(0, 49)
        .Write(static_cast<std::uint8_t>(endPoint.pldm ? 1 : 0))
        .WriteUnsigned(0, 14)
        .Write(std::span<const std::uint8_t>(endPoint.ldid))
        .WriteUnsigned(0, ldidCapacity - endPoint.ldid.size())
        .Write(endPoint.ldidLength.value_or(ldidLength))
        .Write(endPoint.slotType)
        .WriteUnsigned(0, 1)
        .Write(endPoint.slot)
        .WriteUnsigned(0, 24)
        .Write(endPoint.bdf)
        .WriteUnsigned(0, 3)
        .Write(endPoint.busAddress)
        .Finish();
}

std::vector<Bytes> Entries(const Machine& machine) {
    std::vector<Bytes> entries;
    for (const auto& card : machine.Cards()) {
        for (const auto& endPoint : card.endPoints) {
            if (card.plugged) {
                entries.push_back(EncodeEntry(endPoint.description));
            }
        }
    }
    return entries;
}

std::vector<Bytes> NoiseEntries() {
    constexpr std::size_t count = 8;
    std::minstd_rand random;
    std::vector<Bytes> entries(count, Bytes(endPointEntrySize));
    for (auto& entry : entries) {
        std::ranges::generate(entry, [&] { return static_cast<std::uint8_t>(random() >> 8); });
    }
    return entries;
}

Bytes EncodeCatalogRecord(const Card& card) {
    return PayloadWriter()
        .WriteUnsigned(0, 5)
        .Write(card.pci.vendor)
        .Write(card.pci.device)
        .WriteUnsigned(0, 40)
        .Write(card.pci.subVendor)
        .Write(card.pci.subDevice)
        .WriteUnsigned(0, 17)
        .Write(card.locatorType)
        .WriteUnsigned(0, 10)
        .Write(card.slot)
        .WriteUnsigned(0, 2)
        .Write(card.deviceClass)
        .WriteUnsigned(0, 4)
        .Write(card.cpuAffinity)
        .WriteUnsigned(0, 7)
        .Finish();
}

std::vector<const Card*> CardsOfGroup(const Machine& machine, std::uint32_t group) {
    std::vector<const Card*> found;
    for (const auto& card : machine.Cards()) {
        const auto& description = card.description;
        if (card.plugged && description.inPcieTable && description.group == group) {
            found.push_back(&description);
        }
    }
    return found;
}

Bytes Joined(const std::vector<Bytes>& pieces) {
    PayloadWriter writer;
    for (const auto& piece : pieces) {
        writer.Write(std::span<const std::uint8_t>(piece));
    }
    return writer.Finish();
}

} // namespace

Bytes EncodeTableDelivery(const Machine& machine, TableFlaw flaw) {
    auto entries = flaw == TableFlaw::Garbage ? NoiseEntries() : Entries(machine);
    if (flaw == TableFlaw::Empty) {
        entries.clear();
    }
    const auto count = static_cast<std::uint32_t>(entries.size());
    const std::uint32_t source = flaw == TableFlaw::BadSource ? 0 : 1;
    const std::uint32_t acceptable = 0;
    return PayloadWriter()
        .Write(static_cast<std::uint32_t>(flaw == TableFlaw::NotAttached ? 0 : 1))
        .Write(source)
        .Write(acceptable)
        .Write(flaw == TableFlaw::BadState ? discoveryComplete - 1 : discoveryComplete)
        .Write(count)
        .Write(std::span<const std::uint8_t>(Joined(entries)))
        .Finish();
}

std::uint32_t CatalogGroups(const Machine& machine) {
    std::uint32_t groups = 1;
    for (const auto& card : machine.Cards()) {
        groups = std::max(groups, card.description.group + 1);
    }
    return groups;
}

std::uint32_t CatalogCapacity(const Machine& machine) {
    std::size_t capacity = 1;
    for (std::uint32_t group = 0; group < CatalogGroups(machine); ++group) {
        capacity = std::max(capacity, CardsOfGroup(machine, group).size());
    }
    return static_cast<std::uint32_t>(capacity);
}

Bytes EncodeCatalogGroup(const Machine& machine, std::uint32_t group) {
    std::vector<Bytes> records;
    for (const auto* card : CardsOfGroup(machine, group)) {
        records.push_back(EncodeCatalogRecord(*card));
    }
    return Joined(records);
}

Bytes EncodeAccelerators(const Machine& machine) {
    return Joined(machine.Accelerators());
}

} // namespace simulator
