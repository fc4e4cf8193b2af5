// SPDX-License-Identifier: Apache-2.0
#include "object_model.hpp"

#include <cmath>
#include <type_traits>

namespace monitor {

namespace {

/** What every object on the bus has. It is told with the objects but never withdrawn. */
constexpr const char* busInterfaces = "org.freedesktop.DBus.";

} // namespace

const Value* Object::Find(const std::string& interface, const std::string& property) const {
    const auto properties = interfaces.find(interface);
    if (properties == interfaces.end()) {
        return nullptr;
    }
    const auto value = properties->second.find(property);
    return value == properties->second.end() ? nullptr : &value->second;
}

std::optional<double> Object::Number(const std::string& interface,
                                     const std::string& property) const {
    const auto asNumber = []<typename Type>(const Type& value) -> std::optional<double> {
        if constexpr (std::is_arithmetic_v<Type> && !std::is_same_v<Type, bool>) {
            const auto number = static_cast<double>(value);
            return std::isfinite(number) ? std::optional(number) : std::nullopt;
        } else {
            return std::nullopt;
        }
    };
    const Value* value = Find(interface, property);
    return value == nullptr ? std::nullopt : std::visit(asNumber, *value);
}

std::string Object::Text(const std::string& interface, const std::string& property) const {
    const auto* text = Get<std::string>(interface, property);
    return text == nullptr ? std::string() : *text;
}

bool Object::IsSet(const std::string& interface, const std::string& property) const {
    const auto* value = Get<bool>(interface, property);
    return value != nullptr && *value;
}

void ObjectModel::AddInterfaces(const std::string& path, const Interfaces& interfaces) {
    for (const auto& [name, properties] : interfaces) {
        if (!name.starts_with(busInterfaces)) {
            everPublished = true;
            objects[path].interfaces.insert_or_assign(name, properties);
        }
    }
}

void ObjectModel::RemoveInterfaces(const std::string& path, const std::vector<std::string>& names) {
    const auto found = objects.find(path);
    if (found == objects.end()) {
        return;
    }
    for (const std::string& name : names) {
        found->second.interfaces.erase(name);
    }
    if (found->second.interfaces.empty()) {
        objects.erase(found);
    }
}

void ObjectModel::ChangeProperties(const std::string& path, const std::string& interface,
                                   const Properties& changed) {
    const auto object = objects.find(path);
    if (object == objects.end()) {
        return;
    }
    const auto known = object->second.interfaces.find(interface);
    if (known == object->second.interfaces.end()) {
        return;
    }
    for (const auto& [name, value] : changed) {
        known->second.insert_or_assign(name, value);
    }
}

} // namespace monitor
