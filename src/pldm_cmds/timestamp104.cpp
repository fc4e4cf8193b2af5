// SPDX-License-Identifier: Apache-2.0
#include "pldm_cmds/timestamp104.hpp"

#include "common/log.hpp"

#include <array>
#include <cstdio>

namespace vantric {

namespace {

constexpr std::size_t microsecondsSize = 3;
constexpr std::uint8_t unreliableTime = 15;

} // namespace

Timestamp104 ReadTimestamp104(ByteReader& reader) {
    Timestamp104 time;
    time.UTC_Offset_In_Minutes = reader.Read<std::int16_t>();
    time.Microseconds = static_cast<std::uint32_t>(reader.ReadUnsigned(microsecondsSize));
    time.Seconds = reader.Read<std::uint8_t>();
    time.Minutes = reader.Read<std::uint8_t>();
    time.hour = reader.Read<std::uint8_t>();
    time.Day = reader.Read<std::uint8_t>();
    time.Month = reader.Read<std::uint8_t>();
    time.Year = reader.Read<std::uint16_t>();
    const auto resolutions = reader.Read<std::uint8_t>();
    time.Time_Resolution = resolutions & 0x0F;
    time.UTC_Resolution = resolutions >> 4;
    return time;
}

std::string convertToTimestamp104(std::span<const std::uint8_t> value) {
    if (value.size() < timestamp104Size) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "Invalid timestamp size %d\n", static_cast<int>(value.size()));
        return {};
    }
    ByteReader reader(value);
    const auto time = ReadTimestamp104(reader);
    if (time.Time_Resolution == unreliableTime) {
        VANTRIC_LOG(LOG_LEVEL_ERROR, "Ignore the timestamp because time resolution is %d\n",
                    time.Time_Resolution);
        return {};
    }
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%d-%02d-%02d - %02d:%02d:%02d", time.Year, time.Month,
                  time.Day, time.hour, time.Minutes, time.Seconds);
    return text.data();
}

} // namespace vantric
