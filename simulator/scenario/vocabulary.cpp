// SPDX-License-Identifier: Apache-2.0
#include "scenario/vocabulary.hpp"

#include <array>

namespace simulator {

std::span<const CardKind> CardKinds() {
    static constexpr std::array<CardKind, 6> kinds{{
        {"nic", 1, 2, false, "NIC.Slot."},
        {"infiniband", 3, 2, false, "InfiniBand.Slot."},
        {"fibre-channel", 10, 2, false, "FC.Slot."},
        {"accelerator", 11, 13, false, "ProcAccelerator.Slot."},
        {"cxl-memory", 18, 25, false, "CXLMemory.Slot."},
        {"embedded-nic", 252, 2, true, "NIC.Embedded."},
    }};
    return kinds;
}

std::span<const NamedNumber> EntityTypeNames() {
    static constexpr NamedNumber names[] = {
        {"communication-channel", 6},
        {"board", 60},
        {"management-module", 63},
        {"memory-board", 65},
        {"memory-module", 66},
        {"add-in-card", 68},
        {"processor-memory-module", 79},
        {"io-module", 80},
        {"memory-controller", 143},
        {"network-controller", 144},
        {"io-controller", 145},
        {"fpga", 148},
        {"accelerator", 149},
        {"gpu", 152},
        {"connector", 185},
        {"cable", 187},
        {"rj45", 200},
        {"xfp", 201},
        {"sfp", 202},
        {"sfp-plus", 207},
        {"sfp28", 206},
        {"sfp-dd", 208},
        {"qsfp", 210},
        {"qsfp28", 211},
        {"qsfp-plus", 212},
        {"qsfp-dd", 213},
        {"osfp", 214},
        {"dsfp", 215},
        {"ethernet", 300},
        {"infiniband", 301},
        {"fibre-channel", 302},
        {"omnipath", 303},
        {"oem", 24576},
        {"logical-add-in-card", 0x8000 | 68},
        {"logical-accelerator", 0x8000 | 149},
    };
    return names;
}

std::span<const NamedNumber> UnitNames() {
    static constexpr NamedNumber names[] = {
        {"none", 0},  {"celsius", 2}, {"fahrenheit", 3}, {"kelvin", 4},
        {"volts", 5}, {"amperes", 6}, {"watts", 7},      {"rpm", 19},
    };
    return names;
}

std::span<const NamedNumber> RateUnitNames() {
    static constexpr NamedNumber names[] = {{"none", 0}, {"per-second", 3}};
    return names;
}

std::span<const NamedNumber> DataSizeNames() {
    static constexpr NamedNumber names[] = {
        {"uint8", 0},  {"sint8", 1},  {"uint16", 2}, {"sint16", 3},
        {"uint32", 4}, {"sint32", 5}, {"uint64", 6}, {"sint64", 7},
    };
    return names;
}

std::span<const NamedNumber> RangeFormatNames() {
    static constexpr NamedNumber names[] = {
        {"uint8", 0},  {"sint8", 1},  {"uint16", 2}, {"sint16", 3}, {"uint32", 4},
        {"sint32", 5}, {"real32", 6}, {"uint64", 7}, {"sint64", 8},
    };
    return names;
}

std::span<const NamedNumber> SensorInitNames() {
    static constexpr NamedNumber names[] = {
        {"none", 0}, {"init-pdr", 1}, {"enable", 2}, {"disable", 3}};
    return names;
}

std::span<const NamedNumber> OperationalStateNames() {
    static constexpr NamedNumber names[] = {
        {"enabled", 0}, {"disabled", 1},     {"unavailable", 2},   {"unknown", 3},
        {"failed", 4},  {"initializing", 5}, {"shutting-down", 6}, {"in-test", 7},
    };
    return names;
}

std::span<const NamedNumber> PresentStateNames() {
    static constexpr NamedNumber names[] = {
        {"unknown", 0},       {"normal", 1},         {"warning", 2},        {"critical", 3},
        {"fatal", 4},         {"lower-warning", 5},  {"lower-critical", 6}, {"lower-fatal", 7},
        {"upper-warning", 8}, {"upper-critical", 9}, {"upper-fatal", 10},
    };
    return names;
}

std::span<const NamedNumber> StateSetNames() {
    static constexpr NamedNumber names[] = {
        {"health", 1},
        {"availability", 2},
        {"predictive-condition", 3},
        {"operational-fault", 10},
        {"operational-running", 11},
        {"operational-connection", 12},
        {"presence", 13},
        {"performance", 14},
        {"configuration", 15},
        {"changed-configuration", 16},
        {"version", 18},
        {"device-initialization", 20},
        {"thermal-trip", 21},
        {"heartbeat", 32},
        {"link", 33},
        {"device-power", 257},
        {"memory-error", 321},
        {"error-detection", 330},
    };
    return names;
}

std::span<const NamedNumber> FruFieldNames() {
    static constexpr NamedNumber names[] = {
        {"chassis-type", 1},
        {"model", 2},
        {"part-number", 3},
        {"serial-number", 4},
        {"manufacturer", 5},
        {"manufactured", 6},
        {"vendor", 7},
        {"name", 8},
        {"sku", 9},
        {"version", 10},
        {"asset-tag", 11},
        {"description", 12},
        {"engineering-level", 13},
        {"other", 14},
        {"vendor-iana", 15},
    };
    return names;
}

std::span<const NamedNumber> FruEncodingNames() {
    static constexpr NamedNumber names[] = {{"unspecified", 0}, {"ascii", 1},   {"utf8", 2},
                                            {"utf16", 3},       {"utf16le", 4}, {"utf16be", 5}};
    return names;
}

std::span<const NamedNumber> StringTypeNames() {
    static constexpr NamedNumber names[] = {{"unknown", 0}, {"ascii", 1},   {"utf8", 2},
                                            {"utf16", 3},   {"utf16le", 4}, {"utf16be", 5}};
    return names;
}

} // namespace simulator
