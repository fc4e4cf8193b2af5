#include "numeric_reading.hpp"

#include "interface_names.hpp"

#include <array>
#include <cmath>
#include <cstdio>

namespace monitor {

namespace {

/// Stands for a reading that isn't available.
constexpr double noReading = 2147483647.0;
constexpr std::int64_t subTypeTemperature = 5;
constexpr std::int64_t subTypePower = 49;
constexpr std::int64_t probeStatusOk = 2;

std::optional<double> ReadingOf(const Object& object) {
    double reading = noReading;
    if (const auto* value = object.Get<double>(valueInterface, "Value")) {
        reading = *value;
    } else if (const auto* probe = object.Get<std::int64_t>(probeInterface, "ProbeReading")) {
        reading = static_cast<double>(*probe);
    }
    if (!std::isfinite(reading) || reading == noReading) {
        return std::nullopt;
    }
    return reading;
}

/// The power of ten that a probe's reading is in; the byte on the bus is a signed one.
int UnitModifier(const Object& object) {
    const auto* modifier = object.Get<std::int64_t>(probeInterface, "UnitModifier");
    return modifier == nullptr ? 0 : static_cast<std::int8_t>(*modifier);
}

std::string UnitOf(const Object& object) {
    const std::string full = object.Text(valueInterface, "Unit");
    if (!full.empty()) {
        const std::string word = full.substr(full.rfind('.') + 1);
        return word == "DegreesC" ? "C" : word == "Watts" ? "W" : word;
    }
    const auto* subType = object.Get<std::int64_t>(probeInterface, "SubType");
    if (subType == nullptr) {
        return "";
    }
    return *subType == subTypeTemperature ? "C" : *subType == subTypePower ? "W" : "";
}

bool Says(const bool* property, bool expected) {
    return property != nullptr && *property == expected;
}

std::string StatusOf(const Object& object, bool hasReading) {
    const auto* probeStatus = object.Get<std::int64_t>(probeInterface, "ProbeStatus");
    if (!hasReading) {
        return "no reading";
    }
    if (Says(object.Get<bool>(availabilityInterface, "Available"), false) ||
        (probeStatus != nullptr && *probeStatus != probeStatusOk)) {
        return "unavailable";
    }
    if (Says(object.Get<bool>(operationalInterface, "Functional"), false)) {
        return "not functional";
    }
    return "ok";
}

} // namespace

NumericReading::NumericReading(const Object& object)
    : value(ReadingOf(object)), unit(UnitOf(object)), status(StatusOf(object, value.has_value())) {
    if (value && object.Find(valueInterface) == nullptr) {
        *value *= std::pow(10.0, UnitModifier(object));
    }
}

std::string NumericReading::Text() const {
    if (!value) {
        return "n/a";
    }
    std::array<char, 400> text{}; // holds any double in full
    std::snprintf(text.data(), text.size(), "%.3f", *value);
    std::string trimmed(text.data());
    trimmed.erase(trimmed.find_last_not_of('0') + 1);
    if (trimmed.ends_with('.')) {
        trimmed.pop_back();
    }
    return trimmed;
}

} // namespace monitor
