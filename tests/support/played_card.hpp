/** A card with one endpoint that answers what an inventory and a monitor cycle ask. */
#pragma once

#include "pldm_cmds/bytes.hpp"
#include "pldm_cmds/scripted_endpoint.hpp"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vantric::test {

/** A numeric sensor as a test describes it; its PDR has resolution 1 and no offset. */
struct PlayedSensor {
    std::uint16_t id = 5;
    std::uint16_t entityType = 66;
    std::uint16_t entityInstance = 1;
    std::uint16_t containerId = 1;
    std::uint8_t baseUnit = 2;
};

Bytes NumericPdr(const PlayedSensor& sensor);

/** A state sensor with one member of the state set "Health State". */
Bytes StatePdr(std::uint16_t id, std::uint16_t entityType);

/** A physical association of a container, instance 1, with contained entities of instance 1. */
Bytes AssociationPdr(std::uint16_t containerId, std::uint16_t containerType,
                     const std::vector<std::uint16_t>& containedTypes);

/** Commands that tests look at: type in the high byte. */
enum PlayedCommand : std::uint16_t {
    PLAYED_GET_TYPES = 0x0004,
    PLAYED_GET_SENSOR_READING = 0x0211,
    PLAYED_GET_STATE_READINGS = 0x0221,
    PLAYED_GET_REPOSITORY_INFO = 0x0250,
    PLAYED_GET_PDR = 0x0251,
    PLAYED_GET_FRU_METADATA = 0x0401,
    PLAYED_GET_FRU_TABLE = 0x0402,
    PLAYED_GET_FIRMWARE = 0x0502,
};

class PlayedCard {
public:
    PlayedCard() = default;
    PlayedCard(const PlayedCard&) = delete;
    PlayedCard& operator=(const PlayedCard&) = delete;

    /** A transport that leads here. */
    std::unique_ptr<DeviceTransport> Connect(std::uint8_t slot, std::uint8_t eid);

    void Add(const PlayedSensor& sensor) { pdrs.push_back(NumericPdr(sensor)); }

    /** Another repository, at another time. */
    void Replace(const std::vector<PlayedSensor>& sensors);

    /** How often a command has come since the last call for it. */
    std::size_t TakeCount(std::uint16_t command);

    /** Ids of the numeric sensors that were read since the last call, in order. */
    std::vector<std::uint16_t> TakeRead();

    /** Number of commands so far. */
    std::size_t Asked() const { return asked; }

    std::vector<Bytes> pdrs;
    std::map<std::uint16_t, std::uint8_t> values;     ///< of sensor ids; 25 for any other
    std::map<std::uint16_t, int> sensorStatus;        ///< transport status of a reading, 0: good
    std::map<std::uint16_t, std::uint8_t> sensorCode; ///< completion code of a reading
    std::map<std::uint16_t, int> commandStatus;       ///< transport status of a command
    std::uint8_t state = 1;                           ///< of all state sensors
    std::string firmware = "1.0";
    std::optional<Bytes> fruTable; ///< without one, the card doesn't speak of FRU data
    std::function<void(const Bytes& request)> onRequest; ///< where set, sees each before its answer

private:
    ::Answer Respond(const Bytes& request);
    ::Answer RespondBase(std::uint8_t command) const;
    ::Answer RespondPlatform(std::uint8_t command, const Bytes& request);
    ::Answer Reading(std::uint16_t sensorId);
    ::Answer RepositoryInfo() const;
    ::Answer Record(std::uint32_t handle) const;
    ::Answer RespondFru(std::uint8_t command) const;
    ::Answer Firmware() const;

    std::uint8_t updateSeconds = 1; ///< the repository's update time
    std::size_t asked = 0;
    std::map<std::uint16_t, std::size_t> counts;
    std::vector<std::uint16_t> read;
};

} // namespace vantric::test
