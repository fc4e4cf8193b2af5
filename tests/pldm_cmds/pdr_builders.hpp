// SPDX-License-Identifier: Apache-2.0
/** PDRs as a card would hold them. A builder has a good default for each field; a test names what
 *  it is about. */
#pragma once

#include "bytes.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

/** A record with its common header around a body. */
inline Bytes Pdr(std::uint8_t type, const Bytes& body, std::uint16_t changeNumber = 0) {
    return Bytes()
        .Add(std::uint32_t{1})
        .Add(std::uint8_t{1})
        .Add(type)
        .Add(changeNumber)
        .Add(static_cast<std::uint16_t>(body.size()))
        .Add(body);
}

/** Numeric Sensor PDR, type 2. */
struct NumericSensorPdr {
    std::uint16_t id = 5;
    std::size_t idWidth = 2; ///< 1 in the old layout
    std::uint8_t auxNames = 1;
    std::uint8_t baseUnit = 2;
    std::uint8_t dataSize = 4;
    std::uint64_t hysteresis = 3;
    std::uint8_t supportedThresholds = 0x3F;
    std::uint64_t maxReadable = 120;
    std::uint8_t rangeFormat = 0;
    std::vector<std::uint64_t> slots{50, 60, 40, 80, 10, 90, 8, 100, 6};

    Bytes Build() const {
        const std::size_t width = std::size_t{1} << std::min(dataSize / 2, 3);
        constexpr std::array<std::size_t, 10> slotWidths{1, 1, 2, 2, 4, 4, 4, 8, 8, 8};
        Bytes body = Bytes::FromHex("AA AA");
        body.AddWide(id, idWidth)
            .Add(Bytes::FromHex("90 00 02 00 07 00 00"))
            .Add(Bytes{auxNames, baseUnit})
            .Add(Bytes::FromHex("00 03 EE EE EE EE 01 EE 01")) // OEM and auxiliary units, linear
            .Add(dataSize)
            .Add(Bytes::FromHex("00 00 80 3F 00 00 00 00 FA 00 04 05")) // 1.0, 0.0
            .AddWide(hysteresis, width)
            .Add(supportedThresholds)
            .Add(Bytes::FromHex("0F 00 00 C0 3F 00 00 00 40")) // 1.5 and 2.0 s
            .AddWide(maxReadable, width)
            .AddWide(1, width)
            .Add(Bytes{rangeFormat, 0x7F});
        for (const auto slot : slots) {
            body.AddWide(slot, slotWidths.at(rangeFormat));
        }
        return Pdr(2, body);
    }
};

/** Compact Numeric Sensor PDR, type 21. */
struct CompactSensorPdr {
    std::uint16_t id = 12;
    std::uint8_t nameLength = 0;
    std::uint8_t baseUnit = 7;
    Bytes name = {};

    Bytes Build() const {
        return Pdr(21, Bytes::FromHex("AA AA")
                           .Add(id)
                           .Add(Bytes::FromHex("44 00 01 00 09 00"))
                           .Add(Bytes{nameLength, baseUnit})
                           .Add(Bytes::FromHex("FF 02 15 FF FF FF FF EC FF FF FF 2C 01 00 00 "
                                               "D8 FF FF FF 00 00 00 00 C4 FF FF FF"))
                           .Add(name));
    }
};
