// SPDX-License-Identifier: Apache-2.0
/** What the objects of a scenario look like on the bus, as a person has written it down. */
#pragma once

#include "support/bus_client.hpp"

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace vantric::test {

/** A scenario's .bus file, with the interfaces.bus beside it, which tells how both are written. */
class BusDump {
public:
    /** @throws std::runtime_error if there is no such file, or naming the line that makes no sense.
     */
    explicit BusDump(const std::filesystem::path& file);

    /** Compares what the daemon shows with the file: which objects there are, their interfaces with
     *  all members, and the values. Returns lines of what is expected and what is seen instead, as
     *  they would stand in the file; none if there is no difference. */
    std::string Difference(BusClient& client) const;

private:
    using Values = std::map<std::string, std::string>;

    struct Interface {
        std::string members; ///< a line for each
        Values types;        ///< of its properties
        Values values;       ///< of its properties, where nothing else says otherwise
    };
    struct Kind {
        std::vector<std::string> interfaces;
        Values values;
    };
    struct Object {
        std::string kind;
        Values values; ///< the object's own, and those of the last "with"
    };
    /** The two sides of a difference; empty if there is none. */
    struct Sides {
        std::string expected, seen;

        bool operator==(const Sides&) const = default;
    };

    void ReadInterfaces(const std::filesystem::path& file);
    void ReadObjects(const std::filesystem::path& file);
    bool HasProperty(const std::string& kind, const std::string& name) const;
    const std::string& KindOf(const Interfaces& seen) const;
    std::string Expanded(const std::string& text, const std::string& path,
                         const Object& object) const;
    std::string Expected(const std::string& name, const std::string& path,
                         const Object& object) const;
    Sides Compare(const std::string& path, const Object& object, const Interfaces& seen) const;
    Sides CompareMembers(BusClient& client, const std::string& path, const Object& object) const;

    std::map<std::string, Interface> interfaces;
    std::map<std::string, Kind> kinds;
    std::map<std::string, Object> objects; ///< by short path
};

} // namespace vantric::test
