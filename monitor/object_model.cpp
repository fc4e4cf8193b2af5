#include "object_model.hpp"

namespace monitor {

namespace {

/// What every object on the bus has. It is told with the objects but never withdrawn.
constexpr const char* busInterfaces = "org.freedesktop.DBus.";

} // namespace

const Properties* Object::Find(const std::string& interface) const {
    const auto found = interfaces.find(interface);
    return found == interfaces.end() ? nullptr : &found->second;
}

std::string Object::Text(const std::string& interface, const std::string& property) const {
    const auto* text = Get<std::string>(interface, property);
    return text == nullptr ? std::string() : *text;
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
