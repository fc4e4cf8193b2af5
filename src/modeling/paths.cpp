#include "modeling/paths.hpp"

#include "vocabulary/entity_types.hpp"
#include "vocabulary/vocabulary.hpp"

#include <string_view>
#include <vector>

namespace vantric {

namespace {

constexpr auto temperatureRoot = "/xyz/openbmc_project/sensors/temperature/";
constexpr auto powerRoot = "/xyz/openbmc_project/sensors/power/";

bool IsCard(std::uint16_t entityType) {
    return entityType == ENTITY_ADD_IN_CARD || entityType == ENTITY_SYSTEM_MANAGEMENT_MODULE;
}

bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

} // namespace

const std::string& EntityWord(std::uint16_t entityType) {
    static const std::string none;
    const auto row = entityWords.find(entityType);
    return row != entityWords.end() ? row->second : none;
}

std::string NodePath(const PDRTree* node) {
    std::vector<std::string> pieces;
    std::size_t length = 0;
    for (; node != nullptr && node->parent != nullptr && !IsCard(node->entityType);
         node = node->parent) {
        const std::string& word = EntityWord(node->entityType);
        if (word.empty() || node->parent->entityType == node->entityType) {
            continue;
        }
        pieces.push_back("/" + word + "_" + std::to_string(node->entityInstance));
        length += pieces.back().size();
        if (length > longestPath) {
            break;
        }
    }
    std::string path;
    for (auto piece = pieces.rbegin(); piece != pieces.rend(); ++piece) {
        path += *piece;
    }
    return path;
}

std::uint8_t ConnectorNumber(const std::string& path) {
    constexpr std::string_view connector = "connector_";
    const auto found = path.find(connector);
    if (found == std::string::npos) {
        return 0;
    }
    std::uint8_t number = 0;
    for (auto at = found + connector.size(); at < path.size() && IsDigit(path[at]); ++at) {
        number = static_cast<std::uint8_t>(number * 10 + (path[at] - '0'));
    }
    return number;
}

std::string ControllerPiece(std::uint8_t controller) {
    return controller == 2 ? "/networkcontroller_2" : "/networkcontroller_1";
}

std::string SensorPath(const __Sensor& sensor, const std::string& ldid, ControllerTag tag) {
    const char* root = sensor.baseUnit == BASE_UNIT_WATTS ? powerRoot : temperatureRoot;
    return root + ldid + SensorTail(tag, sensor.sensorId);
}

} // namespace vantric
