#include "dbus_handler/sensor_numbering.hpp"

namespace vantric {

std::uint16_t SensorNumbering::InstanceOf(const std::string& path, Counter counter) {
    const auto [entry, added] = instanceNumbers.try_emplace(path, this->*counter);
    if (added) {
        ++(this->*counter);
    }
    return entry->second;
}

std::uint8_t SensorNumbering::ProcAccelNumberOf(const std::string& key) {
    const auto [entry, added] =
        procAccelNumbers.try_emplace(key, static_cast<std::uint8_t>(procAccelNumber));
    if (added) {
        ++procAccelNumber;
    } else {
        procAccelNumber = entry->second; // the count goes on from the number that came back
    }
    return entry->second;
}

} // namespace vantric
