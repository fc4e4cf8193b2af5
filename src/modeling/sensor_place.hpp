/** What modeling decides for a numeric sensor. */
#pragma once

#include <cstdint>
#include <string>

namespace vantric {

struct SensorPlace {
    std::uint8_t slot = 0;
    std::string sensorPath;    ///< object path, not yet normalised
    std::string resolvedLdid;  ///< empty, or the LDID that the sensor stands for on a virtual board
    std::string inventoryPath; ///< of the entity that holds the sensor
    std::string name;          ///< short name of that entity
};

} // namespace vantric
