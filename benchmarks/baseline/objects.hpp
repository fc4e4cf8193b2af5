// SPDX-License-Identifier: Apache-2.0
/** The baseline's objects: the daemon's, published with nothing but sd-bus. */
#pragma once

#include <systemd/sd-bus.h>

#include <array>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace measured_baseline {

/** Throws std::system_error for a negative result of libsystemd, which is an errno. */
int Checked(int result, const char* what);

using Association = std::array<const char*, 3>;
using Thresholds = std::array<std::int32_t, 6>;

/** A property's value where sd-bus reads it: a row without a getter points here. */
union Cell {
    double real;
    std::int32_t number;
    std::uint32_t count;
    std::uint16_t word;
    std::uint8_t byte;
    int truth;
    const char* text;
    const Association* association;
    const Thresholds* thresholds;
};

/** One published object. */
struct Object {
    std::string path;
    std::uint8_t eid = 0;         ///< of the endpoint whose readings it shows; 0 for none
    std::uint16_t sensor = 0;     ///< the sensor's id there
    Cell* probeReading = nullptr; ///< null where the object has none, as is value
    Cell* value = nullptr;
    std::vector<std::unique_ptr<Cell[]>> cells; ///< one array for each interface
    std::vector<std::unique_ptr<char[]>> texts; ///< what cells point to, as are the other two
    std::vector<std::unique_ptr<Association>> associations;
    std::vector<std::unique_ptr<Thresholds>> thresholds;
};

/** The objects of a list as `measure` writes it: tab-separated lines "object PATH EID SENSOR",
 *  below it "interface NAME", below that "property NAME TYPE VALUE...". Belongs to the thread of
 *  the connection. */
class Objects {
public:
    /** Publishes all of the list. Throws std::runtime_error where it can't be read, or holds a type
     *  that the baseline doesn't know. */
    Objects(sd_bus* bus, const std::string& listPath);

    std::deque<Object>& All() { return objects; }

    /** Writes a reading to its object, and sends the signals that the daemon sends for it. */
    void Update(Object& object, std::int32_t reading);

private:
    using Words = std::vector<std::string>;

    /** The rows of one interface, which all objects share that have it. */
    struct Interface {
        std::deque<std::string> texts; ///< names and types that the rows point to
        std::vector<sd_bus_vtable> rows;
    };

    void Publish(Object& object, const std::string& name, const std::vector<Words>& properties);
    const Interface& InterfaceOf(const std::string& name, const std::vector<Words>& properties);

    sd_bus* bus;
    std::map<std::string, Interface> interfaces;
    std::deque<Object> objects;
};

} // namespace measured_baseline
