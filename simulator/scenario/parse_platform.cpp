// SPDX-License-Identifier: Apache-2.0
#include "payload.hpp"
#include "scenario/parse.hpp"

namespace simulator {

namespace {

constexpr std::size_t acceleratorEntrySize = 232;
constexpr std::size_t identityOffset = 60;
constexpr std::size_t sensorsOffset = 114;
constexpr std::size_t sensorsOfAccelerator = 4;
constexpr std::uint32_t acceleratorEntry = 22;

std::vector<std::uint8_t> ParseDescribedAccelerator(const Value& value) {
    Mapping mapping(value);
    std::uint32_t type = acceleratorEntry;
    mapping.Read("type", type);
    const auto pci = ParsePci(mapping.Get("pci"));
    const auto sensors = mapping.Get("sensors").Items();
    mapping.Finish();
    if (sensors.size() > sensorsOfAccelerator) {
        value.Fail("an accelerator has at most four sensors");
    }
    simulator_link::PayloadWriter writer;
    writer.Write(type)
        .WriteUnsigned(0, identityOffset - sizeof(type))
        .Write(pci.vendor)
        .Write(pci.device)
        .Write(pci.subVendor)
        .Write(pci.subDevice)
        .WriteUnsigned(0, sensorsOffset - identityOffset - 4 * sizeof(pci.vendor));
    for (const auto& sensor : sensors) {
        writer.Write(sensor.Integer<std::uint16_t>());
    }
    return writer.Finish();
}

} // namespace

PciIdentity ParsePci(const Value& value) {
    Mapping mapping(value);
    PciIdentity pci;
    mapping.Read("vendor", pci.vendor);
    mapping.Read("device", pci.device);
    mapping.Read("subvendor", pci.subVendor);
    mapping.Read("subdevice", pci.subDevice);
    mapping.Finish();
    return pci;
}

std::vector<std::uint8_t> ParseAccelerator(const Value& value) {
    auto entry = value.IsMapping() ? ParseDescribedAccelerator(value) : value.Hex();
    if (entry.size() > acceleratorEntrySize) {
        value.Fail("an entry of the accelerator table has at most 232 bytes");
    }
    entry.resize(acceleratorEntrySize);
    return entry;
}

} // namespace simulator
