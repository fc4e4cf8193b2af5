// SPDX-License-Identifier: Apache-2.0
/** PDRs as a card would hold them. A builder has a good default for each field; a test names what
 *  it is about. */
#pragma once

#include "bytes.hpp"

#include <cstdint>
#include <optional>

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
    std::uint8_t init = 0;
    std::uint8_t auxNames = 1;
    std::uint8_t baseUnit = 2;
    std::int8_t unitModifier = 0;
    std::uint8_t dataSize = 4;
    std::uint32_t resolution = 0x3F800000; ///< 1.0
    std::uint32_t offset = 0;
    std::uint64_t hysteresis = 3;
    std::uint8_t supportedThresholds = 0x3F;
    std::uint64_t maxReadable = 120;
    std::uint64_t minReadable = 1;
    std::uint8_t rangeFormat = 0;
    std::vector<std::uint64_t> slots{50, 60, 40, 80, 10, 90, 8, 100, 6};

    Bytes Build() const {
        const auto widthOf = [](std::uint8_t format) -> std::size_t {
            return format <= 1 ? 1 : format <= 3 ? 2 : format <= 6 ? 4 : 8;
        };
        const std::size_t width = dataSize <= 1 ? 1 : dataSize <= 3 ? 2 : dataSize <= 5 ? 4 : 8;
        Bytes body;
        body.Add(std::uint16_t{0xAAAA}) // terminus handle
            .AddWide(id, idWidth)
            .Add(std::uint16_t{144})
            .Add(std::uint16_t{2})
            .Add(std::uint16_t{7})
            .Add(init)
            .Add(auxNames)
            .Add(baseUnit)
            .Add(unitModifier)
            .Add(std::uint8_t{3})
            .AddWide(0xEEEEEEEE, 4)  // OEM and auxiliary unit fields
            .Add(std::uint8_t{1})    // rel
            .Add(std::uint8_t{0xEE}) // auxOEMUnitHandle
            .Add(std::uint8_t{1})    // isLinear
            .Add(dataSize)
            .Add(resolution)
            .Add(offset)
            .Add(std::uint16_t{250})
            .Add(std::uint8_t{4})
            .Add(std::uint8_t{5})
            .AddWide(hysteresis, width)
            .Add(supportedThresholds)
            .Add(std::uint8_t{0x0F})
            .Add(std::uint32_t{0x3FC00000}) // 1.5
            .Add(std::uint32_t{0x40000000}) // 2.0
            .AddWide(maxReadable, width)
            .AddWide(minReadable, width)
            .Add(rangeFormat)
            .Add(std::uint8_t{0x7F});
        for (const auto slot : slots) {
            body.AddWide(slot, widthOf(rangeFormat));
        }
        return Pdr(2, body);
    }
};

/** Compact Numeric Sensor PDR, type 21. */
struct CompactSensorPdr {
    std::uint16_t id = 12;
    std::uint8_t nameLength = 0;
    std::uint8_t baseUnit = 7;
    std::int8_t unitModifier = -1;
    std::int32_t warningHigh = -1;
    Bytes name = {};

    Bytes Build() const {
        return Pdr(21, Bytes()
                           .Add(std::uint16_t{0xAAAA})
                           .Add(id)
                           .Add(std::uint16_t{68})
                           .Add(std::uint16_t{1})
                           .Add(std::uint16_t{9})
                           .Add(nameLength)
                           .Add(baseUnit)
                           .Add(unitModifier)
                           .Add(std::uint8_t{2})
                           .Add(std::uint8_t{0x15})
                           .Add(warningHigh)
                           .Add(std::int32_t{-20})
                           .Add(std::int32_t{300})
                           .Add(std::int32_t{-40})
                           .Add(std::int32_t{0})
                           .Add(std::int32_t{-60})
                           .Add(name));
    }
};
