// SPDX-License-Identifier: Apache-2.0
/** The published objects as the bus tells of them. */
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <variant>
#include <vector>

namespace monitor {

/** Forward name, backward name and far end of each association. */
using Associations = std::vector<std::tuple<std::string, std::string, std::string>>;

/** Member name of a state sensor to state set and state. */
using StateDetails = std::map<std::string, std::tuple<std::string, std::string>>;

/** Upper fatal, critical and warning, lower warning, critical and fatal; 0 is a limit not given. */
using ProbeThresholds =
    std::tuple<std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t>;

/** A property's value. One of another type is read as the first: no associations. */
using Value = std::variant<Associations, bool, std::uint8_t, std::int16_t, std::uint16_t,
                           std::int32_t, std::uint32_t, std::int64_t, std::uint64_t, double,
                           std::string, StateDetails, ProbeThresholds>;

using Properties = std::map<std::string, Value>;
using Interfaces = std::map<std::string, Properties>;

/** One object: its interfaces with their properties. */
class Object {
public:
    bool Has(const std::string& interface) const { return interfaces.contains(interface); }

    /** A property as the type asked for, or null if it isn't there or is of another type. */
    template <typename Type>
    const Type* Get(const std::string& interface, const std::string& property) const {
        const Value* value = Find(interface, property);
        return value == nullptr ? nullptr : std::get_if<Type>(value);
    }

    /** A finite number of any type, or nothing. */
    std::optional<double> Number(const std::string& interface, const std::string& property) const;

    /** A text, empty if it isn't there. */
    std::string Text(const std::string& interface, const std::string& property) const;

    /** Whether a property is there and true. */
    bool IsSet(const std::string& interface, const std::string& property) const;

    Interfaces interfaces;

private:
    const Value* Find(const std::string& interface, const std::string& property) const;
};

/** All objects by path. It belongs to the thread of the event loop. */
class ObjectModel {
public:
    /** Takes in interfaces of an object; those that it has already get the new values. The bus's
     *  own interfaces don't count, and a node that has nothing else is no object. */
    void AddInterfaces(const std::string& path, const Interfaces& interfaces);

    /** Removes interfaces of an object, and the object with its last one. */
    void RemoveInterfaces(const std::string& path, const std::vector<std::string>& names);

    /** Takes in changed values of an interface that the object is known to have. Others are
     *  ignored, since their InterfacesAdded brings all values. */
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
