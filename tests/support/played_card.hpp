// SPDX-License-Identifier: Apache-2.0
/** A card with one endpoint: the simulator's responder, and what a test counts and spoils. */
#pragma once

#include "device_transport/device_transport.hpp"
#include "pldm/terminus.hpp"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace vantric::test {

/** A numeric sensor as a test describes it, with all six thresholds. */
struct PlayedSensor {
    std::uint16_t id = 5;
    std::uint16_t entityType = 66;
    std::uint16_t entityInstance = 1;
    std::uint8_t baseUnit = 2;
    std::uint8_t init = 0;
};

/** Commands that tests look at: type in the high byte. */
enum PlayedCommand : std::uint16_t {
    PLAYED_GET_TYPES = 0x0004,
    PLAYED_ENABLE_SENSOR = 0x0210,
    PLAYED_GET_SENSOR_READING = 0x0211,
    PLAYED_GET_STATE_READINGS = 0x0221,
    PLAYED_GET_REPOSITORY_INFO = 0x0250,
    PLAYED_GET_FRU_METADATA = 0x0401,
    PLAYED_GET_FRU_TABLE = 0x0402,
    PLAYED_GET_FIRMWARE = 0x0502,
};

class PlayedCard {
public:
    using Bytes = std::vector<std::uint8_t>;

    PlayedCard();
    PlayedCard(const PlayedCard&) = delete;
    PlayedCard& operator=(const PlayedCard&) = delete;

    /** A transport that leads here. */
    std::unique_ptr<DeviceTransport> Connect(std::uint8_t slot, std::uint8_t eid);

    /** What the transport returns for a request, and the response. */
    std::pair<int, Bytes> Exchange(std::span<const std::uint8_t> request);

    // Each of these changes the repository, and the time of its last change.

    void Add(const PlayedSensor& sensor);
    /** A state sensor with one member of the state set "Health State". */
    void AddState(std::uint16_t id, std::uint16_t entityType);
    /** An entity that contains others, all of instance 1. */
    void AddEntities(std::uint16_t containerType, const std::vector<std::uint16_t>& types);
    /** These instead of all that was added. */
    void Replace(const std::vector<PlayedSensor>& sensors);

    /** How often a command has come since the last call for it. */
    std::size_t TakeCount(std::uint16_t command) { return std::exchange(counts[command], 0); }

    /** Ids of the numeric sensors that were read since the last call, in order. */
    std::vector<std::uint16_t> TakeRead() { return std::exchange(read, {}); }

    /** Number of commands so far. */
    std::size_t Asked() const { return asked; }

    std::map<std::uint16_t, double> values;           ///< of sensor ids; 25 for any other
    std::map<std::uint16_t, int> sensorStatus;        ///< transport status of a reading, 0: good
    std::map<std::uint16_t, std::uint8_t> sensorCode; ///< completion code of a reading
    std::map<std::uint16_t, int> commandStatus;       ///< transport status of a command
    std::string firmware = "1.0";
    std::optional<Bytes> fruTable; ///< without one, the card doesn't speak of FRU data
    std::function<void(std::span<const std::uint8_t>)> onRequest; ///< sees each before its answer

private:
    void Describe();

    simulator::Terminus terminus;
    std::size_t asked = 0;
    std::map<std::uint16_t, std::size_t> counts;
    std::vector<std::uint16_t> read;
};

} // namespace vantric::test
