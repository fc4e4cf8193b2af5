#include "row_builder.hpp"

#include "card_names.hpp"
#include "interface_names.hpp"
#include "numeric_reading.hpp"
#include "text.hpp"

#include <algorithm>

namespace monitor {

namespace {

/// What a state sensor shows for a member that it couldn't read yet.
constexpr std::string_view unavailable = "Unavailable";
constexpr std::string_view healthSet = "Health State";

/// Rows of one card come in this order of kinds, each by the id at the end of the path.
enum class Kind { INVENTORY, CONTROLLER, NUMERIC_SENSOR, STATE_SENSOR };

/// Text that NaturalOrder puts where the object belongs among those of its card.
std::string OrderOf(Kind kind, const std::string& path) {
    const std::string leaf = path.substr(path.rfind('/') + 1);
    return std::to_string(static_cast<int>(kind)) + '/' + leaf + '\n' + path;
}

std::string OrNothing(const std::string& text) {
    return text.empty() ? "n/a" : text;
}

/// The words for DeviceStatus.
std::string HealthText(const std::int64_t* severity) {
    switch (severity == nullptr ? 0 : *severity) {
    case 2:
        return "ok";
    case 3:
        return "warning";
    case 4:
        return "critical";
    case 5:
        return "fatal";
    default:
        return "unknown";
    }
}

std::string NumericSensorName(const Object& object, const std::string& path) {
    std::string location = object.Text(probeInterface, "ProbeLocation");
    if (!location.empty()) {
        return location;
    }
    const std::size_t id = path.rfind("sensorid_");
    return id == std::string::npos ? path.substr(path.rfind('/') + 1) : path.substr(id);
}

bool AlarmRaised(const Object& object, const std::string& interface, const std::string& level) {
    return std::ranges::any_of(std::array{"AlarmHigh", "AlarmLow"}, [&](const char* side) {
        const auto* raised = object.Get<bool>(interface, level + side);
        return raised != nullptr && *raised;
    });
}

std::string SensorHealth(const Object& object) {
    if (AlarmRaised(object, criticalInterface, "Critical")) {
        return "critical";
    }
    if (AlarmRaised(object, warningInterface, "Warning")) {
        return "warning";
    }
    if (object.Find(warningInterface) != nullptr) {
        return "ok";
    }
    const auto* status = object.Get<std::int64_t>(probeInterface, "ObjectStatus");
    return HealthText(status);
}

class RowBuilder {
public:
    explicit RowBuilder(const ObjectModel& model) : names(model) {}

    void Add(const std::string& path, const Object& object) {
        if (object.Find(inventoryInterface) != nullptr) {
            AddInventory(path, object);
        }
        if (object.Find(controllerInterface) != nullptr) {
            AddController(path, object);
        }
        if (object.Find(valueInterface) != nullptr || object.Find(probeInterface) != nullptr) {
            AddNumericSensor(path, object);
        }
        if (object.Find(stateInterface) != nullptr) {
            AddStateSensor(path, object);
        }
    }

    std::vector<Row> Take() {
        std::ranges::sort(rows, [](const Row& left, const Row& right) {
            const auto byCard = NaturalOrder(left.card, right.card);
            return (byCard != 0 ? byCard : NaturalOrder(left.order, right.order)) < 0;
        });
        return std::move(rows);
    }

private:
    void AddInventory(const std::string& path, const Object& object) {
        Row row{.card = names.Of(path, object),
                .object = "Firmware",
                .value = OrNothing(object.Text(inventoryInterface, "FirmwareVersion")),
                .unit = "",
                .status = "present",
                .health = HealthText(object.Get<std::int64_t>(inventoryInterface, "DeviceStatus")),
                .order = OrderOf(Kind::INVENTORY, path)};
        rows.push_back(row);
        const std::array<std::pair<const char*, const char*>, 3> fields{
            {{"Model", "Model"}, {"PN", "Part number"}, {"SN", "Serial number"}}};
        for (const auto& [property, title] : fields) {
            row.value = object.Text(fruInterface, property);
            row.object = title;
            row.order += '\n'; // behind the one before
            if (!row.value.empty()) {
                rows.push_back(row);
            }
        }
    }

    void AddController(const std::string& path, const Object& object) {
        const auto* affinity = object.Get<std::int64_t>(controllerInterface, "CPUAffinity");
        rows.push_back({.card = names.Of(path, object),
                        .object = path.substr(path.rfind('/') + 1) + " CPU affinity",
                        .value = affinity == nullptr ? "n/a" : std::to_string(*affinity),
                        .unit = "",
                        .status = "present",
                        .health = "",
                        .order = OrderOf(Kind::CONTROLLER, path)});
    }

    void AddNumericSensor(const std::string& path, const Object& object) {
        const NumericReading reading(object);
        rows.push_back({.card = names.Of(path, object),
                        .object = NumericSensorName(object, path),
                        .value = reading.Text(),
                        .unit = reading.Unit(),
                        .status = reading.Status(),
                        .health = SensorHealth(object),
                        .order = OrderOf(Kind::NUMERIC_SENSOR, path)});
    }

    void AddStateSensor(const std::string& path, const Object& object) {
        const auto* id = object.Get<std::int64_t>(stateInterface, "SensorID");
        const auto* details = object.Get<StateDetails>(stateInterface, "StateSensorDetails");
        const std::string sensor = "State " + (id == nullptr ? "?" : std::to_string(*id));
        Row row{.card = names.Of(path, object),
                .object = sensor,
                .value = "n/a",
                .unit = "",
                .status = "unavailable",
                .health = "",
                .order = OrderOf(Kind::STATE_SENSOR, path)};
        if (details == nullptr || details->empty()) {
            rows.push_back(row);
            return;
        }
        for (const auto& [member, state] : *details) {
            const auto& [set, value] = state;
            row.object = sensor;
            row.object.append(" ").append(member);
            row.value = value == unavailable ? "n/a" : OrNothing(value);
            row.unit = set == unavailable ? "" : set;
            row.status = row.value == "n/a" ? "unavailable" : "ok";
            row.health = set == healthSet ? row.value : "";
            row.order += '\n';
            rows.push_back(row);
        }
    }

    CardNames names;
    std::vector<Row> rows;
};

} // namespace

std::vector<Row> BuildRows(const ObjectModel& model) {
    RowBuilder builder(model);
    for (const auto& [path, object] : model.Objects()) {
        builder.Add(path, object);
    }
    return builder.Take();
}

} // namespace monitor
