// SPDX-License-Identifier: Apache-2.0
#include "baseline/objects.hpp"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <system_error>

namespace measured_baseline {

namespace {

using Words = std::vector<std::string>;

constexpr auto probeInterface = "com.korv.zenth.Sensor.ProbeObj";
constexpr auto valueInterface = "xyz.openbmc_project.Sensor.Value";

// Words of a property's line.
constexpr std::size_t nameWord = 1;
constexpr std::size_t typeWord = 2;
constexpr std::size_t firstValue = 3;

constexpr auto associationsType = "a(sss)";
constexpr auto thresholdsType = "(iiiiii)";

Words Split(const std::string& line) {
    Words words;
    std::istringstream stream(line + '\t');
    for (std::string word; std::getline(stream, word, '\t');) {
        words.push_back(word);
    }
    return words;
}

int AppendAssociation(sd_bus* /*bus*/, const char* /*path*/, const char* /*interface*/,
                      const char* /*property*/, sd_bus_message* reply, void* cell,
                      sd_bus_error* /*error*/) {
    const auto* const association = static_cast<const Cell*>(cell)->association;
    if (association == nullptr) {
        return sd_bus_message_append(reply, associationsType, 0);
    }
    const auto& [forward, backward, endpoint] = *association;
    return sd_bus_message_append(reply, associationsType, 1, forward, backward, endpoint);
}

int AppendThresholds(sd_bus* /*bus*/, const char* /*path*/, const char* /*interface*/,
                     const char* /*property*/, sd_bus_message* reply, void* cell,
                     sd_bus_error* /*error*/) {
    const auto& values = *static_cast<const Cell*>(cell)->thresholds;
    return sd_bus_message_append(reply, thresholdsType, values[0], values[1], values[2], values[3],
                                 values[4], values[5]);
}

sd_bus_property_get_t GetterOf(const std::string& type) {
    if (type == associationsType) {
        return AppendAssociation;
    }
    if (type == thresholdsType) {
        return AppendThresholds;
    }
    return nullptr; // sd-bus reads basic types by itself
}

const char* Keep(Object& object, const std::string& text) {
    auto& kept = object.texts.emplace_back(std::make_unique<char[]>(text.size() + 1));
    std::ranges::copy(text, kept.get());
    return kept.get();
}

/** A property's first value from the words of its line. */
void Fill(Cell& cell, Object& object, const Words& words) {
    const std::string& type = words.at(typeWord);
    if (type == associationsType) {
        if (words.size() > firstValue) {
            cell.association =
                object.associations
                    .emplace_back(std::make_unique<Association>(Association{
                        Keep(object, words.at(firstValue)), Keep(object, words.at(firstValue + 1)),
                        Keep(object, words.at(firstValue + 2))}))
                    .get();
        }
        return;
    }
    if (type == thresholdsType) {
        auto& kept = object.thresholds.emplace_back(std::make_unique<Thresholds>());
        for (std::size_t i = 0; i < kept->size(); ++i) {
            kept->at(i) = std::stoi(words.at(firstValue + i));
        }
        cell.thresholds = kept.get();
        return;
    }
    const std::string& value = words.at(firstValue);
    if (type == "s") {
        cell.text = Keep(object, value);
    } else if (type == "d") {
        cell.real = std::stod(value);
    } else if (type == "i") {
        cell.number = std::stoi(value);
    } else if (type == "u") {
        cell.count = static_cast<std::uint32_t>(std::stoul(value));
    } else if (type == "q") {
        cell.word = static_cast<std::uint16_t>(std::stoul(value));
    } else if (type == "y") {
        cell.byte = static_cast<std::uint8_t>(std::stoul(value));
    } else if (type == "b") {
        cell.truth = std::stoi(value);
    } else {
        throw std::runtime_error("the baseline knows no properties of type " + type);
    }
}

} // namespace

int Checked(int result, const char* what) {
    if (result < 0) {
        throw std::system_error(-result, std::generic_category(), what);
    }
    return result;
}

Objects::Objects(sd_bus* bus, const std::string& listPath) : bus(bus) {
    std::ifstream list(listPath);
    std::string interface;
    std::vector<Words> properties;
    const auto finish = [&] {
        if (!interface.empty()) {
            Publish(objects.back(), interface, properties);
        }
        interface.clear();
        properties.clear();
    };
    for (std::string line; std::getline(list, line);) {
        const Words words = Split(line);
        if (words[0] == "object") {
            finish();
            auto& object = objects.emplace_back();
            object.path = words.at(1);
            object.eid = static_cast<std::uint8_t>(std::stoul(words.at(2)));
            object.sensor = static_cast<std::uint16_t>(std::stoul(words.at(3)));
        } else if (words[0] == "interface") {
            finish();
            interface = words.at(1);
        } else {
            properties.push_back(words);
        }
    }
    if (objects.empty()) {
        throw std::runtime_error("no objects in " + listPath);
    }
    finish();
}

void Objects::Publish(Object& object, const std::string& name,
                      const std::vector<Words>& properties) {
    const Interface& shape = InterfaceOf(name, properties);
    auto& cells = object.cells.emplace_back(std::make_unique<Cell[]>(properties.size()));
    for (std::size_t i = 0; i < properties.size(); ++i) {
        Fill(cells[i], object, properties[i]);
        const std::string& property = properties[i].at(nameWord);
        if (name == probeInterface && property == "ProbeReading") {
            object.probeReading = &cells[i];
        } else if (name == valueInterface && property == "Value") {
            object.value = &cells[i];
        }
    }
    Checked(sd_bus_add_object_vtable(bus, nullptr, object.path.c_str(), name.c_str(),
                                     shape.rows.data(), cells.get()),
            object.path.c_str());
}

const Objects::Interface& Objects::InterfaceOf(const std::string& name,
                                               const std::vector<Words>& properties) {
    const auto [entry, isNew] = interfaces.try_emplace(name);
    Interface& shape = entry->second;
    if (!isNew) {
        if (shape.texts.size() != 2 * properties.size()) {
            throw std::runtime_error("objects differ in the properties of " + name);
        }
        return shape;
    }
    shape.rows.push_back(SD_BUS_VTABLE_START(0));
    for (std::size_t i = 0; i < properties.size(); ++i) {
        const std::string& type = shape.texts.emplace_back(properties[i].at(typeWord));
        const std::string& property = shape.texts.emplace_back(properties[i].at(nameWord));
        shape.rows.push_back(SD_BUS_PROPERTY(property.c_str(), type.c_str(), GetterOf(type),
                                             i * sizeof(Cell),
                                             SD_BUS_VTABLE_PROPERTY_EMITS_CHANGE));
    }
    shape.rows.push_back(SD_BUS_VTABLE_END);
    return shape;
}

void Objects::Update(Object& object, std::int32_t reading) {
    const auto signal = [&](const char* interface, const char* property) {
        Checked(
            sd_bus_emit_properties_changed(bus, object.path.c_str(), interface, property, nullptr),
            "sd_bus_emit_properties_changed");
    };
    if (object.probeReading != nullptr) {
        object.probeReading->number = reading;
        signal(probeInterface, "ProbeReading");
    }
    if (object.value != nullptr) {
        object.value->real = reading;
        signal(valueInterface, "Value");
    }
}

} // namespace measured_baseline
