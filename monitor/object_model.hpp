/** The published objects as the bus tells of them. */
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace monitor {

/** Member name of a state sensor to state set and state. */
using StateDetails = std::map<std::string, std::pair<std::string, std::string>>;

/** Forward name, backward name and far end of each association. */
using Associations = std::vector<std::array<std::string, 3>>;

/** A property's value. All whole numbers of D-Bus become one type here. */
using Value = std::variant<std::int64_t, double, bool, std::string, StateDetails, Associations>;

using Properties = std::map<std::string, Value>;
using Interfaces = std::map<std::string, Properties>;

/** One object: its interfaces with their properties. */
class Object {
public:
    /** The properties of an interface, or null if the object doesn't have it. */
    const Properties* Find(const std::string& interface) const;

    /** A property as the type asked for, or null if it isn't there or is of another type. */
    template <typename Type>
    const Type* Get(const std::string& interface, const std::string& property) const {
        const Properties* properties = Find(interface);
        if (properties == nullptr) {
            return nullptr;
        }
        const auto found = properties->find(property);
        return found == properties->end() ? nullptr : std::get_if<Type>(&found->second);
    }

    /** A text property, empty if it isn't there. */
    std::string Text(const std::string& interface, const std::string& property) const;

    Interfaces interfaces;
};

/** All objects by path. It belongs to the thread of the event loop. */
class ObjectModel {
public:
    /** Takes in interfaces of an object; those that it has already get the new values. The bus's
     * own interfaces don't count, and a node that has nothing else is no object. */
    void AddInterfaces(const std::string& path, const Interfaces& interfaces);

    /** Removes interfaces of an object, and the object with its last one. */
    void RemoveInterfaces(const std::string& path, const std::vector<std::string>& names);

    /** Takes in changed values of an interface that the object is known to have; others are passed
     *  over, since their InterfacesAdded brings all values. */
    void ChangeProperties(const std::string& path, const std::string& interface,
                          const Properties& changed);

    /** Forgets all objects: the service has gone. */
    void Clear() { objects.clear(); }

    const std::map<std::string, Object>& Objects() const { return objects; }

    /** Whether there ever was an object. */
    bool EverPublished() const { return everPublished; }

private:
    std::map<std::string, Object> objects;
    bool everPublished = false;
};

} // namespace monitor
